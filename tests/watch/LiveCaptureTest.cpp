// This very computer, watched by the tool while the real library looks at it.
#include <gmock/gmock.h>

#include "kvstation/Stage.h"
#include "kvstation/StationCapture.h"
#include "kvstation/WatchedRun.h"
#include "simwin/Machine.h"
#include "simwin/RegistryReader.h"
#include "simwin/RegistryWriter.h"
#include "simwin/StationReader.h"
#include "simwin/StationWriter.h"

namespace kvtest {
namespace {

using kvstation::RecordBytes;

std::string bytesOf(const RecordBytes& record) {
    return {record.begin(), record.end()};
}

TEST(LiveCapture, GivesTheSameRecordOnceReplayed) {
    kvstation::StationCapture capture;
    const RecordBytes record = kvstation::collectHereObserved(capture);
    const simwin::Station told = capture.station();
    simwin::Station again = simwin::parseStation(simwin::writeStation(told), "station.json");
    again.registry = simwin::readRegistry(simwin::writeRegistry(told.registry), "registry.reg");
    simwin::Machine machine(std::move(again));
    EXPECT_EQ(bytesOf(kvstation::collectOn(machine)), bytesOf(record));
}

TEST(LiveTrace, HasTheStepsOfEveryCollection) {
    const kvstation::WatchedRun run = kvstation::watchRun("");
    std::vector<std::string_view> steps;
    for (const kvstation::StepCall& call : run.calls)
        if (steps.empty() || steps.back() != call.step)
            steps.push_back(call.step);
    EXPECT_THAT(steps, testing::IsSupersetOf<std::string_view>(
                           {"start", "user name", "host name", "client name", "providers", "operating system", "memory",
                            "drives", "monitor", "station type", "publishing", "session id"}));
}

TEST(LiveTrace, LeavesTheLastErrorToTheModule) {
    const kvstation::WatchedRun run = kvstation::watchRun("");
    for (const kvstation::StepCall& call : run.calls) {
        if (call.call.name == "GetUserNameExA" && !call.call.succeeded) {
            EXPECT_NE(call.call.error, 0U);
        }
    }
}

}  // namespace
}  // namespace kvtest
