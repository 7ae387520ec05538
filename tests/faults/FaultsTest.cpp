#include "tests/faults/FaultsTest.h"

#include "simwin/station/StationReader.h"
#include "tests/faults/FieldRules.h"
#include "tests/stations/QuietOutput.h"

namespace kvtest {
namespace {

constexpr std::size_t kMostComplaints = 20;

}  // namespace

FaultsTest::FaultsTest()
    : station(std::make_shared<const simwin::Station>(simwin::readStation(folderOf(GetParam())))),
      codePage(station->codePages.ansi),
      expected(readExpectedStation(folderOf(GetParam()))) {}

void FaultsTest::SetUp() {
    undisturbed = Run({});
    ASSERT_THAT(undisturbed.leftovers, ::testing::IsEmpty());
    ASSERT_EQ(undisturbed.record, recordBytes(expected.record));
}

void FaultsTest::TearDownTestSuite() {
    if (stationsTried.size() != stationNames().size())
        return;
    Texts idle = allRules();
    for (const std::string& rule : rulesNeeded)
        idle.erase(rule);
    EXPECT_THAT(idle, ::testing::IsEmpty()) << "no call that fails needs these rules: has their source gone?";
}

FaultedRun FaultsTest::Run(Fault fault) const {
    const QuietOutput quiet;
    return runWithFault(station, fault);
}

void FaultsTest::FailEach(Fault::Kind kind, std::uint64_t count, const Complain& complain) const {
    std::vector<std::string> all;
    {
        const QuietOutput quiet;
        for (std::uint64_t number = 1; number <= count && all.size() < kMostComplaints; ++number) {
            const FaultedRun run = runWithFault(station, {kind, number});
            for (const std::string& line : complain(run))
                all.push_back("number " + std::to_string(number) + " " + run.failedCall + ": " + line);
        }
    }
    EXPECT_THAT(all, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stations, FaultsTest, ::testing::ValuesIn(stationNames()), kvtest::NameOfStationTest());

}  // namespace kvtest
