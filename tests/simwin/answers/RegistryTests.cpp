#include <gmock/gmock.h>

#include <array>
#include <string>

#include "framework/Windows.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kProduct = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Product";

RegistryValue rawValue(const char* name, DWORD type, std::string bytes) {
    return {name, type, std::move(bytes)};
}

Station registryDescribed() {
    Station station;
    station.registry.set(kProduct, textValue("Name", "abc"));
    station.registry.set(kProduct, textValue("", "default"));
    station.registry.set(kProduct, dwordValue("Number", 0x01020304));
    station.registry.set(kProduct, rawValue("Open", REG_SZ, "abc"));
    station.registry.set(kProduct, rawValue("OpenBinary", REG_BINARY, "abc"));
    station.registry.set(kProduct, rawValue("Nothing", REG_BINARY, ""));
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Zebra");
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Aardvark");
    return station;
}

class Registry : public testing::Test {
  protected:
    HKEY open(const char* subKey = "SOFTWARE\\Product") {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, subKey, &key), ERROR_SUCCESS);
        return key;
    }

    Running running{registryDescribed()};
};

using RegOpenKeyATest = Registry;
using RegQueryValueExATest = Registry;
using RegEnumKeyATest = Registry;
using RegEnumValueATest = Registry;
using RegCloseKeyATest = Registry;

TEST_F(RegOpenKeyATest, FindsAKeyInAnyLetterCase) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "software\\PRODUCT\\zebrA", &key), ERROR_SUCCESS);
    EXPECT_EQ(running.machine.openHandles(HandleKind::RegistryKey).front().what,
              "HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Zebra");
}

TEST_F(RegOpenKeyATest, TellsWhatIsWrongWithAPathThatNamesNoKey) {
    struct {
        const char* path;
        LSTATUS error;
    } const cases[] = {{"SOFTWARE\\None", ERROR_FILE_NOT_FOUND},
                       {"SOFTWARE\\Product\\Name", ERROR_FILE_NOT_FOUND},
                       {"\\SOFTWARE", ERROR_BAD_PATHNAME},
                       {"\\", ERROR_BAD_PATHNAME},
                       {"SOFTWARE\\None\\", ERROR_FILE_NOT_FOUND}};
    for (const auto& one : cases) {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, one.path, &key), one.error) << one.path;
        EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, one.path, 0, KEY_READ, &key), one.error) << one.path;
        EXPECT_EQ(key, nullptr) << one.path;
    }
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
}

TEST_F(RegOpenKeyATest, TakesBackslashesAtThePathsEndAndDoubledOnesInside) {
    for (const char* path : {"SOFTWARE\\Product\\", "SOFTWARE\\Product\\\\", "SOFTWARE\\\\Product"}) {
        open(path);
        EXPECT_EQ(running.machine.openHandles(HandleKind::RegistryKey).back().what, kProduct) << path;
    }
}

TEST_F(RegOpenKeyATest, AnswersTheSameHandleWithoutASubKey) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "", &key), ERROR_SUCCESS);
    EXPECT_EQ(key, HKEY_LOCAL_MACHINE);
    const HKEY product = open();
    EXPECT_EQ(RegOpenKeyA(product, nullptr, &key), ERROR_SUCCESS);
    EXPECT_EQ(key, product);
    EXPECT_THAT(running.machine.openHandles(), SizeIs(1));
}

TEST_F(RegOpenKeyATest, RefusesAHandleThatIsNoneAndOnePlaceThatIsNull) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyA(nullptr, "SOFTWARE", &key), ERROR_INVALID_HANDLE);
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_EQ(RegOpenKeyA(reinterpret_cast<HKEY>(0x1234), "SOFTWARE", &key), ERROR_INVALID_HANDLE);
    EXPECT_THAT(running.machine.misuses(), testing::ElementsAre("RegOpenKeyA: 0x1234 is no open key"));
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE", nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(RegOpenKeyATest, NeedsNoKeyUnderAHiveThatIsNotDescribed) {
    HKEY key = nullptr;
    for (const HKEY hive :
         {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_USERS, HKEY_CURRENT_CONFIG, HKEY_DYN_DATA, HKEY_PERFORMANCE_DATA})
        EXPECT_EQ(RegOpenKeyA(hive, "Any", &key), ERROR_FILE_NOT_FOUND);
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
}

TEST(RegOpenKeyExATest, OpensANewHandleToAnOpenKeyWithoutASubKey) {
    const Running running(registryDescribed());
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_READ, &key), ERROR_SUCCESS);
    HKEY again = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, "", 0, KEY_READ, &again), ERROR_SUCCESS);
    EXPECT_NE(again, key);
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, nullptr, 0, KEY_READ, &again), ERROR_SUCCESS);
    EXPECT_EQ(again, HKEY_LOCAL_MACHINE);
}

TEST(RegOpenKeyExATest, DeniesADeniedKeyAndNotThoseBelowIt) {
    Station station = registryDescribed();
    station.deniedKeys = {kProduct};
    const Running running(station);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product", 0, KEY_READ, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product", &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product\\Zebra", &key), ERROR_SUCCESS);
}

TEST(RegOpenKeyExATest, FindsTheClassesUnderBothTheirNames) {
    Station station;
    station.registry.set("HKEY_CLASSES_ROOT\\.html", textValue("", "htmlfile"));
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.ica");
    const Running running(station);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "Software\\Classes\\.html", &key), ERROR_SUCCESS);
    EXPECT_EQ(RegOpenKeyA(HKEY_CLASSES_ROOT, ".ica", &key), ERROR_SUCCESS);
}

TEST_F(RegQueryValueExATest, AnswersMoreDataAndTheNeededSizeWhenTheBufferIsTooSmall) {
    const HKEY key = open();
    std::array<BYTE, 3> buffer = {'x', 'x', 'x'};
    DWORD size = buffer.size();
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExA(key, "Name", nullptr, &type, buffer.data(), &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_THAT(buffer, testing::ElementsAre('x', 'x', 'x'));
}

TEST_F(RegQueryValueExATest, TellsTypeAndSizeWithoutABuffer) {
    DWORD type = 99;
    DWORD size = 99;
    EXPECT_EQ(RegQueryValueExA(open(), "number", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(RegQueryValueExA(open(), "number", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
}

TEST_F(RegQueryValueExATest, ReadsTheDefaultValueByAnEmptyNameAndByNone) {
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        std::array<char, 20> buffer{};
        DWORD size = buffer.size();
        EXPECT_EQ(RegQueryValueExA(open(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer.data()), &size),
                  ERROR_SUCCESS);
        EXPECT_STREQ(buffer.data(), "default");
        EXPECT_EQ(size, 8u);
    }
}

TEST_F(RegQueryValueExATest, WritesATerminatorBehindAnOpenTextOnlyWhereThereIsRoom) {
    struct {
        const char* name;
        DWORD room;
        const char* expected;
    } const cases[] = {
        {"Open", 3, "abcxx"}, {"Open", 4, std::string_view("abc\0x").data()}, {"OpenBinary", 5, "abcxx"}};
    for (const auto& one : cases) {
        std::array<BYTE, 5> buffer = {'x', 'x', 'x', 'x', 'x'};
        DWORD size = one.room;
        EXPECT_EQ(RegQueryValueExA(open(), one.name, nullptr, nullptr, buffer.data(), &size), ERROR_SUCCESS);
        EXPECT_EQ(size, 3u);
        EXPECT_TRUE(std::equal(buffer.begin(), buffer.end(), one.expected)) << one.name << " " << one.room;
    }
}

TEST(RegQueryValueExA9x, LeavesAnOpenTextOpen) {
    Station station = registryDescribed();
    station.version.emplace().platformId = 1;
    const Running running(station);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product", &key), ERROR_SUCCESS);
    std::array<BYTE, 5> buffer = {'x', 'x', 'x', 'x', 'x'};
    DWORD size = buffer.size();
    EXPECT_EQ(RegQueryValueExA(key, "Open", nullptr, nullptr, buffer.data(), &size), ERROR_SUCCESS);
    EXPECT_THAT(buffer, testing::ElementsAre('a', 'b', 'c', 'x', 'x'));
}

TEST_F(RegQueryValueExATest, ReadsAValueOfNoBytes) {
    BYTE byte = 'x';
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(open(), "Nothing", nullptr, nullptr, &byte, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(byte, 'x');
}

TEST_F(RegQueryValueExATest, RefusesWhatIsNotThereAndABufferWithoutASize) {
    BYTE byte = 0;
    DWORD size = 1;
    EXPECT_EQ(RegQueryValueExA(open(), "None", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegQueryValueExA(open(), "Name", nullptr, nullptr, &byte, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExA(nullptr, "Name", nullptr, nullptr, nullptr, &size), ERROR_INVALID_HANDLE);
    EXPECT_EQ(size, 1u);
}

TEST_F(RegEnumKeyATest, VisitsTheKeysInTheOrderOfTheirDescription) {
    const HKEY key = open();
    std::array<char, 255> name{};
    EXPECT_EQ(RegEnumKeyA(key, 0, name.data(), name.size()), ERROR_SUCCESS);
    EXPECT_STREQ(name.data(), "Zebra");
    EXPECT_EQ(RegEnumKeyA(key, 1, name.data(), name.size()), ERROR_SUCCESS);
    EXPECT_STREQ(name.data(), "Aardvark");
    EXPECT_EQ(RegEnumKeyA(key, 2, name.data(), name.size()), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(RegEnumKeyA(nullptr, 0, name.data(), name.size()), ERROR_INVALID_HANDLE);
}

TEST_F(RegEnumKeyATest, NeedsRoomForTheTerminatorToo) {
    std::array<char, 6> name = {'x'};
    EXPECT_EQ(RegEnumKeyA(open(), 0, name.data(), 5), ERROR_MORE_DATA);
    EXPECT_EQ(name[0], 'x');
    EXPECT_EQ(RegEnumKeyA(open(), 0, name.data(), 6), ERROR_SUCCESS);
    EXPECT_EQ(RegEnumKeyA(open(), 0, nullptr, 6), ERROR_MORE_DATA);
}

TEST(RegEnumAnyATest, LeavesMoreThanItsErrorWhenItFailsOnPurpose) {
    Station station = registryDescribed();
    station.fails = {{"RegEnumKeyA", 5}, {"RegEnumValueA", 5}};
    const Running running(station);
    std::array<char, 8> name{};
    EXPECT_EQ(RegEnumKeyA(HKEY_LOCAL_MACHINE, 0, name.data(), name.size()), ERROR_ACCESS_DENIED);
    EXPECT_STREQ(name.data(), "?");
    name.fill('x');
    DWORD size = 1;
    EXPECT_EQ(RegEnumValueA(HKEY_LOCAL_MACHINE, 0, name.data(), &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(name[0], 'x');
    size = name.size();
    EXPECT_EQ(RegEnumValueA(HKEY_LOCAL_MACHINE, 0, name.data(), &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_ACCESS_DENIED);
    EXPECT_STREQ(name.data(), "?");
    EXPECT_EQ(RegEnumKeyA(HKEY_LOCAL_MACHINE, 0, nullptr, 8), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegEnumValueA(HKEY_LOCAL_MACHINE, 0, name.data(), nullptr, nullptr, nullptr, nullptr, nullptr),
              ERROR_ACCESS_DENIED);
}

TEST_F(RegEnumValueATest, TellsANamesLengthWithoutItsTerminator) {
    const HKEY key = open();
    std::array<char, 255> name{};
    DWORD size = name.size();
    DWORD type = 0;
    EXPECT_EQ(RegEnumValueA(key, 2, name.data(), &size, nullptr, &type, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_STREQ(name.data(), "Number");
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    size = name.size();
    EXPECT_EQ(RegEnumValueA(key, 6, name.data(), &size, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(size, name.size());
}

TEST_F(RegEnumValueATest, AnswersMoreDataForANameOrDataWithoutRoom) {
    std::array<char, 10> name{};
    DWORD size = 6;
    EXPECT_EQ(RegEnumValueA(open(), 2, name.data(), &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6u);
    size = 7;
    std::array<BYTE, 4> data{};
    DWORD dataSize = 3;
    EXPECT_EQ(RegEnumValueA(open(), 2, name.data(), &size, nullptr, nullptr, data.data(), &dataSize), ERROR_MORE_DATA);
    EXPECT_EQ(dataSize, 4u);
    size = 7;
    EXPECT_EQ(RegEnumValueA(open(), 2, name.data(), &size, nullptr, nullptr, data.data(), &dataSize), ERROR_SUCCESS);
    EXPECT_THAT(data, testing::ElementsAre(4, 3, 2, 1));
}

TEST_F(RegEnumValueATest, RefusesNullPlaces) {
    std::array<char, 10> name{};
    std::array<BYTE, 4> data{};
    DWORD size = name.size();
    EXPECT_EQ(RegEnumValueA(open(), 0, nullptr, &size, nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegEnumValueA(open(), 0, name.data(), nullptr, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegEnumValueA(open(), 0, name.data(), &size, nullptr, nullptr, data.data(), nullptr),
              ERROR_INVALID_PARAMETER);
}

TEST_F(RegCloseKeyATest, ClosesAKeyOnceAndNoticesTheSecondTime) {
    const HKEY key = open();
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_THAT(running.machine.misuses(), testing::ElementsAre("RegCloseKey: 0x10000004 is no open key"));
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "Name", nullptr, nullptr, nullptr, &size), ERROR_INVALID_HANDLE);
    EXPECT_THAT(running.machine.misuses(), SizeIs(2));
}

TEST_F(RegCloseKeyATest, LeavesAPredefinedKeyOpen) {
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
}

}  // namespace
