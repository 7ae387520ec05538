// A captured station that is made whole out of a machine of the test's own.
#include "kvstation/capture/Completion.h"

#include <gmock/gmock.h>

#include "tests/kvstation/capture/BareWindows.h"
#include "tests/kvstation/capture/DescribedState.h"

namespace kvtest {
namespace {

using kvstation::AskedPlaces;
using kvstation::Reach;
using simwin::RegistryTree;
using simwin::Station;
using simwin::textValue;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr const char* kMail = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail";

// The station as the machine makes it whole, without other branches. `asked` is what a real run asked.
Station completed(Station station, DescribedState& state, const AskedPlaces& asked = {}) {
    kvstation::complete(station, asked, state, kvstation::Collector(), Reach::StationItself);
    return station;
}

TEST(Completion, TakesWhatIsAskedForAndNothingElse) {
    DescribedState state;
    RegistryTree& registry = state.described.registry;
    registry.set(kSystem, textValue("Identifier", "AT"));
    registry.set(kSystem, textValue("Serial", "nobody asks"));
    registry.create(std::string(kSystem) + "\\NobodyAsks");
    state.described.environment = {{"KVUSER", "Someone"}, {"SECRET", "nobody asks"}};
    const Station station = completed(windows2000(), state);
    EXPECT_EQ(textOf(station, kSystem, "Identifier"), "AT");
    EXPECT_EQ(textOf(station, kSystem, "Serial"), "no value");
    EXPECT_FALSE(hasKey(station, std::string(kSystem) + "\\NobodyAsks"));
    EXPECT_EQ(textOf(station, "KVUser"), "Someone");
    ASSERT_EQ(station.environment.size(), 1u);
    EXPECT_FALSE(hasKey(station, kDevices)) << "which the machine does not have";
}

// Of a processor that has a name the next one is asked for; a key that is named by a value is asked for once it is
// known.
TEST(Completion, GoesOnFromWhatItTook) {
    DescribedState state;
    RegistryTree& registry = state.described.registry;
    for (const char* number : {"0", "1", "2"})
        registry.set(std::string(kSystem) + "\\CentralProcessor\\" + number, textValue("ProcessorNameString", number));
    registry.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.ica", textValue("", "Ica"));
    registry.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Ica\\shell\\open\\command", textValue("", "C:\\WFICA32.EXE"));
    state.described.files = {{"C:\\wfica32.exe", simwin::FileVersion{4, 20, 7, 41}, {}}};
    const Station station = completed(windows2000(), state);
    EXPECT_EQ(textOf(station, std::string(kSystem) + "\\CentralProcessor\\2", "ProcessorNameString"), "2");
    ASSERT_EQ(station.files.size(), 1u);
    EXPECT_EQ(station.files.front().version, (simwin::FileVersion{4, 20, 7, 41}));
}

TEST(Completion, LeavesWhatIsDescribed) {
    DescribedState state;
    state.described.registry.set(kSystem, textValue("Identifier", "of the machine"));
    state.described.environment = {{"KVUser", "of the machine"}};
    Station before = windows2000();
    before.registry.set(kSystem, textValue("Identifier", "captured"));
    before.environment = {{"kvuser", "captured"}};
    const Station station = completed(before, state);
    EXPECT_EQ(textOf(station, kSystem, "Identifier"), "captured");
    EXPECT_EQ(textOf(station, "kvuser"), "captured");
    EXPECT_EQ(station.environment.size(), 1u);
}

// The capture knows no more than the size of a value whose data nobody read.
TEST(Completion, FillsInAValueOfWhichTheSizeAloneWasTold) {
    DescribedState state;
    state.described.registry.set(kSystem, textValue("Identifier", "AT"));
    Station before = windows2000();
    before.registry.set(kSystem, {"Identifier", 1, std::string(3, '\0')});
    EXPECT_EQ(textOf(completed(before, state), kSystem, "Identifier"), "AT");
}

TEST(Completion, PutsNamesInTheOrderOfTheMachine) {
    DescribedState state;
    Station before = windows2000();
    for (const char* name : {"First", "Second", "Third"})
        state.described.registry.set(kDevices, textValue(name, "winspool"));
    for (const char* name : {"Zeta", "Alpha"})
        state.described.registry.create(std::string(kMail) + "\\" + name);
    before.registry.set(kDevices, textValue("Third", "winspool"));
    before.registry.create(std::string(kMail) + "\\Alpha");
    const Station station = completed(before, state);
    std::vector<std::string> printers;
    for (const simwin::RegistryValue& value : station.registry.values(*station.registry.find(kDevices)))
        printers.push_back(value.name);
    EXPECT_THAT(printers, ElementsAre("First", "Second", "Third"));
    std::vector<std::string> keys;
    for (const simwin::KeyId key : station.registry.subKeys(*station.registry.find(kMail)))
        keys.push_back(station.registry.name(key));
    EXPECT_THAT(keys, ElementsAre("Zeta", "Alpha"));
}

TEST(Completion, OfTheStationItselfTakesNothingOfOtherBranches) {
    DescribedState state;
    state.described.registry.set(kWinLogon, textValue("DefaultDomainName", "LAB"));
    state.described.registry.create(std::string(kPrinters) + "\\Laser");
    state.described.environment = {{"KVGetClientMACAddress", "1"}};
    const Station station = completed(windows2000(), state);
    EXPECT_FALSE(hasKey(station, kWinLogon));
    EXPECT_FALSE(hasKey(station, kPrinters));
    EXPECT_EQ(textOf(station, "KVGetClientMACAddress"), "not set");
}

TEST(Completion, ListsVariablesThatTheMachineCannotTellAsUnknown) {
    DescribedState state;
    state.knowsAll = false;
    state.described.environment = {{"KVUserType", "1"}};
    const Station station = completed(windows2000(), state);
    EXPECT_THAT(station.unknown, Contains("environment.KVUser"));
    EXPECT_THAT(station.unknown, Not(Contains("environment.KVUserType"))) << "which it told";
    EXPECT_EQ(textOf(station, "KVUserType"), "1");
}

TEST(Completion, KnowsOfWhatWasAskedThatItIsNotThere) {
    DescribedState state;
    Station before = windows2000();
    before.environment = {{"KVIP", "10.0.0.5"}};
    before.network.hostName = "pc";
    const kvstation::Collector collector;
    const Station station = completed(before, state, kvstation::askedOnce(before, collector));
    EXPECT_THAT(station.absent, Contains(simwin::MemberPath{"network", "arp", "10.0.0.5"}));
    EXPECT_THAT(station.absent, Not(Contains(simwin::MemberPath{"network", "hostName"})));
    const Station unasked = completed(before, state);
    EXPECT_THAT(unasked.absent, testing::IsEmpty());
}

}  // namespace
}  // namespace kvtest
