#include "tests/faults/FaultedStation.h"

#include <new>

#include "include/kvcstat.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "tests/faults/ModuleMemory.h"
#include "tests/stations/Leftovers.h"

namespace kvtest {
namespace {

// The record ends with its block: the sanitizer sees a byte that is written behind it.
class Record {
  public:
    char* data() { return m_bytes.get(); }
    std::string text() const { return std::string(m_bytes.get(), KVCSTAT_RECORD_SIZE); }

  private:
    std::unique_ptr<char[]> m_bytes{new char[KVCSTAT_RECORD_SIZE]()};
};

std::uint64_t numberOf(const Fault& fault, Fault::Kind kind) {
    return fault.kind == kind ? fault.number : 0;
}

bool collect(char* record) {
    try {
        GetStationData(record);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::optional<std::string> collectAgain() {
    Record record;
    return collect(record.data()) ? std::optional(record.text()) : std::nullopt;
}

bool isHardwareCollector(const ModuleBlock& block) {
    return !block.isArray && block.size == sizeof(CHardwareInformation);
}

// Each collection leaves its hardware collector allocated on purpose. With it gone, nothing of the module's may be
// left: what it owns goes with it.
void deleteHardwareCollectors() {
    const std::map<void*, ModuleBlock> blocks = moduleMemory().blocks;
    for (const auto& [address, block] : blocks) {
        if (isHardwareCollector(block))
            delete static_cast<CHardwareInformation*>(address);
    }
}

std::vector<std::string> findLeftovers(const simwin::Machine& machine, std::size_t collections) {
    std::vector<std::string> lines = unexpectedLeftovers(machine, collections);
    deleteHardwareCollectors();
    for (const auto& [address, block] : moduleMemory().blocks)
        lines.push_back("a block of " + std::to_string(block.size) + " bytes is not deleted");
    if (machine.openHeapBlocks() != 0)
        lines.push_back(std::to_string(machine.openHeapBlocks()) + " strings' blocks are not released");
    moduleMemory().blocks.clear();
    return lines;
}

}  // namespace

FaultedRun runWithFault(const std::shared_ptr<const simwin::Station>& station, Fault fault) {
    simwin::Machine machine(station);
    const simwin::Machine::Scope scope(machine);
    machine.failCall(numberOf(fault, Fault::Kind::Call));
    machine.failAllocation(numberOf(fault, Fault::Kind::TextAllocation));
    moduleMemory() = {0, numberOf(fault, Fault::Kind::Allocation), {}};

    FaultedRun run;
    Record record;
    run.threw = !collect(record.data());
    run.record = record.text();
    run.failedCall = machine.failedCall();
    run.calls = machine.faultableCalls();
    run.textAllocations = machine.allocations();
    run.allocations = moduleMemory().allocations;
    const bool collectsAgain = run.threw || fault.kind == Fault::Kind::None;
    if (collectsAgain)
        run.secondRecord = collectAgain();
    run.leftovers = findLeftovers(machine, collectsAgain ? 2 : 1);
    return run;
}

}  // namespace kvtest
