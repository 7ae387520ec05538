#include "tests/stations/Leftovers.h"

#include <algorithm>

namespace kvtest {
namespace {

using simwin::HandleKind;
using simwin::OpenHandle;
using simwin::TraceLine;

// The trace has one such line for each name.
std::size_t citrixNames(const simwin::Machine& machine) {
    const std::vector<TraceLine>& lines = machine.traceLines();
    return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const TraceLine& line) {
        return line.text.starts_with("Clientname via WFAPI: '");
    }));
}

std::size_t mayStayOpen(const simwin::Machine& machine, HandleKind kind, std::size_t collections) {
    switch (kind) {
        case HandleKind::Process:
        case HandleKind::Token:
            return collections;
        case HandleKind::CitrixBuffer:
            return citrixNames(machine);
        default:
            return 0;
    }
}

}  // namespace

std::vector<std::string> unexpectedLeftovers(const simwin::Machine& machine, std::size_t collections) {
    std::vector<std::string> lines = machine.misuses();
    for (const OpenHandle& open : machine.openHandles()) {
        const std::size_t count = machine.openHandles(open.kind).size();
        const std::size_t allowed = mayStayOpen(machine, open.kind, collections);
        if (count > allowed)
            lines.push_back("left open: " + open.what + " (kind " + std::to_string(static_cast<int>(open.kind)) + ", " +
                            std::to_string(count) + " of them, " + std::to_string(allowed) + " may be)");
    }
    return lines;
}

}  // namespace kvtest
