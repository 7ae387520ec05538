// What the module would ask a station that is described with little more than its Windows.
#include "kvstation/experiments/AlikePlaces.h"
#include "kvstation/experiments/Branches.h"

#include <gmock/gmock.h>

#include "tests/kvstation/capture/BareWindows.h"

namespace kvtest {
namespace {

using kvstation::AskedPlaces;
using kvstation::memberPlace;
using kvstation::Place;
using simwin::Station;

Place key(const std::string& path) {
    return {.kind = Place::Kind::Key, .key = path};
}

kvstation::AskedCall variableAsked(const std::string& name) {
    return {{.name = "KVGetEnv", .arguments = name, .answer = {}, .subject = {}, .parameters = {name}}};
}

TEST(AskedPlaces, HoldEachPlaceOnceAndByTheNameThatItWasFirstAskedBy) {
    AskedPlaces asked;
    asked.add({variableAsked("KVUser"), variableAsked("KVIP")});
    asked.add({variableAsked("kvuser")});
    EXPECT_EQ(asked.all().size(), 2u);
    EXPECT_TRUE(asked.holds(memberPlace({"environment", "KVUSER"})));
    EXPECT_FALSE(asked.holds(memberPlace({"environment", "KVUserType"})));
    const AskedPlaces::Asked& user = asked.all().at(memberPlace({"environment", "KVUser"}).id());
    EXPECT_EQ(user.place.member.back(), "KVUser");
    EXPECT_EQ(user.words, "the environment variable");
}

TEST(AskedPlaces, LeaveOutWhatAsksNothingOrStandsNowhere) {
    AskedPlaces asked;
    asked.add({{{.name = "RegCloseKey", .arguments = {}, .answer = {}, .subject = {}}}});
    asked.add({variableAsked("")});
    EXPECT_TRUE(asked.all().empty());
}

TEST(AskedPlaces, TakeOthersIn) {
    AskedPlaces asked;
    asked.add({variableAsked("KVUser")});
    AskedPlaces others;
    others.add({variableAsked("kvuser"), variableAsked("KVIP")});
    EXPECT_TRUE(asked.add(others));
    EXPECT_FALSE(asked.add(others));
    EXPECT_EQ(asked.all().size(), 2u);
    EXPECT_EQ(asked.all().at(memberPlace({"environment", "KVUser"}).id()).place.member.back(), "KVUser");
}

TEST(AlikePlaces, AreThoseThatDifferByNamesOfAListAlone) {
    const auto listed = [](const std::string& path) {
        return Place{.kind = Place::Kind::Key, .key = path, .isListed = true};
    };
    const auto value = [](const std::string& path, const std::string& name) {
        return Place{.kind = Place::Kind::Value, .key = path, .value = name};
    };
    kvstation::AlikePlaces alike;
    for (const char* card : {"HKEY_USERS\\Cards\\1", "HKEY_USERS\\Cards\\2", "HKEY_USERS\\Cards\\3"})
        alike.addListed(listed(card));
    EXPECT_EQ(alike.count(value("HKEY_USERS\\Cards\\1", "Service")), 0u);
    EXPECT_EQ(alike.count(value("HKEY_USERS\\cards\\2", "SERVICE")), 1u);
    EXPECT_EQ(alike.count(value("HKEY_USERS\\Cards\\3", "Service")), 2u);
    EXPECT_EQ(alike.count(value("HKEY_USERS\\Cards\\3", "Title")), 0u) << "another value";
    EXPECT_EQ(alike.count(value("HKEY_USERS\\Cards\\4", "Service")), 0u) << "asked by its name";
    EXPECT_EQ(alike.count(value("HKEY_USERS\\Cards\\3\\Ndi", "Service")), 0u) << "of another key";
    EXPECT_EQ(alike.count(listed("HKEY_USERS\\Cards\\1")), 0u);
    EXPECT_EQ(alike.count(listed("HKEY_USERS\\Cards\\2")), 1u);
    EXPECT_EQ(alike.count(memberPlace({"memory"})), 0u);
    EXPECT_EQ(alike.count(memberPlace({"memory"})), 0u);
}

TEST(Branches, OfOneRunAreWhatTheStationItselfAsks) {
    const AskedPlaces asked = kvstation::askedOnce(windows2000(), kvstation::Collector());
    EXPECT_TRUE(asked.holds(key(kDevices)));
    EXPECT_TRUE(asked.holds(memberPlace({"environment", "KVUser"})));
    EXPECT_FALSE(asked.holds(key(kPrinters))) << "of Windows 9x";
    EXPECT_FALSE(asked.holds(key(kWinLogon))) << "of a session";
}

TEST(Branches, OfOtherVersionsAreWhatTheyAsk) {
    const AskedPlaces asked = kvstation::askedByVersions(windows2000(), kvstation::Collector());
    EXPECT_TRUE(asked.holds(key(kDevices)));
    EXPECT_TRUE(asked.holds(key(kPrinters)));
    EXPECT_TRUE(asked.holds(memberPlace({"profile", "windows", "device"}))) << "of Win32s";
    EXPECT_FALSE(asked.holds(key(kWinLogon))) << "of a session";
}

}  // namespace
}  // namespace kvtest
