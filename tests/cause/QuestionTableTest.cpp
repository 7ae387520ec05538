// The table of questions against what the module calls.
#include "kvstation/cause/QuestionTable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>

#include "kvstation/cause/Answer.h"
#include "simwin/CallTable.h"
#include "simwin/Machine.h"
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
    "VerQueryValueA", "VerSetConditionMask", "WideCharToMultiByte", "_mbscmp", "_mbslwr", "_mbsupr", "_strupr",
    "inet_addr", "wsprintfA",
    // it gets ready
    "WSAStartup", "ZRTSWRPInit",
    // it tells others
    "KVSetEnv", "ZRTrace"};

bool asksNothing(std::string_view call) {
    return std::ranges::find(kAskNothing, call) != std::end(kAskNothing);
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
