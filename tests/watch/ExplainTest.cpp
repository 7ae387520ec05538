#include <gmock/gmock.h>

#include <map>

#include "kvstation/Explanation.h"
#include "kvstation/FieldTable.h"
#include "kvstation/Steps.h"
#include "simwin/CallTable.h"
#include "simwin/Machine.h"
#include "tests/watch/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::Finding;
using testing::HasSubstr;

std::string explained(std::string_view field, const std::string& station) {
    return kvstation::explanationText(field, runOf(station), false);
}

kvstation::WatchedRun runOn(simwin::Station station) {
    simwin::Machine machine(std::move(station));
    kvstation::CallLog log;
    machine.observe(&log);
    kvstation::WatchedRun run;
    run.record = kvstation::collectOn(machine);
    run.calls = log.calls();
    return run;
}

std::string takenOf(std::string_view field, const kvstation::WatchedRun& run) {
    std::string names;
    for (const Finding& finding : kvstation::explain(field, run))
        if (finding.isTaken)
            names += (names.empty() ? "" : ",") +
                     std::string(finding.source.what.empty() ? finding.source.item : finding.source.what);
    return names;
}

TEST(Explain, TellsThatAskingForTheMACAddressIsSwitchedOff) {
    EXPECT_THAT(explained("szMACAddress", "metaframe-session"),
                HasSubstr("  * else: \"unknown\", because asking is switched off: in a session (CLIENTNAME is set) "
                          "KVGetClientMACAddress must be 1\n"));
}

TEST(Explain, TellsThatNothingAnsweredARP) {
    simwin::Station station;
    station.environment = {{"KVIP", "10.0.0.5"}};
    const std::string text = kvstation::explanationText("szMACAddress", runOn(station), false);
    EXPECT_THAT(text, HasSubstr("szMACAddress = \"unknown\"\n"));
    EXPECT_THAT(text, HasSubstr("because nothing answered ARP for the address"));
}

TEST(Explain, TellsThatThereIsNoNetBIOSAdapter) {
    const kvstation::WatchedRun none = runOn({});
    EXPECT_THAT(kvstation::explanationText("szMACAddress", none, false), HasSubstr("because NetBIOS lists no adapter"));
    simwin::Station station;
    station.network.netbios = {{0, std::nullopt}};
    EXPECT_THAT(kvstation::explanationText("szMACAddress", runOn(station), false),
                HasSubstr("because no adapter told its NetBIOS status"));
}

TEST(Explain, TellsTheSourceThatWasTaken) {
    EXPECT_EQ(takenOf("szMACAddress", runOf("windows-xp-console")), "SendARP");
    EXPECT_EQ(takenOf("szStation", runOf("metaframe-session")), "szMACAddress");
    EXPECT_EQ(takenOf("szIPAddress", runOf("metaframe-session")), "ZRTSQueryIPAddress");
    EXPECT_EQ(takenOf("szClientName", runOf("metaframe-session")), "KVRDPClientName");
    EXPECT_EQ(takenOf("szUserName", runOf("metaframe-session")), "GetUserNameExA");
}

TEST(Explain, TellsTheOverrideOfAVariable) {
    simwin::Station station;
    station.environment = {{"KVIP", "10.1.2.3"}, {"KVUser", "Someone"}};
    const kvstation::WatchedRun run = runOn(station);
    EXPECT_EQ(takenOf("szIPAddress", run), "KVIP");
    EXPECT_EQ(takenOf("szUserName", run), "KVUser");
    EXPECT_THAT(kvstation::explanationText("szUserName", run, false),
                HasSubstr("GetUserNameA (the Windows account, upper case): not asked"));
}

// Asked first, and the end of asking.
TEST(Explain, NamesTheAdministratorsUserBeforeAllOthers) {
    EXPECT_EQ(kvstation::sourcesOf("szUserName").front().what, "KVUser");
}

TEST(Explain, KnowsASourceOfEveryField) {
    for (const kvstation::Field& field : kvstation::fields())
        EXPECT_FALSE(kvstation::sourcesOf(field.name).empty()) << field.name;
}

TEST(Explain, NamesStepsFieldsAndCallsThatThereAre) {
    for (const kvstation::Field& field : kvstation::fields())
        for (const kvstation::Source& source : kvstation::sourcesOf(field.name)) {
            const auto isStep = [&](const kvstation::StepMark& mark) { return mark.step == source.step; };
            EXPECT_TRUE(source.step.empty() || std::ranges::any_of(kvstation::stepMarks(), isStep))
                << field.name << ": " << source.step;
            if (source.asked == kvstation::Asked::Field) {
                EXPECT_LT(kvstation::findField(source.what), kvstation::fields().size()) << source.what;
            }
            if (source.asked == kvstation::Asked::Call || source.asked == kvstation::Asked::CallText) {
                const auto isCall = [&](const simwin::CallEntry& call) { return call.name == source.what; };
                EXPECT_TRUE(std::ranges::any_of(simwin::callTable(), isCall)) << source.what;
            }
        }
}

TEST(Explain, TellsEveryFieldOfEveryStation) {
    for (const std::string& name : stationNames()) {
        const kvstation::WatchedRun run = runOf(name);
        for (const kvstation::Field& field : kvstation::fields())
            EXPECT_THAT(kvstation::explanationText(field.name, run, false),
                        testing::StartsWith(std::string(field.name)));
    }
}

// A field that holds something got it from somewhere.
TEST(Explain, NamesATakenSourceForEveryFieldThatIsFilled) {
    for (const std::string& name : stationNames()) {
        const kvstation::WatchedRun run = runOf(name);
        for (const std::string& field : filledFields(readExpectedStation(stationFolder(name))))
            EXPECT_NE(takenOf(field, run), "") << name << ": " << field;
    }
}

// A text that one source gave whole stands in the record, whatever its letter case.
TEST(Explain, TakesTheSourceWhoseTextTheRecordHolds) {
    const std::map<std::string, std::string> wanted = {{"szUserDisplayedName", "Hinrichs, Detlef"},
                                                       {"szWorkgroup", "HANSEWERK"},
                                                       {"szServerName", "CTX-HANSE3"},
                                                       {"szDefaultDomainName", "HANSEWERK"},
                                                       {"szBiosDate", "11/19/01"}};
    const kvstation::WatchedRun run = runOf("metaframe-session");
    for (const auto& [field, text] : wanted) {
        std::string given;
        for (const Finding& finding : kvstation::explain(field, run))
            if (finding.isTaken)
                given += testing::PrintToString(finding.lines);
        EXPECT_THAT(given, HasSubstr(text)) << field;
    }
}

}  // namespace
}  // namespace kvtest
