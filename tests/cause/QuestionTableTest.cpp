// The table of questions against what the module calls.
#include "kvstation/questions/QuestionTable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>

#include "kvstation/experiments/Answer.h"
#include "simwin/calls/CallTable.h"
#include "simwin/machine/Machine.h"
#include "tests/cause/OwnWork.h"
#include "tests/cause/StationRun.h"
#include "tests/watch/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::CallRow;
using kvstation::callRows;
using kvstation::findCallRow;
using simwin::ObservedCall;
using testing::IsEmpty;

// Calls that ask a station for nothing.
constexpr std::string_view kAskNothing[] = {
    // what the module opened goes again
    "FindClose", "FreeLibrary", "GlobalFree", "GlobalUnlock", "HeapFree", "LocalFree", "NetApiBufferFree",
    "RegCloseKey", "ZRTSWRPFree",
    // memory and texts of its own, and parts of what it was told
    "GetLastError", "GetProcessHeap", "GlobalAlloc", "GlobalLock", "HeapAlloc", "LoadStringA", "LocalAlloc",
    "VerQueryValueA", "VerSetConditionMask", "WideCharToMultiByte", "_mbschr", "_mbscmp", "_mbslwr", "_mbsrchr",
    "_mbsstr", "_mbsupr", "_strupr", "inet_addr", "wsprintfA",
    // it gets ready
    "WSAStartup", "ZRTSWRPInit",
    // it tells others
    "KVSetEnv", "ZRTrace"};

bool asksNothing(std::string_view call) {
    return std::ranges::find(kAskNothing, call) != std::end(kAskNothing);
}

// The product's ini file is asked there alone.
simwin::Station win32s() {
    simwin::Station station;
    station.version = simwin::WindowsVersion{.platformId = 0, .major = 3, .minor = 10, .build = 103, .servicePack = ""};
    station.profile = {{"windows", "device", "Laser,pscript,LPT1:"}};
    return station;
}

TEST(QuestionTable, HasARowForEachCallThatAsksSomething) {
    for (const simwin::CallEntry& call : simwin::callTable())
        EXPECT_NE(findCallRow(call.name) != nullptr, asksNothing(call.name)) << call.name;
}

TEST(QuestionTable, HasNoRowTwiceAndNoneOfACallThatIsNotMade) {
    std::set<std::string_view> made;
    for (const simwin::CallEntry& call : simwin::callTable())
        made.insert(call.name);
    for (const CallRow& row : callRows())
        EXPECT_EQ(made.erase(row.call), 1u) << row.call;
}

TEST(QuestionTable, SaysInWordsWhatIsAskedFor) {
    for (const CallRow& row : callRows())
        EXPECT_THAT(std::string(row.words), testing::MatchesRegex("(a|an|the|whether) [^.]+")) << row.call;
}

TEST(QuestionTable, HasNoRowThatNoStationIsAskedBy) {
    std::vector<simwin::Station> stations;
    for (const std::string& name : stationNames())
        stations.push_back(stationNamed(name));
    stations.push_back(win32s());
    std::set<std::string> unasked;
    for (const CallRow& row : callRows())
        unasked.emplace(row.call);
    {
        const kvstation::Collector collector;
        for (const simwin::Station& station : stations)
            for (const ObservedCall& call :
                 runStation(collector, std::make_shared<const simwin::Station>(station)).calls)
                unasked.erase(call.name);
    }
    EXPECT_THAT(unasked, IsEmpty());
}

TEST(QuestionTable, NamesTheIniFilesEntryThatGivesThePrinterOnWin32s) {
    const kvstation::FieldCauses causes = causesOn(win32s(), "szDefaultPrinter");
    EXPECT_EQ(causes.value, "Laser");
    ASSERT_FALSE(causes.causes.empty());
    EXPECT_EQ(causes.causes.front().call, "GetPrivateProfileStringA");
    EXPECT_EQ(causes.causes.front().place.member, (simwin::MemberPath{"profile", "windows", "device"}));
    EXPECT_EQ(causes.causes.front().words, "the entry of the product's ini file");
}

// What no row names must decide nothing.
TEST(QuestionTable, LeavesOutNoCallWhoseFailureAFieldHangsOn) {
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
                if (base.failable[i] == 0 || findCallRow(call) != nullptr || isOwnWork(call) ||
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
TEST(QuestionTable, HasANameForTheErrorOfEachQuestionThatFails) {
    std::set<std::string> failed;
    std::vector<std::string> nameless;
    {
        const kvstation::Collector collector;
        for (const std::string& name : stationNames()) {
            const auto station = std::make_shared<const simwin::Station>(stationNamed(name));
            const StationRun base = runStation(collector, station);
            for (std::size_t i = 0; i < base.calls.size(); ++i) {
                const std::string& call = base.calls[i].name;
                if (base.failable[i] == 0 || findCallRow(call) == nullptr || !failed.insert(call).second)
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
