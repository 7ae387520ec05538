// This very computer, watched by the tool while the real library looks at it.
#include <gmock/gmock.h>

#include <set>

#include "kvstation/capture/LiveStation.h"
#include "kvstation/capture/StationCapture.h"
#include "kvstation/capture/TracedStation.h"
#include "kvstation/collect/Stage.h"
#include "simwin/machine/Machine.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::RecordBytes;

TEST(LiveCapture, GivesTheSameRecordOnceReplayed) {
    kvstation::StationCapture capture;
    const RecordBytes record = kvstation::collectHereObserved(capture);
    const simwin::Station told = capture.station();
    simwin::Station again = simwin::parseStation(simwin::writeStation(told), "station.json");
    again.registry = simwin::readRegistry(simwin::writeRegistry(told.registry), "registry.reg");
    simwin::Machine machine(std::move(again));
    EXPECT_EQ(bytesOf(kvstation::collectOn(machine)), bytesOf(record));
}

TEST(LiveTrace, TellsTheFieldsThatHangOnWhatThisComputerAnswered) {
    const kvstation::TracedStation run = kvstation::traceHere();
    std::set<std::string> hanging;
    for (std::size_t i = 0; i < run.calls.size(); ++i)
        for (const std::string& field : run.fields[i])
            hanging.insert(run.calls[i].call.name + " " + field);
    EXPECT_THAT(hanging, testing::IsSupersetOf<std::string>({"GetComputerNameA szClientName", "GetVersionExA szOS",
                                                             "GlobalMemoryStatus dwTotalMemoryMB",
                                                             "GetSystemInfo dwNumberOfProcessors"}));
}

// What was changed in a replay is answered out of the registry and the variables of this computer.
TEST(LiveCapture, HoldsWhatAnotherSettingWouldAskFor) {
    const simwin::Station station = kvstation::captureHere();
    EXPECT_THAT(station.unknown, testing::Contains("network.arp"));
    EXPECT_TRUE(station.registry.find("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control"));
}

TEST(LiveTrace, LeavesTheLastErrorToTheModule) {
    const kvstation::TracedStation run = kvstation::traceHere();
    for (const kvstation::TimedCall& call : run.calls) {
        if (call.call.name == "GetUserNameExA" && !call.call.succeeded) {
            EXPECT_NE(call.call.error, 0U);
        }
    }
}

}  // namespace
}  // namespace kvtest
