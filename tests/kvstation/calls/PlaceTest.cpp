#include "kvstation/calls/Place.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "kvstation/cause/CauseJson.h"
#include "kvstation/cause/UnansweredText.h"

namespace kvtest {
namespace {

using kvstation::memberPlace;
using kvstation::Place;

const Place kValue{.kind = Place::Kind::Value, .key = "HKEY_LOCAL_MACHINE\\SOFTWARE\\B\xFCro", .value = "Name"};

nlohmann::ordered_json json(const char* text) {
    return nlohmann::ordered_json::parse(text);
}

TEST(Place, HasANameForPeople) {
    EXPECT_EQ(nameOf(memberPlace({"environment", "KVUser"})), "environment.KVUser");
    EXPECT_EQ(nameOf(kValue), "HKEY_LOCAL_MACHINE\\SOFTWARE\\B\xC3\xBCro\\Name");
    EXPECT_EQ(kvstation::nameOf(Place{.kind = Place::Kind::Item, .member = {"missing"}, .value = "ws2_32.dll"}),
              "missing.ws2_32.dll");
    EXPECT_EQ(kvstation::nameOf(Place{}), "");
}

TEST(Place, IsOneWhateverTheLetterCase) {
    EXPECT_EQ(memberPlace({"environment", "KVUser"}).id(), memberPlace({"environment", "kvuser"}).id());
    Place key = kValue;
    key.kind = Place::Kind::Key;
    EXPECT_NE(key.id(), kValue.id());
}

TEST(Place, LiesBelowWhatIsUnknown) {
    EXPECT_TRUE(isBelow(memberPlace({"network", "arp", "10.0.0.1"}), "network.arp"));
    EXPECT_TRUE(isBelow(memberPlace({"network", "arp"}), "network.arp"));
    EXPECT_FALSE(isBelow(memberPlace({"network", "arpx"}), "network.arp"));
    EXPECT_FALSE(isBelow(memberPlace({"network"}), "network.arp"));
    EXPECT_TRUE(isBelow(kValue, "HKEY_LOCAL_MACHINE\\software"));
    EXPECT_FALSE(isBelow(kValue, "HKEY_LOCAL_MACHINE\\SOFT"));
    EXPECT_FALSE(kvstation::isBelow(Place{}, ""));
}

TEST(Place, IsToldAsJsonByFileAndPath) {
    EXPECT_EQ(kvstation::placeJson(kValue), json(R"({"file": "registry.reg",
        "key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\Büro", "value": "Name"})"));
    Place key = kValue;
    key.kind = Place::Kind::Key;
    EXPECT_EQ(kvstation::placeJson(key), json(R"({"file": "registry.reg",
        "key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\Büro", "value": null})"));
    EXPECT_EQ(kvstation::placeJson(memberPlace({"environment", "KVUser"})),
              json(R"({"file": "station.json", "path": ["environment", "KVUser"]})"));
    EXPECT_TRUE(kvstation::placeJson({}).is_null());
}

TEST(Unknown, IsWhatIsListedAndNeitherDescribedNorKnownToBeAbsent) {
    simwin::Station station;
    station.network.arp = {{"10.0.0.1", std::string(6, '\1')}};
    station.unknown = {"network.arp"};
    station.absent = {{"network", "arp", "10.0.0.2"}};
    const kvstation::World world(station);
    EXPECT_FALSE(kvstation::isUnknown(world, memberPlace({"network", "arp", "10.0.0.1"})));
    EXPECT_FALSE(kvstation::isUnknown(world, memberPlace({"network", "arp", "10.0.0.2"})));
    EXPECT_TRUE(kvstation::isUnknown(world, memberPlace({"network", "arp", "10.0.0.3"})));
    EXPECT_FALSE(kvstation::isUnknown(world, memberPlace({"user", "name"})));
}

}  // namespace
}  // namespace kvtest
