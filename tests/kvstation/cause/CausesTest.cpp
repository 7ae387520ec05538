// The order in which the causes of a field are told, on stations of the test's own.
#include "kvstation/cause/Causes.h"

#include <gmock/gmock.h>

#include <map>

#include "kvstation/cause/CauseText.h"
#include "kvstation/record/FieldTable.h"
#include "tests/kvstation/capture/BareWindows.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::Cause;
using kvstation::FieldCauses;
using kvstation::Role;
using testing::ElementsAreArray;

// What gives or adds to szPrinters, in the order of the explanation, where the printers have these names.
std::vector<std::string> giversOfPrinters(const std::vector<std::string>& names) {
    simwin::Station station = windows2000();
    for (const std::string& name : names)
        station.registry.set(kDevices, simwin::textValue(name, ""));
    kvstation::World world(station);
    std::vector<std::string> givers;
    for (const Cause& cause : kvstation::giversOf(world, kvstation::Collector(), kvstation::findField("szPrinters")))
        givers.push_back(cause.place.value);
    return givers;
}

// A name that fills the field up to `left` characters, those of the names and a separator before them counted.
std::string nameThatLeaves(std::size_t left, std::size_t before) {
    return "Middle " + std::string(kPrintersLimit - left - before - 1 - 7, 'm');
}

TEST(Givers, StandInTheOrderInWhichTheyStandInTheValue) {
    const std::vector<std::string> names = {"Zeta East", "Alpha West", "Middle North"};
    EXPECT_THAT(giversOfPrinters(names), ElementsAreArray(names));
}

// Its beginning stands at the value's end, and by chance at the value's beginning too.
TEST(Givers, ThatWereCutStandLast) {
    const std::string first = "Laser 4000 Verwaltung";
    const std::vector<std::string> names = {first, nameThatLeaves(6, first.size()), "Laser 5 Lager"};
    EXPECT_THAT(giversOfPrinters(names), ElementsAreArray(names));
}

TEST(Givers, WhoseTextsBeginAlikeStandWhereTheWholeTextStands) {
    const std::vector<std::string> names = {"Laser 4000", "Inkjet", "Laser 400", "Laser 40"};
    EXPECT_THAT(giversOfPrinters(names), ElementsAreArray(names));
}

TEST(Givers, WhoseTextStandsWithinAnotherStandWhereTheyAreOfTheirOwn) {
    const std::vector<std::string> names = {"Hall Laser", "Inkjet", "Laser"};
    EXPECT_THAT(giversOfPrinters(names), ElementsAreArray(names));
}

TEST(Causes, StandWithTheGiverFirst) {
    simwin::Station station;
    station.environment = {{"KVUserType", "1"}};
    station.user.network = "Someone";
    const FieldCauses causes = causesOn(station, "szUserName");
    EXPECT_EQ(causes.value, "SOMEONE");
    std::vector<std::string> deciders;
    for (const Cause& cause : causes.causes)
        if (cause.role == Role::Decides)
            deciders.push_back(cause.place.member.back());
    ASSERT_EQ(deciders.size() + 1, causes.causes.size());
    EXPECT_EQ(causes.causes.front().role, Role::Gives);
    EXPECT_EQ(causes.causes.front().call, "KVGetUserName");
    EXPECT_THAT(deciders, testing::IsSupersetOf<std::string>({"KVUser", "KVUserType"}));
}

// The session's number lies in what stands at the process' place, but another call tells it.
TEST(Causes, ThatHoldWhatAnotherCallTellsDecideAlone) {
    simwin::Station station = windows2000();
    station.process = {.id = 408, .sessionId = 3};
    const FieldCauses session = causesOn(station, "dwSessionId");
    EXPECT_EQ(session.value, "3");
    std::map<std::string, Role> roles;
    for (const Cause& cause : session.causes)
        roles[cause.call] = cause.role;
    EXPECT_EQ(roles["GetTokenInformation"], Role::Gives);
    ASSERT_TRUE(roles.contains("OpenProcess"));
    EXPECT_EQ(roles["OpenProcess"], Role::Decides);
}

// The test for a session asks GetVersion. With another version there are other functions and tokens too, whatever
// GetVersionExA says.
TEST(Causes, OfOnePlaceAreTheCallsThatTheFieldStaysWithout) {
    const FieldCauses session = causesOn(stationNamed("nt4-powerpc-workstation"), "dwTSClientSession");
    std::vector<std::string> calls;
    for (const Cause& cause : session.causes)
        calls.push_back(cause.call);
    EXPECT_THAT(calls, testing::Contains("GetVersion"));
    EXPECT_THAT(calls, testing::Not(testing::Contains("GetVersionExA")));
}

// Of a disk nobody knows what Windows makes at its start, and who sits there.
TEST(Causes, ThatNobodyKnowsAreFoundBySupposingThem) {
    simwin::Station station = windows2000();
    station.unknown = {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE\\HARDWARE", "drives"};
    std::vector<FieldCauses> all;
    for (const char* name : {"szBiosDate", "szDiskDevices", "szPrinters", "szCDRomDrives", "szProviders"})
        all.push_back({.field = kvstation::findField(name), .value = "", .cut = {}, .causes = {}});
    kvstation::addUnknownSources(station, kvstation::Collector(), all);
    const std::vector<std::vector<std::string>> expected = {
        {"HKEY_LOCAL_MACHINE\\HARDWARE"}, {"HKEY_LOCAL_MACHINE\\HARDWARE"}, {"HKEY_CURRENT_USER"}, {"drives"}, {}};
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(all[i].unknown, expected[i]) << kvstation::fields()[all[i].field].name;
    EXPECT_THAT(
        kvstation::causesText(all.front(), false),
        testing::AllOf(testing::HasSubstr("unknown  not written down in this station  HKEY_LOCAL_MACHINE\\HARDWARE\n"),
                       testing::Not(testing::HasSubstr("nothing that the module asked"))));
    // What several of them would do together nobody tried.
    EXPECT_TRUE(all.back().isOpen);
    EXPECT_FALSE(all.front().isOpen);
    EXPECT_THAT(kvstation::causesText(all.back(), false),
                testing::HasSubstr("  no answer changes it by itself; what is unknown on this station may, several "
                                   "things together\n"));
    all.back().isOpen = false;
    EXPECT_THAT(kvstation::causesText(all.back(), false),
                testing::HasSubstr("nothing that the module asked changes it"));
}

}  // namespace
}  // namespace kvtest
