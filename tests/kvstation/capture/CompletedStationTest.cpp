// A captured station with what all branches of a collection would ask for, out of a machine of the test's own.
#include <gmock/gmock.h>

#include "kvstation/capture/Completion.h"
#include "tests/kvstation/capture/BareWindows.h"
#include "tests/kvstation/capture/DescribedState.h"

namespace kvtest {
namespace {

using kvstation::AskedPlaces;
using kvstation::Place;
using simwin::Station;
using simwin::textValue;
using testing::Contains;
using testing::Not;

constexpr const char* kSettings = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings";

// A machine with what only another version, a session or another setting asks for.
DescribedState machineOfManyBranches() {
    DescribedState state;
    simwin::RegistryTree& registry = state.described.registry;
    registry.set(kWinLogon, textValue("DefaultDomainName", "LAB"));
    registry.set(kSettings, textValue("KVVDIClient", "0"));
    registry.create(std::string(kPrinters) + "\\Laser");
    state.described.environment = {{"KVGetClientMACAddress", "1"}};
    return state;
}

Station windows2000Server() {
    Station station;
    station.version = simwin::WindowsVersion{
        .platformId = 2, .major = 5, .minor = 0, .build = 2195, .servicePack = "", .terminalServices = true};
    station.computerName = "PC";
    return station;
}

// All branches of one station are followed for all these tests together.
class CompletedStation : public testing::Test {
  protected:
    static const Station& station() { return completion().station; }
    static const AskedPlaces& asked() { return completion().asked; }

  private:
    struct Completion {
        Station station;
        AskedPlaces asked;
    };
    static const Completion& completion() {
        static const Completion made = [] {
            DescribedState state = machineOfManyBranches();
            Completion one{windows2000Server(), {}};
            const kvstation::Collector collector;
            const AskedPlaces itself = kvstation::askedOnce(one.station, collector);
            one.asked = kvstation::complete(one.station, itself, state, collector, kvstation::Reach::AllBranches);
            return one;
        }();
        return made;
    }
};

TEST_F(CompletedStation, HoldsWhatOtherBranchesWouldAskFor) {
    EXPECT_EQ(textOf(station(), kWinLogon, "DefaultDomainName"), "LAB") << "which a session asks for";
    EXPECT_EQ(textOf(station(), "KVGetClientMACAddress"), "1") << "which a session asks for";
    EXPECT_TRUE(hasKey(station(), std::string(kPrinters) + "\\Laser")) << "which Windows 9x asks for";
}

TEST_F(CompletedStation, HoldsNothingThatTheMachineDoesNotHave) {
    EXPECT_FALSE(hasKey(station(), kCitrix));
    EXPECT_FALSE(hasKey(station(), kDevices));
    EXPECT_EQ(station().environment.size(), 1u);
    EXPECT_TRUE(station().files.empty());
}

TEST_F(CompletedStation, ListsWhatOnlyOthersCouldTellAsUnknown) {
    for (const char* root : {"network.arp", "network.hosts", "network.addresses", "session.clientName",
                             "session.clientAddress", "user.network", "user.directory", "citrix"})
        EXPECT_THAT(station().unknown, Contains(root));
    EXPECT_THAT(station().unknown, Not(Contains("computerName"))) << "which is described";
    EXPECT_THAT(station().unknown, Not(Contains("version"))) << "which is described";
    EXPECT_THAT(station().unknown, Not(Contains("user.name"))) << "which was asked, and there is none";
    for (const char* beginning : {"environment", "files", "fails", "HKEY_"})
        EXPECT_THAT(station().unknown, Not(Contains(testing::StartsWith(beginning))));
}

TEST_F(CompletedStation, WasAskedWhateverABranchAsks) {
    const auto holds = [&](Place::Kind kind, const std::string& path) {
        return asked().holds({.kind = kind, .key = path});
    };
    EXPECT_TRUE(holds(Place::Kind::Key, kDevices));
    EXPECT_TRUE(holds(Place::Kind::Key, kCitrix)) << "with CLIENTNAME";
    EXPECT_TRUE(holds(Place::Kind::Key, kWinLogon)) << "with CLIENTNAME";
    EXPECT_TRUE(holds(Place::Kind::Key, std::string(kPrinters) + "\\Laser")) << "on Windows 9x";
    EXPECT_TRUE(asked().holds(kvstation::memberPlace({"profile", "windows", "device"}))) << "on Win32s";
    EXPECT_TRUE(asked().holds(kvstation::memberPlace({"user", "directory"}))) << "with KVUserType=2";
    EXPECT_TRUE(asked().holds(kvstation::memberPlace({"citrix"}))) << "with KVVDIClient=1";
}

}  // namespace
}  // namespace kvtest
