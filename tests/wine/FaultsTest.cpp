// The real kvcstat64.dll on every described station with each call and each allocation failing once.
#include <gmock/gmock.h>

#include <new>
#include <optional>
#include <string>

#include "kvcstat/hardware/HardwareInformation.h"
#include "simwin/station/StationReader.h"
#include "tests/faults/FieldRules.h"
#include "tests/stations/Leftovers.h"
#include "tests/stations/QuietOutput.h"
#include "tests/wine/CrashReport.h"
#include "tests/wine/LibraryMemory.h"
#include "tests/wine/SimulatedModule.h"

namespace {

using kvtest::Fields;
using ::testing::IsEmpty;

constexpr std::size_t kMostComplaints = 20;

class FaultsTest : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
        memory.emplace(module.Library());
        kvtest::NameStationInCrashes(GetParam());
        simwin::Machine machine(station);
        memory->Restart();
        ASSERT_EQ(module.Collect(machine).record, kvtest::recordBytes(expected.record));
        calls = machine.faultableCalls();
        textAllocations = machine.allocations();
        allocations = memory->Allocations();
        ASSERT_THAT(Leftovers(machine), IsEmpty());
        ASSERT_GT(calls, 0u);
        ASSERT_GT(textAllocations, 0u);
        ASSERT_GT(allocations, 0u);
    }
    void TearDown() override { kvtest::NameStationInCrashes({}); }

    // The complaints of the first few numbers from 1 to `count` that have any.
    template <class Complain>
    std::vector<std::string> FailEach(std::uint64_t count, Complain complain) {
        const kvtest::QuietOutput quiet;
        std::vector<std::string> all;
        for (std::uint64_t number = 1; number <= count && all.size() < kMostComplaints; ++number) {
            for (const std::string& line : complain(number))
                all.push_back("number " + std::to_string(number) + " " + line);
        }
        return all;
    }

    std::vector<std::string> FailCall(std::uint64_t number) {
        simwin::Machine machine(station);
        machine.failCall(number);
        memory->Restart();
        const std::string record = module.CollectRecord(machine);
        const Fields fields = kvtest::fieldsOf(record);
        std::vector<std::string> lines = Leftovers(machine);
        if (machine.failedCall().empty())
            lines.push_back("no call has failed");
        for (const std::string& line : kvtest::explain(texts, expected.record, fields).unexplainedFields)
            lines.push_back(machine.failedCall() + ": " + line);
        if (record != kvtest::recordBytes(fields))
            lines.push_back(machine.failedCall() + ": bytes are written beside the fields' texts");
        return lines;
    }

    std::vector<std::string> FailTextAllocation(std::uint64_t number) {
        simwin::Machine machine(station);
        machine.failAllocation(number);
        memory->Restart();
        return ThrowAndCollectAgain(machine);
    }

    std::vector<std::string> FailAllocation(std::uint64_t number) {
        simwin::Machine machine(station);
        memory->Restart(number);
        return ThrowAndCollectAgain(machine);
    }

    kvtest::SimulatedModule module;
    std::optional<kvtest::LibraryMemory> memory;  // none when the library is not loaded; goes before it does
    const std::shared_ptr<const simwin::Station> station =
        std::make_shared<const simwin::Station>(simwin::readStation(kvtest::folderOf(GetParam())));
    const simwin::CodePageScope codePage{station->codePages.ansi};  // what may be found is told in the station's texts
    const kvtest::ExpectedStation expected = kvtest::readExpectedStation(kvtest::folderOf(GetParam()));
    const kvtest::StationTexts texts{*station};
    std::uint64_t calls = 0;
    std::uint64_t textAllocations = 0;
    std::uint64_t allocations = 0;

  private:
    std::vector<std::string> ThrowAndCollectAgain(simwin::Machine& machine) {
        std::vector<std::string> lines;
        if (!Throws(machine))
            lines.push_back("did not throw std::bad_alloc to the caller");
        for (const std::string& line : Leftovers(machine))
            lines.push_back(line);
        simwin::Machine next(station);
        memory->Restart();
        if (module.CollectRecord(next) != kvtest::recordBytes(expected.record))
            lines.push_back("spoiled the next call");
        for (const std::string& line : Leftovers(next))
            lines.push_back("the next call: " + line);
        return lines;
    }

    // What the machine's one call since Restart left beyond what it is meant to.
    std::vector<std::string> Leftovers(const simwin::Machine& machine) {
        std::vector<std::string> lines = kvtest::unexpectedLeftovers(machine);
        DeleteHardwareCollectors();
        for (const auto& [address, size] : memory->Blocks())
            lines.push_back("a block of " + std::to_string(size) + " bytes is not deleted");
        if (machine.openHeapBlocks() != 0)
            lines.push_back(std::to_string(machine.openHeapBlocks()) + " strings' blocks are not released");
        return lines;
    }

    // Each call leaves its hardware collector allocated on purpose. What it owns goes with it, by the library's own
    // destructor: it is the virtual one of its base.
    void DeleteHardwareCollectors() {
        const std::map<void*, std::size_t> blocks = memory->Blocks();
        for (const auto& [address, size] : blocks) {
            if (size == sizeof(CHardwareInformation))
                delete static_cast<CObject*>(address);
        }
    }

    bool Throws(simwin::Machine& machine) {
        try {
            module.CollectRecord(machine);
            return false;
        } catch (const std::bad_alloc&) {
            return true;
        }
    }
};

TEST_P(FaultsTest, EachCallThatFailsLeavesEveryFieldRightOrEmptyOrAtItsFallback) {
    EXPECT_THAT(FailEach(calls, [this](std::uint64_t number) { return FailCall(number); }), IsEmpty());
}

TEST_P(FaultsTest, EachTextAllocationThatFailsThrowsToTheCallerAndTheNextCallWorks) {
    EXPECT_THAT(FailEach(textAllocations, [this](std::uint64_t number) { return FailTextAllocation(number); }),
                IsEmpty());
}

TEST_P(FaultsTest, EachOtherAllocationThatFailsThrowsToTheCallerAndTheNextCallWorks) {
    EXPECT_THAT(FailEach(allocations, [this](std::uint64_t number) { return FailAllocation(number); }), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stations, FaultsTest, ::testing::ValuesIn(kvtest::stationNames()),
                         kvtest::NameOfStationTest());

}  // namespace
