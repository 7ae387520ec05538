// What a collection is told, written down as a station and told again. Another machine answers behind the one that
// watches, as Windows does where the tool captures.
#include <gmock/gmock.h>

#include <filesystem>
#include <utility>

#include "kvstation/capture/StationCapture.h"
#include "kvstation/capture/StationFolder.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Relay.h"
#include "simwin/machine/VersionResource.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::RecordBytes;
using kvstation::StationCapture;
using simwin::Machine;
using simwin::Station;

struct Captured {
    RecordBytes record{};
    Station station;
};

Captured captureBehind(Machine& behind) {
    simwin::Relay relay(behind);
    Machine watching{Station()};
    watching.relayTo(&relay);
    StationCapture capture;
    watching.observe(&capture);
    const RecordBytes record = kvstation::collectOn(watching);
    return {record, capture.station()};
}

// The station as its two files tell it.
Station writtenAndRead(const Station& station) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    Station again = simwin::parseStation(simwin::writeStation(station), "station.json");
    again.registry = simwin::readRegistry(simwin::writeRegistry(station.registry), "registry.reg");
    return again;
}

class EveryStation : public testing::TestWithParam<std::string> {};

TEST_P(EveryStation, GivesTheSameRecordVariablesAndTraceOnceCaptured) {
    const ExpectedStation expected = readExpectedStation(stationFolder(GetParam()));
    Machine behind(kvstation::readStationFolder(stationFolder(GetParam())));
    const Captured captured = captureBehind(behind);
    EXPECT_EQ(bytesOf(captured.record), recordBytes(expected.record));

    Machine replayed(writtenAndRead(captured.station));
    const RecordBytes again = kvstation::collectOn(replayed);
    CollectedStation found{bytesOf(again), replayed.variablesSet(), replayed.traceLines(), expected.standardOutput};
    EXPECT_THAT(differences(expected, found), testing::IsEmpty());
}

TEST_P(EveryStation, IsCapturedWithNothingThatWasNotAsked) {
    Machine behind(kvstation::readStationFolder(stationFolder(GetParam())));
    const Captured once = captureBehind(behind);
    Machine replayed(once.station);
    const Captured twice = captureBehind(replayed);
    EXPECT_EQ(simwin::writeStation(twice.station), simwin::writeStation(once.station));
    EXPECT_EQ(simwin::writeRegistry(twice.station.registry), simwin::writeRegistry(once.station.registry));
}

TEST_P(EveryStation, ReadsTheSameOnceWritten) {
    const Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    const Station again = writtenAndRead(station);
    EXPECT_EQ(simwin::writeStation(again), simwin::writeStation(station));
    EXPECT_EQ(simwin::writeRegistry(again.registry), simwin::writeRegistry(station.registry));
    Machine machine(again);
    EXPECT_EQ(bytesOf(kvstation::collectOn(machine)),
              recordBytes(readExpectedStation(stationFolder(GetParam())).record));
}

INSTANTIATE_TEST_SUITE_P(Stations, EveryStation, testing::ValuesIn(stationNames()), kvtest::NameOfStationTest());

TEST(Captured, RegistryKeepsTheOrderOfNamesThatWereListedAfterOneWasOpened) {
    Station station;
    station.version = simwin::WindowsVersion{.platformId = 2, .major = 4, .minor = 0, .build = 1381, .servicePack = ""};
    station.registry.create("HKEY_LOCAL_MACHINE\\Software\\Netscape\\Messenger\\Users");
    station.registry.create("HKEY_LOCAL_MACHINE\\Software\\Netscape\\Netscape\\4.79");
    Machine behind(station);
    const Captured captured = captureBehind(behind);
    const auto netscape = captured.station.registry.find("HKEY_LOCAL_MACHINE\\Software\\Netscape");
    ASSERT_TRUE(netscape);
    EXPECT_EQ(*captured.station.registry.subKeyName(*netscape, 0), "Messenger");
    EXPECT_EQ(*captured.station.registry.subKeyName(*netscape, 1), "Netscape");
}

TEST(Captured, ValueOfATypeThatIsNotReadKeepsItsTypeAndSize) {
    Station station;
    station.version = simwin::WindowsVersion{.platformId = 2, .major = 5, .minor = 1, .build = 2600, .servicePack = ""};
    station.registry.set(
        "HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System",
        {"SystemBiosDate", static_cast<std::uint32_t>(simwin::RegistryType::ExpandText), std::string("secret\0", 7)});
    Machine behind(station);
    const Captured captured = captureBehind(behind);
    const auto key = captured.station.registry.find("HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System");
    ASSERT_TRUE(key);
    const simwin::RegistryValue* value = captured.station.registry.findValue(*key, "SystemBiosDate");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->type, static_cast<std::uint32_t>(simwin::RegistryType::ExpandText));
    EXPECT_EQ(value->bytes, std::string(7, '\0'));
}

TEST(Captured, FileWhoseVersionEndsTooEarlyTellsNone) {
    Station station = kvstation::readStationFolder(stationFolder("metaframe-session"));
    for (simwin::File& file : station.files)
        if (file.version) {
            std::string resource = simwin::makeVersionResource(*std::exchange(file.version, {})).substr(0, 40 + 15);
            resource[0] = static_cast<char>(resource.size());
            resource[2] = 15;
            file.resource = resource;
        }
    Machine behind(station);
    const Captured captured = captureBehind(behind);
    Machine replayed(writtenAndRead(captured.station));
    EXPECT_EQ(bytesOf(kvstation::collectOn(replayed)), bytesOf(captured.record));
}

TEST(StationFolder, IsNotWrittenOverAnother) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "kvstation-capture-test";
    std::filesystem::remove_all(folder);
    kvstation::writeStationFolder(Station(), folder.string());
    EXPECT_THROW(kvstation::writeStationFolder(Station(), folder.string()), std::runtime_error);
    EXPECT_NO_THROW(kvstation::readStationFolder(folder.string()));
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kvtest
