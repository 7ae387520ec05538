#include "tests/wine/SimulatedModule.h"

#include <cstdio>

#include "simwin/calls/CallTable.h"

namespace kvtest {
namespace {

// The string table is the one thing that the shipped file answers itself: its entries are resources of this very file,
// and the records prove them.
bool isOwnResource(std::string_view name) {
    return name == "LoadStringA";
}

// The first replacement of a function counts.
std::vector<redirect::Replacement> answers(SimulatedModule::Heap heap, std::span<const redirect::Replacement> others) {
    std::vector<redirect::Replacement> all(others.begin(), others.end());
    for (const simwin::CallEntry& call : simwin::callTable()) {
        const bool isReal =
            isOwnResource(call.name) || (heap == SimulatedModule::Heap::Real && simwin::isHeapCall(call.name));
        if (call.imported && !isReal)
            all.push_back({call.library, call.name, call.ordinal, call.address});
    }
    return all;
}

}  // namespace

SimulatedModule::SimulatedModule(Heap heap, std::span<const redirect::Replacement> others) : m_module(ReleaseFolder()) {
    if (m_module.IsLoaded())
        m_redirection.emplace(m_module.Library(), answers(heap, others));
}

CollectedStation SimulatedModule::Collect(simwin::Machine& machine) {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    std::string record = CollectRecord(machine);
    std::fflush(stdout);
    std::string output = testing::internal::GetCapturedStdout();
    return {std::move(record), machine.variablesSet(), machine.traceLines(), std::move(output)};
}

std::string SimulatedModule::CollectRecord(simwin::Machine& machine) {
    m_record.Fill('\0');
    CollectInto(m_record.data(), machine);
    return std::string(m_record.data(), KVCSTAT_RECORD_SIZE);
}

void SimulatedModule::CollectInto(char* record, simwin::Machine& machine) const {
    const simwin::Machine::Scope scope(machine);
    m_module.Collect(record);
}

}  // namespace kvtest
