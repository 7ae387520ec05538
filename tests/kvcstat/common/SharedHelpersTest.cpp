// Environment, file versions, lists.
#include <memory>

#include "kvcstat/common/StatGlobal.h"
#include "simwin/machine/VersionResource.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using kvtest::Str;

class SharedHelpersTest : public kvtest::MachineTest {
  protected:
    CStatGlobal global;
};

TEST_F(SharedHelpersTest, VariablesReadAsTheirTextAndAsEmptyWhenUnset) {
    station.environment = {{"KVIP", "10.1.2.3"}, {"KVEmpty", ""}};
    Start();
    EXPECT_STREQ(global.GetEnvVar("KVIP"), "10.1.2.3");
    EXPECT_STREQ(global.GetEnvVar("KVEmpty"), "");
    EXPECT_STREQ(global.GetEnvVar("KVUser"), "");
}

TEST_F(SharedHelpersTest, VariableLongerThanTheBufferArrivesCutTo511Characters) {
    station.environment = {{"KVUser", std::string(511, 'a')}, {"KVStation", std::string(600, 'b')}};
    Start();
    EXPECT_EQ(Str(global.GetEnvVar("KVUser")), std::string(511, 'a'));
    EXPECT_EQ(Str(global.GetEnvVar("KVStation")), std::string(511, 'b'));
}

TEST_F(SharedHelpersTest, SetVariablesReadBackAndTheLibrarysResultIsPassedOn) {
    Start();
    EXPECT_NE(global.SetEnvVar("KVOS", "NT5"), 0);
    EXPECT_STREQ(global.GetEnvVar("KVOS"), "NT5");
    EXPECT_EQ(VariableSet("KVOS"), "NT5");
}

TEST_F(SharedHelpersTest, FileVersionIsFourDecimalNumbersWithoutPadding) {
    station.files.push_back({"C:\\WINDOWS\\system32\\mstscax.dll", simwin::FileVersion{6, 0, 2900, 2180}, {}});
    station.files.push_back({"C:\\big.exe", simwin::FileVersion{65535, 65535, 65535, 65535}, {}});
    station.files.push_back({"C:\\plain.txt", {}, {}});
    Start();
    EXPECT_STREQ(global.GetFileVersion("C:\\WINDOWS\\system32\\mstscax.dll"), "6.0.2900.2180");
    EXPECT_STREQ(global.GetFileVersion("C:\\big.exe"), "65535.65535.65535.65535");
    EXPECT_STREQ(global.GetFileVersion("C:\\plain.txt"), "");
    EXPECT_STREQ(global.GetFileVersion("C:\\missing.exe"), "");
    ExpectEverythingClosed();
}

TEST_F(SharedHelpersTest, FileWithoutAVersionIsAskedForItsSizeAlone) {
    station.files.push_back({"C:\\plain.txt", {}, {}});
    Start();
    EXPECT_STREQ(global.GetFileVersion("C:\\plain.txt"), "");
    EXPECT_EQ(machine->calls(), 1u);
}

TEST_F(SharedHelpersTest, FileVersionsBlockIsUnlockedBeforeItIsFreed) {
    station.files.push_back({"C:\\a.exe", simwin::FileVersion{6, 0, 2900, 2180}, {}});
    Start().keepLog(true);
    EXPECT_STREQ(global.GetFileVersion("C:\\a.exe"), "6.0.2900.2180");
    std::vector<std::string> calls;
    for (const simwin::LoggedCall& call : machine->log()) {
        if (call.name.starts_with("Global"))
            calls.push_back(call.name);
    }
    EXPECT_THAT(calls, ::testing::ElementsAre("GlobalAlloc", "GlobalLock", "GlobalUnlock", "GlobalFree"));
}

TEST_F(SharedHelpersTest, VersionResourceWithoutFixedInformationGivesTheEmptyText) {
    station.files.push_back({"C:\\cut.exe", {}, std::string("\x10\0\0\0\0\0V\0S\0_\0V\0", 14)});
    station.files.push_back({"C:\\byte.exe", {}, std::string("\x01", 1)});
    Start();
    EXPECT_STREQ(global.GetFileVersion("C:\\cut.exe"), "");
    EXPECT_STREQ(global.GetFileVersion("C:\\byte.exe"), "");
    ExpectEverythingClosed();
}

TEST_F(SharedHelpersTest, FixedInformationCountsFromTheEndOfTheFileVersionOn) {
    // Signature, structure's version and the two halves of the file version: 16 bytes, at the offset 40.
    const std::string resource = simwin::makeVersionResource({6, 0, 2900, 2180});
    const auto describe = [&](const char* path, std::size_t length) {
        std::string cut = resource.substr(0, 40 + length);
        cut[0] = static_cast<char>(cut.size());
        cut[2] = static_cast<char>(length);
        station.files.push_back({path, {}, cut});
    };
    describe("C:\\15.exe", 15);
    describe("C:\\16.exe", 16);
    describe("C:\\51.exe", 51);
    Start();
    EXPECT_STREQ(global.GetFileVersion("C:\\15.exe"), "");
    EXPECT_STREQ(global.GetFileVersion("C:\\16.exe"), "6.0.2900.2180");
    EXPECT_STREQ(global.GetFileVersion("C:\\51.exe"), "6.0.2900.2180");
    ExpectEverythingClosed();
}

TEST_F(SharedHelpersTest, VersionResourceThatCannotBeReadHasNotTheVersionOfTheFileBefore) {
    station.files.push_back({"C:\\first.exe", simwin::FileVersion{1, 2, 3, 4}, {}});
    station.files.push_back({"C:\\second.exe", simwin::FileVersion{5, 6, 7, 8}, {}});
    Start();
    EXPECT_STREQ(global.GetFileVersion("C:\\first.exe"), "1.2.3.4");
    machine->failCall(machine->faultableCalls() + 4);  // behind the size, the block and its lock
    EXPECT_STREQ(global.GetFileVersion("C:\\second.exe"), "");
    EXPECT_EQ(machine->failedCall(), "GetFileVersionInfoA");
    ExpectEverythingClosed();
}

TEST_F(SharedHelpersTest, FileVersionTextsAreSwitchedOff) {
    station.files.push_back({"C:\\a.exe", simwin::FileVersion{1, 2, 3, 4}, {}});
    Start();
    EXPECT_STREQ(global.GetFileVersionString("C:\\a.exe", "ProductName"), "");
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(SharedHelpersTest, SeparatorStandsOnlyBetweenItems) {
    Start();
    CString list;
    global.AppendString(list, "A", ", ");
    EXPECT_STREQ(list, "A");
    global.AppendString(list, "B", ", ");
    EXPECT_STREQ(list, "A, B");
}

TEST_F(SharedHelpersTest, EmptyItemsAreAppendedAsTheyAre) {
    Start();
    CString list;
    global.AppendString(list, "", ";");
    global.AppendString(list, "x", ";");
    EXPECT_STREQ(list, "x");
    global.AppendString(list, "", ";");
    EXPECT_STREQ(list, "x;");
}

TEST_F(SharedHelpersTest, NumberedItemsCarryTheirCount) {
    Start();
    CString list;
    global.AppendNumbered(list, 2, "Generic disk", ";");
    global.AppendNumbered(list, 1, "", ";");
    EXPECT_STREQ(list, "2 Generic disk;1 ");
}

TEST_F(SharedHelpersTest, ListIsEmptiedByDeletingEveryElement) {
    struct Counted : CObject {
        explicit Counted(int& alive) : count(alive) { ++count; }
        ~Counted() override { --count; }
        int& count;
    };
    Start();
    int alive = 0;
    CObList list;
    for (int i = 0; i < 12; ++i)
        list.AddTail(new Counted(alive));
    list.AddTail(nullptr);
    EXPECT_EQ(alive, 12);
    global.DeleteObList(list);
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(list.IsEmpty());
}

}  // namespace
