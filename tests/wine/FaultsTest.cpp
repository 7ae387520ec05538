// The real kvcstat64.dll on every described station with each call and each string's allocation failing once.
#include <gmock/gmock.h>

#include <algorithm>
#include <new>
#include <string>

#include "simwin/StationReader.h"
#include "tests/faults/FieldRules.h"
#include "tests/stations/Leftovers.h"
#include "tests/stations/QuietOutput.h"
#include "tests/wine/CrashReport.h"
#include "tests/wine/SimulatedModule.h"

namespace {

using kvtest::Fields;
using ::testing::IsEmpty;

constexpr std::size_t kMostComplaints = 20;

std::filesystem::path FolderOf(const std::string& station) {
    return std::filesystem::path(KV_STATIONS) / station;
}

class FaultsTest : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
        kvtest::NameStationInCrashes(GetParam());
        simwin::Machine machine(station);
        ASSERT_EQ(module.Collect(machine).record, kvtest::recordBytes(expected.record));
        calls = machine.faultableCalls();
        allocations = machine.allocations();
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
        const std::string record = module.CollectRecord(machine);
        const Fields fields = kvtest::fieldsOf(record);
        std::vector<std::string> lines = kvtest::unexpectedLeftovers(machine);
        for (const std::string& line : kvtest::unexplainedFields(texts, expected.record, fields))
            lines.push_back(machine.failedCall() + ": " + line);
        if (record != kvtest::recordBytes(fields))
            lines.push_back(machine.failedCall() + ": bytes are written beside the fields' texts");
        return lines;
    }

    std::vector<std::string> FailAllocation(std::uint64_t number) {
        simwin::Machine machine(station);
        machine.failAllocation(number);
        std::vector<std::string> lines;
        if (!Throws(machine))
            lines.push_back("did not throw std::bad_alloc to the caller");
        for (const std::string& line : kvtest::unexpectedLeftovers(machine))
            lines.push_back(line);
        simwin::Machine next(station);
        if (module.CollectRecord(next) != kvtest::recordBytes(expected.record))
            lines.push_back("spoiled the next call");
        return lines;
    }

    bool Throws(simwin::Machine& machine) {
        try {
            module.CollectRecord(machine);
            return false;
        } catch (const std::bad_alloc&) {
            return true;
        }
    }

    kvtest::SimulatedModule module;
    const std::shared_ptr<const simwin::Station> station =
        std::make_shared<const simwin::Station>(simwin::readStation(FolderOf(GetParam())));
    const kvtest::ExpectedStation expected = kvtest::readExpectedStation(FolderOf(GetParam()));
    const kvtest::StationTexts texts{*station};
    std::uint64_t calls = 0;
    std::uint64_t allocations = 0;
};

TEST_P(FaultsTest, EachCallThatFailsLeavesEveryFieldRightOrEmptyOrAtItsFallback) {
    EXPECT_THAT(FailEach(calls, [this](std::uint64_t number) { return FailCall(number); }), IsEmpty());
}

TEST_P(FaultsTest, EachAllocationThatFailsThrowsToTheCallerAndTheNextCallWorks) {
    EXPECT_THAT(FailEach(allocations, [this](std::uint64_t number) { return FailAllocation(number); }), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stations, FaultsTest, ::testing::ValuesIn(kvtest::stationNames()), [](const auto& test) {
    std::string name = test.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
