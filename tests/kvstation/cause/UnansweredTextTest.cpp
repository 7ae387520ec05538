// What a run asks and a station has not written down.
#include "kvstation/cause/UnansweredText.h"

#include <gmock/gmock.h>

#include "tests/kvstation/capture/BareWindows.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kHeading = "\nAsked then, but not written down in this station:\n";

std::string unansweredOn(const simwin::Station& station) {
    const kvstation::World world(station);
    simwin::Machine machine(world.station());
    std::vector<kvstation::AskedCall> calls;
    kvstation::runOn(kvstation::Collector(), machine, calls);
    return kvstation::unansweredText(world, calls);
}

// A station with an address, whose MAC is asked for.
simwin::Station addressed() {
    simwin::Station station;
    station.environment = {{"KVIP", "10.0.0.5"}};
    return station;
}

TEST(UnansweredText, IsALineForEachQuestion) {
    simwin::Station station = addressed();
    station.unknown = {"network.arp", "computerName"};
    EXPECT_EQ(unansweredOn(station), std::string(kHeading) +
                                         "  the MAC address that answers ARP for the address: network.arp.10.0.0.5\n"
                                         "  the computer's name: computerName\n");
}

// gethostbyaddr and, where it tells nothing, getnameinfo.
TEST(UnansweredText, IsOneLineForOnePlaceThatSeveralCallsAskFor) {
    simwin::Station station = addressed();
    station.version = {.platformId = 2, .major = 5, .minor = 1, .build = 2600};
    station.unknown = {"network.addresses"};
    EXPECT_EQ(unansweredOn(station), std::string(kHeading) + "  the name of the address: network.addresses.10.0.0.5\n");
}

TEST(UnansweredText, IsEmptyWhereNothingIsUnknown) {
    EXPECT_EQ(unansweredOn(addressed()), "");
}

TEST(UnansweredText, LeavesOutWhatNobodyAsked) {
    simwin::Station station = addressed();
    station.environment.clear();  // no address, no question for its MAC
    station.unknown = {"network.arp"};
    EXPECT_EQ(unansweredOn(station), "");
}

TEST(UnansweredText, LeavesOutWhatIsDescribedOrKnownNotToBeThere) {
    simwin::Station station = addressed();
    station.unknown = {"network.arp", "computerName"};
    station.computerName = "PC";
    station.absent = {{"network", "arp", "10.0.0.5"}};
    EXPECT_EQ(unansweredOn(station), "");
}

TEST(UnansweredText, TellsKeysAndValuesBelowAnUnknownKey) {
    simwin::Station station = addressed();
    station.version = simwin::WindowsVersion{.platformId = 2, .major = 5, .minor = 0, .build = 2195, .servicePack = ""};
    station.registry.set(kSystem, simwin::textValue("Identifier", "AT"));
    station.unknown = {"HKEY_LOCAL_MACHINE\\HARDWARE"};
    const std::string text = unansweredOn(station);
    EXPECT_THAT(text, HasSubstr("  the registry value: " + std::string(kSystem) + "\\SystemBiosDate\n"));
    EXPECT_THAT(text, HasSubstr("  the registry key: " + std::string(kSystem) + "\\CentralProcessor\\0\n"));
    EXPECT_THAT(text, Not(HasSubstr("System\\Identifier\n")));
    EXPECT_THAT(text, Not(HasSubstr("the registry key: " + std::string(kSystem) + "\n")));
    EXPECT_THAT(text, Not(HasSubstr("HKEY_CURRENT_USER"))) << "of which nothing is said to be unknown";
}

TEST(UnansweredText, ShowsWhatCouldSteerATerminal) {
    simwin::Station station;
    station.network.hostName = "evil\x1b[2J";
    station.unknown = {"network.hosts"};
    EXPECT_EQ(unansweredOn(station),
              std::string(kHeading) + "  the addresses of the host's name: network.hosts.evil\\x1b[2J\n");
}

}  // namespace
}  // namespace kvtest
