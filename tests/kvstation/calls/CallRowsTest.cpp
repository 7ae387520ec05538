// What the rows of the calls say, against what the module calls.
#include "kvstation/calls/CallRows.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>

#include "kvstation/calls/Answer.h"
#include "simwin/calls/CallTable.h"
#include "simwin/machine/Machine.h"
#include "tests/kvstation/calls/OwnWork.h"
#include "tests/kvstation/cause/StationRun.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::CallRow;
using kvstation::findQuestion;
using kvstation::questions;
using simwin::ObservedCall;
using testing::IsEmpty;

// The product's ini file is asked there alone.
simwin::Station win32s() {
    simwin::Station station;
    station.version = simwin::WindowsVersion{.platformId = 0, .major = 3, .minor = 10, .build = 103, .servicePack = ""};
    station.profile = {{"windows", "device", "Laser,pscript,LPT1:"}};
    return station;
}

TEST(CallRows, SaysInWordsWhatIsAskedFor) {
    for (const CallRow* row : questions())
        EXPECT_THAT(std::string(row->asks.words), testing::MatchesRegex("(a|an|the|whether) [^.]+")) << row->call;
}

TEST(CallRows, HasNoRowThatNoStationIsAskedBy) {
    std::vector<simwin::Station> stations;
    for (const std::string& name : stationNames())
        stations.push_back(stationNamed(name));
    stations.push_back(win32s());
    std::set<std::string> unasked;
    for (const CallRow* row : questions())
        unasked.emplace(row->call);
    {
        const kvstation::Collector collector;
        for (const simwin::Station& station : stations)
            for (const ObservedCall& call :
                 runStation(collector, std::make_shared<const simwin::Station>(station)).calls)
                unasked.erase(call.name);
    }
    EXPECT_THAT(unasked, IsEmpty());
}

TEST(CallRows, NamesTheIniFilesEntryThatGivesThePrinterOnWin32s) {
    const kvstation::FieldCauses causes = causesOn(win32s(), "szDefaultPrinter");
    EXPECT_EQ(causes.value, "Laser");
    ASSERT_FALSE(causes.causes.empty());
    EXPECT_EQ(causes.causes.front().call, "GetPrivateProfileStringA");
    EXPECT_EQ(causes.causes.front().place.member, (simwin::MemberPath{"profile", "windows", "device"}));
    EXPECT_EQ(causes.causes.front().words, "the entry of the product's ini file");
}

// What no row names must decide nothing.
TEST(CallRows, LeavesOutNoCallWhoseFailureAFieldHangsOn) {
    std::set<std::string> failed;
    std::vector<std::string> complaints;
    {
        const kvstation::Collector collector;
        for (const std::string& name : stationNames()) {
            const auto station = std::make_shared<const simwin::Station>(stationNamed(name));
            const StationRun base = runStation(collector, station);
            std::set<std::string> here;
            for (std::size_t i = 0; i < base.calls.size(); ++i) {
                const std::string& call = base.calls[i].name;
                if (base.failable[i] == 0 || findQuestion(call) != nullptr || isOwnWork(call) ||
                    !here.insert(call).second)
                    continue;
                failed.insert(call);
                if (!differingFields(base, runStation(collector, station, {.toFail = base.failable[i]})).empty())
                    complaints.push_back(name + ": " + call);
            }
        }
    }
    EXPECT_THAT(complaints, IsEmpty());
    EXPECT_THAT(failed, testing::IsSupersetOf<std::string>({"KVSetEnv", "WSAStartup"}));
}

// Each question that can fail, on the described stations, with the error that Windows has for it.
TEST(CallRows, HasANameForTheErrorOfEachQuestionThatFails) {
    std::set<std::string> failed;
    std::vector<std::string> nameless;
    {
        const kvstation::Collector collector;
        for (const std::string& name : stationNames()) {
            const auto station = std::make_shared<const simwin::Station>(stationNamed(name));
            const StationRun base = runStation(collector, station);
            for (std::size_t i = 0; i < base.calls.size(); ++i) {
                const std::string& call = base.calls[i].name;
                if (base.failable[i] == 0 || findQuestion(call) == nullptr || !failed.insert(call).second)
                    continue;
                const StationRun other = runStation(collector, station, {.toFail = base.failable[i]});
                const std::optional<kvstation::CallError> error = kvstation::errorOf(other.calls[i]);
                if (!error || error->name.empty())
                    nameless.push_back(call + ": " + (error ? std::to_string(error->code) : "no error"));
            }
        }
    }
    EXPECT_THAT(nameless, IsEmpty());
    EXPECT_GE(failed.size(), 30u);
}

}  // namespace
}  // namespace kvtest
