// Every described station, held against what must come out of it.
#include "tests/stations/ExpectedStation.h"

#include <cstdio>
#include <map>

#include "simwin/station/StationReader.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using kvtest::CollectedStation;
using kvtest::ExpectedStation;

class StationsTest : public kvtest::MachineTest, public ::testing::WithParamInterface<std::string> {
  protected:
    std::filesystem::path Folder() const { return std::filesystem::path(KV_STATIONS) / GetParam(); }

    CollectedStation Collect() {
        Start();
        std::string record(KVCSTAT_RECORD_SIZE, '\0');
        std::fflush(stdout);
        ::testing::internal::CaptureStdout();
        GetStationData(record.data());
        std::fflush(stdout);
        std::string output = ::testing::internal::GetCapturedStdout();
        return {std::move(record), machine->variablesSet(), machine->traceLines(), std::move(output)};
    }
};

TEST_P(StationsTest, GivesTheRecordEnvironmentTraceAndOutputThatItMust) {
    station = simwin::readStation(Folder());
    const ExpectedStation expected = kvtest::readExpectedStation(Folder());
    const CollectedStation found = Collect();
    for (const std::string& line : kvtest::differences(expected, found))
        ADD_FAILURE() << GetParam() << ": " << line;
    for (const simwin::TraceLine& line : found.trace)
        EXPECT_EQ(line.component, "KelVor - Station registration (client)");
}

TEST_P(StationsTest, LeavesOnlyTheProcessAndTokenHandleOpen) {
    station = simwin::readStation(Folder());
    Collect();
    EXPECT_THAT(machine->misuses(), ::testing::IsEmpty());
    for (const simwin::OpenHandle& handle : machine->openHandles()) {
        const bool prescribed = handle.kind == simwin::HandleKind::Process ||
                                handle.kind == simwin::HandleKind::Token ||
                                handle.kind == simwin::HandleKind::CitrixBuffer;
        EXPECT_TRUE(prescribed) << handle.what;
    }
}

TEST_P(StationsTest, GivesTheSameRecordTwice) {
    station = simwin::readStation(Folder());
    const std::string first = Collect().record;
    EXPECT_TRUE(first == Collect().record);
}

INSTANTIATE_TEST_SUITE_P(Stations, StationsTest, ::testing::ValuesIn(kvtest::stationNames()),
                         kvtest::NameOfStationTest());

TEST(StationsTest, TogetherFillEveryFieldOfTheRecord) {
    std::map<std::string, int> stations;
    for (const std::string& name : kvtest::stationNames()) {
        const ExpectedStation expected = kvtest::readExpectedStation(std::filesystem::path(KV_STATIONS) / name);
        for (const auto& [field, value] : expected.record)
            stations.try_emplace(field, 0);
        for (const std::string& field : kvtest::filledFields(expected))
            ++stations[field];
    }
    const auto filled = std::count_if(stations.begin(), stations.end(), [](const auto& row) { return row.second > 0; });
    std::printf("%td of %zu fields of the record are filled by at least one described station\n", filled,
                stations.size());
    for (const auto& [field, count] : stations)
        EXPECT_GT(count, 0) << field;
}

}  // namespace
