#include "tests/wine/SimulatedModule.h"

#include <cstdio>

#include "simwin/CallTable.h"

namespace kvtest {
namespace {

// The string table is the one thing that the shipped file answers itself: its entries are resources of this very file,
// and the records prove them.
bool isOwnResource(const simwin::CallEntry& call) {
    return call.name == "LoadStringA";
}

std::vector<redirect::Replacement> answers() {
    std::vector<redirect::Replacement> all;
    for (const simwin::CallEntry& call : simwin::callTable()) {
        if (call.imported && !isOwnResource(call))
            all.push_back({call.library, call.name, call.ordinal, call.address});
    }
    return all;
}

}  // namespace

SimulatedModule::SimulatedModule() : m_module(ReleaseFolder()) {
    if (m_module.IsLoaded())
        m_redirection.emplace(m_module.Library(), answers());
}

CollectedStation SimulatedModule::Collect(simwin::Machine& machine) {
    m_record.Fill('\0');
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    CollectInto(m_record.data(), machine);
    std::fflush(stdout);
    std::string output = testing::internal::GetCapturedStdout();
    return {std::string(m_record.data(), KVCSTAT_RECORD_SIZE), machine.variablesSet(), machine.traceLines(),
            std::move(output)};
}

void SimulatedModule::CollectInto(char* record, simwin::Machine& machine) const {
    const simwin::Machine::Scope scope(machine);
    m_module.Collect(record);
}

}  // namespace kvtest
