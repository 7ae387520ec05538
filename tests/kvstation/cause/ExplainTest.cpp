// Why fields hold what they hold, on the described stations and on changed ones. What is expected was found by reading
// the stations, the sentence of a test is what a reader of the explanation must find in it.
#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "kvstation/cause/CauseJson.h"
#include "kvstation/cause/CauseText.h"
#include "kvstation/cause/WhatIf.h"
#include "kvstation/experiments/Experiments.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/cause/DescribedCauses.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::Cause;
using kvstation::FieldCauses;
using kvstation::Role;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const FieldCauses& causesOn(const std::string& station, std::string_view field) {
    return causesOfDescribed(station)[kvstation::findField(field)];
}

// "KVUser" of a variable, "Name" of a registry value, else the question.
std::string nameOf(const Cause& cause) {
    if (cause.place.kind == kvstation::Place::Kind::Value)
        return cause.place.value;
    if (!cause.place.member.empty() && cause.place.member.front() == "environment")
        return cause.place.member.back();
    return cause.question;
}

std::vector<std::string> namesOf(const std::vector<Cause>& causes, bool areGivers) {
    std::vector<std::string> names;
    for (const Cause& cause : causes)
        if ((cause.role != Role::Decides) == areGivers)
            names.push_back(nameOf(cause));
    return names;
}
std::vector<std::string> giversOf(const FieldCauses& causes) {
    return namesOf(causes.causes, true);
}
std::vector<std::string> decidersOf(const FieldCauses& causes) {
    return namesOf(causes.causes, false);
}

std::optional<std::string> errorOf(const FieldCauses& causes, std::string_view call) {
    for (const Cause& cause : causes.causes)
        if (cause.call == call && cause.error)
            return kvstation::shown(*cause.error);
    return std::nullopt;
}

simwin::Station withVariable(simwin::Station station, const std::string& name, const std::string& value) {
    std::erase_if(station.environment,
                  [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); });
    station.environment.push_back({name, value});
    return station;
}

TEST(AllStations, TellsWhatGivesASessionsAddress) {
    const FieldCauses causes = causesOn("metaframe-session", "szIPAddress");
    EXPECT_EQ(causes.value, "192.168.31.44");
    EXPECT_THAT(giversOf(causes), ElementsAre("ZRTSQueryIPAddress(200)"));
    EXPECT_EQ(causes.causes.front().role, Role::Gives);
}

TEST(AllStations, NamesTheKindOfNameThatDecidesTheWindowsAccount) {
    EXPECT_THAT(giversOf(causesOn("metaframe-session", "szWinUser")), ElementsAre("GetUserNameExA(8)"));
    for (const char* station :
         {"metaframe-session", "virtual-desktop-client", "windows-11-notebook", "windows-2000-workstation",
          "windows-2003-terminal-session", "windows-7-workstation", "windows-xp-console"})
        EXPECT_THAT(decidersOf(causesOn(station, "szWinUser")), Contains("KVUSERNAMETYPE")) << station;
}

TEST(AllStations, GivesAnEmptyFieldNoGiver) {
    for (const auto& [station, field] :
         {std::pair{"winframe-session", "szMACAddress"}, std::pair{"nt4-alpha-workstation", "szServerMACAddress"},
          std::pair{"nt4-powerpc-workstation", "szTSClientName"}}) {
        const FieldCauses causes = causesOn(station, field);
        EXPECT_EQ(causes.value, "") << station << ": " << field;
        EXPECT_THAT(giversOf(causes), IsEmpty()) << station << ": " << field;
        const std::string text = kvstation::causesText(causes, false);
        EXPECT_THAT(text, testing::StartsWith(std::string(field) + " = \"\"\n"));
        // Below the field's meaning, which tells of the word.
        EXPECT_THAT(text.substr(text.find("\n\n")), Not(HasSubstr("unknown"))) << station << ": " << field;
    }
}

TEST(AllStations, TellsThatAListOfAddressesIsAskedForByARPAsOneThatThereIsNot) {
    const FieldCauses causes = causesOn("windows-2003-terminal-session", "szMACAddress");
    EXPECT_EQ(causes.value, "unknown");
    EXPECT_THAT(decidersOf(causes), Contains("SendARP(255.255.255.255, 0)"));
    EXPECT_EQ(errorOf(causes, "SendARP"), "67 ERROR_BAD_NET_NAME");
}

// Of calls that return their error, and not what an earlier one left as last error.
TEST(Explain, TellsTheErrorThatTheCallGave) {
    simwin::Station station = stationNamed("windows-2000-workstation");
    station.network.lanGroup.reset();
    EXPECT_EQ(errorOf(kvtest::causesOn(station, "szWorkgroup"), "NetWkstaGetInfo"), "2138 NERR_WkstaNotStarted");
    station = stationNamed("windows-2003-terminal-session");
    station.session.clientName.reset();
    const FieldCauses causes = kvtest::causesOn(station, "szClientName");
    EXPECT_FALSE(errorOf(causes, "ZRTSQueryClientName")) << "it has no code";
}

simwin::Station withFailing(simwin::Station station, const std::string& call) {
    kvstation::WhatIf whatIf;
    whatIf.fail = {call};
    kvstation::apply(whatIf, station);
    return station;
}

TEST(Explain, TellsTheErrorOfACallThatIsMadeToFail) {
    EXPECT_EQ(errorOf(kvtest::causesOn(withFailing(stationNamed("windows-2000-workstation"), "CallNtPowerInformation"),
                                       "dwCurrentMhz"),
                      "CallNtPowerInformation"),
              "3221225506 STATUS_ACCESS_DENIED");
    EXPECT_EQ(
        errorOf(kvtest::causesOn(withFailing(stationNamed("windows-2003-terminal-session"), "ZRTSQueryClientName"),
                                 "szClientName"),
                "ZRTSQueryClientName"),
        "31 ERROR_GEN_FAILURE");
}

// A station without clocks, which Windows says in its own way, and one with more of them than there is room for.
TEST(Explain, TellsTheStatusByWhichTheClocksAreRefused) {
    simwin::Station station = stationNamed("windows-xp-console");
    station.processors->currentMhz.clear();
    EXPECT_EQ(errorOf(kvtest::causesOn(station, "dwCurrentMhz"), "CallNtPowerInformation"),
              "3221225659 STATUS_NOT_SUPPORTED");
    station.processors->currentMhz = {1000, 1000};
    EXPECT_EQ(errorOf(kvtest::causesOn(station, "dwCurrentMhz"), "CallNtPowerInformation"),
              "3221225507 STATUS_BUFFER_TOO_SMALL");
}

TEST(Explain, NamesTheGiversOfTheNumberThatTheStationsTypeIsTakenFor) {
    const simwin::Station station = stationNamed("metaframe-session");
    const auto explained = [&](const char* type) {
        return kvtest::causesOn(withVariable(station, "KVStationType", type), "szStation");
    };
    EXPECT_EQ(explained("12").value, "PFÖRTNER-SÜD#1");
    EXPECT_THAT(giversOf(explained("12")), Contains("KVRDPClientName"));
    for (const auto& [type, number] : {std::pair{" 2nd", "2"}, std::pair{"01", "1"}}) {
        const FieldCauses one = explained(type);
        const FieldCauses plain = explained(number);
        EXPECT_EQ(one.value, plain.value) << type;
        EXPECT_EQ(giversOf(one), giversOf(plain)) << type;
        EXPECT_THAT(decidersOf(one), Contains("KVStationType")) << type;
    }
}

TEST(AllStations, NamesTheSessionWhereItDecides) {
    for (const char* field : {"szIPAddress", "szServerName", "szDefaultDomainName", "szStation"})
        for (const char* station : {"metaframe-session", "windows-2003-terminal-session"})
            EXPECT_THAT(decidersOf(causesOn(station, field)), Contains("CLIENTNAME")) << station << ": " << field;
}

TEST(AllStations, TellsTheWholeOfAValueThatWasCut) {
    const FieldCauses address = causesOn("windows-2003-terminal-session", "szIPAddress");
    EXPECT_EQ(address.cut->text, "192.168.7.20;10.8.0.6");
    EXPECT_THAT(kvstation::causesText(address, false), HasSubstr("cut to 15 of 21 characters"));
    EXPECT_EQ(causesOn("windows-2000-workstation", "szUserDisplayedName").cut->text.size(),
              stationNamed("windows-2000-workstation").user.displayName->size());
    EXPECT_FALSE(causesOn("metaframe-session", "szIPAddress").cut);
}

TEST(AllStations, TellsThatTheBiosDateCutsTheDrives) {
    const FieldCauses drives = causesOn("metaframe-session", "szCDRomDevices");
    EXPECT_EQ(drives.cut->text, "1 COMPAQ CRD-8402B");
    EXPECT_THAT(decidersOf(drives), Contains("SystemBiosDate"));
    EXPECT_THAT(kvstation::causesText(drives, false), HasSubstr("cut to 8 of 18 characters"));
}

TEST(Explain, TellsOfAnAnswerThatNobodyAskedForThatItIsNotWrittenDown) {
    simwin::Station station;
    station.environment = {{"KVIP", "10.0.0.5"}};
    const FieldCauses known = kvtest::causesOn(station, "szMACAddress");
    EXPECT_THAT(kvstation::causesText(known, false), Not(HasSubstr("not written down")));
    station.unknown = {"network.arp"};
    const FieldCauses causes = kvtest::causesOn(station, "szMACAddress");
    const auto arp = std::ranges::find(causes.causes, "SendARP", &Cause::call);
    ASSERT_NE(arp, causes.causes.end());
    EXPECT_TRUE(arp->isUnknown);
    EXPECT_THAT(kvstation::causesText(causes, false), HasSubstr("not written down in this station"));
}

TEST(Explain, TellsTheOverrideOfAVariableAndWhatComesWithoutIt) {
    simwin::Station station = stationNamed("windows-xp-console");
    const std::string before = kvtest::causesOn(station, "szUserName").value;
    station = withVariable(std::move(station), "KVUser", "Someone");
    const FieldCauses causes = kvtest::causesOn(station, "szUserName");
    EXPECT_EQ(causes.value, "Someone");
    EXPECT_THAT(giversOf(causes), ElementsAre("KVUser"));
    const std::vector<kvstation::NextValue> next = nextOn(station, causes);
    ASSERT_FALSE(next.empty());
    EXPECT_EQ(next.front().value, before);
}

TEST(AllStations, SaysOfAFieldThatNothingDecides) {
    EXPECT_THAT(kvstation::causesText(causesOn("windows-98-workstation", "szWinUser"), false),
                HasSubstr("nothing that the module asked changes it"));
}

TEST(AllStations, TellsEveryFieldOfAStationInALine) {
    for (const char* name : {"metaframe-session", "nt4-alpha-workstation"})
        for (const FieldCauses& causes : causesOfDescribed(name)) {
            const std::string line = kvstation::causesLine(causes, false);
            EXPECT_THAT(line, testing::StartsWith(std::string(kvstation::fields()[causes.field].name) + " = "));
            EXPECT_EQ(std::ranges::count(line, '\n'), 1);
        }
}

TEST(AllStations, TellOfAFieldByItselfWhatTheyTellOfItAmongAll) {
    for (const char* field : {"szStation", "szMACAddress"})
        EXPECT_EQ(kvstation::causesJson(kvtest::causesOn(stationNamed("nt4-alpha-workstation"), field)),
                  kvstation::causesJson(causesOn("nt4-alpha-workstation", field)));
}

TEST(AllStations, GivesCausesAsJson) {
    const nlohmann::ordered_json json = kvstation::causesJson(causesOn("metaframe-session", "szIPAddress"));
    std::vector<std::string> members;
    for (const auto& [name, content] : json.items())
        members.push_back(name);
    EXPECT_THAT(members, ElementsAre("field", "value", "cut", "causes", "unknown", "open", "next"));
    EXPECT_EQ(json["field"], "szIPAddress");
    EXPECT_EQ(json["value"], "192.168.31.44");
    EXPECT_TRUE(json["cut"].is_null());
    EXPECT_EQ(json["causes"][0],
              nlohmann::ordered_json::parse(R"J({"role": "gives", "question": "ZRTSQueryIPAddress(200)",
                  "answer": "192.168.31.44", "error": null,
                  "where": {"file": "station.json", "path": ["session", "clientAddress"]}})J"));
}

}  // namespace
}  // namespace kvtest
