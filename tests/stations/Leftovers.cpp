#include "tests/stations/Leftovers.h"

namespace kvtest {
namespace {

using simwin::HandleKind;
using simwin::OpenHandle;

bool mayStayOpen(HandleKind kind) {
    return kind == HandleKind::Process || kind == HandleKind::Token || kind == HandleKind::CitrixBuffer;
}

}  // namespace

std::vector<std::string> unexpectedLeftovers(const simwin::Machine& machine, std::size_t collections) {
    std::vector<std::string> lines = machine.misuses();
    for (const OpenHandle& open : machine.openHandles()) {
        const std::size_t count = machine.openHandles(open.kind).size();
        const std::size_t allowed = mayStayOpen(open.kind) ? collections : 0;
        if (count > allowed)
            lines.push_back("left open: " + open.what + " (kind " + std::to_string(static_cast<int>(open.kind)) + ", " +
                            std::to_string(count) + " of them, " + std::to_string(allowed) + " may be)");
    }
    return lines;
}

}  // namespace kvtest
