// Keys by hive and path, and every type of value as text, number and bytes.
#include "kvcstat/common/RegistryEntry.h"
#include "kvcstat/common/StatGlobal.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using kvtest::Str;
using simwin::RegistryType;
using namespace std::string_literals;

simwin::RegistryValue Raw(std::string name, RegistryType type, std::string bytes) {
    return {std::move(name), static_cast<std::uint32_t>(type), std::move(bytes)};
}

class RegistryAccessTest : public kvtest::MachineTest {
  protected:
    static constexpr char kKey[] = "SOFTWARE\\Lab";

    void Describe(simwin::RegistryValue value) {
        station.registry.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab", std::move(value));
    }
    int ReadText(const char* name, CString& out) { return global.GetRegString(HKEY_LOCAL_MACHINE, kKey, name, out); }

    CStatGlobal global;
};

TEST_F(RegistryAccessTest, PathWithAHiveNameOpensTheSubKeyBelowThatHive) {
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE");
    Start();
    const CRegistryEntry entry("HKEY_LOCAL_MACHINE\\SOFTWARE");
    EXPECT_EQ(entry.GetHive(), HKEY_LOCAL_MACHINE);
    EXPECT_STREQ(entry.GetSubKey(), "SOFTWARE");
    const HKEY key = global.OpenRegKey("HKEY_LOCAL_MACHINE\\SOFTWARE");
    EXPECT_NE(key, nullptr);
    global.CloseRegKey(key);
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, AbbreviatedHiveNameNamesNoHiveAndOpensNothing) {
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE");
    Start();
    const CRegistryEntry entry("HKLM\\SOFTWARE");
    EXPECT_EQ(entry.GetHive(), nullptr);
    EXPECT_STREQ(entry.GetSubKey(), "");
    EXPECT_EQ(global.OpenRegKey("HKLM\\SOFTWARE"), nullptr);
    EXPECT_EQ(global.OpenRegKey("hkey_local_machine\\SOFTWARE"), nullptr);
}

TEST_F(RegistryAccessTest, EntryWithoutAPathNamesNoHiveOnceItIsParsed) {
    Start();
    CRegistryEntry entry(HKEY_LOCAL_MACHINE, "SOFTWARE");
    entry.ParsePath();
    EXPECT_EQ(entry.GetHive(), nullptr);
    EXPECT_STREQ(entry.GetSubKey(), "SOFTWARE");
}

TEST_F(RegistryAccessTest, EntryOfNothingOpensNothing) {
    Start();
    const CRegistryEntry entry;
    EXPECT_EQ(entry.GetHive(), nullptr);
    EXPECT_STREQ(entry.GetSubKey(), "");
    EXPECT_EQ(entry.Open(), nullptr);
}

TEST_F(RegistryAccessTest, HiveNamesMatchAsPrefixesInTheirFixedOrder) {
    Start();
    const struct {
        const char* path;
        HKEY hive;
        const char* subKey;
    } rows[] = {
        {"HKEY_CLASSES_ROOT\\.html", HKEY_CLASSES_ROOT, ".html"},
        {"HKEY_CURRENT_CONFIG\\System", HKEY_CURRENT_CONFIG, "System"},
        {"HKEY_CURRENT_USER\\Software", HKEY_CURRENT_USER, "Software"},
        {"HKEY_USERS.DEFAULT\\Software", HKEY_USERS, "Software"},
        {"HKEY_USERSX\\a\\b", HKEY_USERS, "a\\b"},
        {"HKEY_PERFORMANCE_DATA\\x", HKEY_PERFORMANCE_DATA, "x"},
        {"HKEY_DYN_DATA\\Config", HKEY_DYN_DATA, "Config"},
        {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE, ""},
        {"HKEY_LOCAL_MACHINE\\", HKEY_LOCAL_MACHINE, ""},
        {"", nullptr, ""},
    };
    for (const auto& row : rows) {
        const CRegistryEntry entry(row.path);
        EXPECT_EQ(entry.GetHive(), row.hive) << row.path;
        EXPECT_STREQ(entry.GetSubKey(), row.subKey) << row.path;
    }
}

TEST_F(RegistryAccessTest, PathFromTheStringTableThatNamesNoHiveOpensNothing) {
    Start();
    EXPECT_EQ(global.OpenRegKey(16003u), nullptr);
    EXPECT_EQ(global.OpenRegKey(16001u), nullptr);
}

TEST_F(RegistryAccessTest, NullHiveOrSubKeyOrPathOpensNothing) {
    Start();
    EXPECT_EQ(global.OpenRegKey(nullptr, "SOFTWARE"), nullptr);
    EXPECT_EQ(global.OpenRegKey(HKEY_LOCAL_MACHINE, nullptr), nullptr);
    EXPECT_EQ(global.OpenRegKey(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(RegistryAccessTest, EntryWithoutAHiveKeepsNoSubKeyAndOpensNothing) {
    Start();
    const CRegistryEntry entry(nullptr, "SOFTWARE");
    EXPECT_STREQ(entry.GetSubKey(), "");
    EXPECT_EQ(entry.Open(), nullptr);
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(RegistryAccessTest, EnumerationThatFailsHasNoNameWhateverItHasWritten) {
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab\\SubKey");
    Describe(simwin::textValue("Value", ""));
    station.fails = {{"RegEnumKeyA", 5}, {"RegEnumValueA", 5}};
    Start();
    const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, kKey);
    EXPECT_STREQ(global.EnumRegKey(key, 0), "");
    EXPECT_STREQ(global.EnumRegValue(key, 0), "");
    global.CloseRegKey(key);
}

TEST_F(RegistryAccessTest, NullKeyOrNullNameIsAskedForNothing) {
    Describe(simwin::dwordValue("there", 7));
    Start();
    const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, kKey);
    const std::uint64_t before = machine->calls();
    DWORD number = 5;
    BYTE* bytes = nullptr;
    EXPECT_EQ(global.GetRegDWORD(nullptr, "there", number), -1);
    EXPECT_EQ(global.GetRegDWORD(key, nullptr, number), -1);
    EXPECT_EQ(number, 5u);
    EXPECT_EQ(global.GetRegBinary(nullptr, "there", bytes), -1);
    EXPECT_EQ(global.GetRegBinary(key, nullptr, bytes), -1);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_EQ(machine->calls(), before);
    global.CloseRegKey(key);
}

TEST_F(RegistryAccessTest, TextReadsByTheTypeOfItsValue) {
    const struct {
        const char* name;
        RegistryType type;
        std::string bytes;
        int status;
        const char* text;
    } rows[] = {
        {"text", RegistryType::Text, "Intel\0"s, 0, "Intel"},
        {"one letter", RegistryType::Text, "A\0"s, 0, "A"},
        {"text without its terminator", RegistryType::Text, "Intel"s, 0, "Intel"},
        {"text with an embedded zero", RegistryType::Text, "In\0tel\0"s, 0, "In"},
        {"empty text", RegistryType::Text, "\0"s, 0, ""},
        {"no bytes", RegistryType::Text, ""s, 0, ""},
        {"list", RegistryType::MultiText, "a\0b\0c\0\0"s, 0, "a//b//c"},
        {"list of one", RegistryType::MultiText, "a\0\0"s, 0, "a"},
        {"empty list", RegistryType::MultiText, "\0"s, 0, ""},
        {"list of no bytes", RegistryType::MultiText, ""s, 0, ""},
        {"list without its empty last item", RegistryType::MultiText, "a\0b\0"s, 0, "a//b"},
        {"list without any terminator", RegistryType::MultiText, "a\0b"s, 0, "a//b"},
        {"list that begins with an empty item", RegistryType::MultiText, "\0a\0\0"s, 0, ""},
        {"wide text in bytes", RegistryType::Binary, "A\0T\0I\0\0\0"s, 0, "ATI"},
        {"wide text without its terminator", RegistryType::Binary, "A\0T\0I\0"s, 0, "ATI"},
        {"wide text of odd size", RegistryType::Binary, "A\0T\0I"s, 0, "ATI"},
        {"wide text of one letter", RegistryType::Binary, "A\0\0\0"s, 0, "A"},
        {"wide text of one letter in text", RegistryType::Text, "A\0B\0"s, 0, "AB"},
        {"narrow text in bytes", RegistryType::Binary, "ATI Rage"s, 0, "ATI Rage"},
        {"one byte", RegistryType::Binary, "A"s, 0, "A"},
        {"letter and zero", RegistryType::Binary, "A\0"s, 0, "A"},
        {"letter, zero and letter", RegistryType::Binary, "A\0B"s, 0, "AB"},
        {"wide umlaut", RegistryType::Binary, "B\0\xFC\0r\0o\0\0\0"s, 0, "B\xFCro"},
        {"expandable text", RegistryType::ExpandText, "%x%\0"s, -1, "before"},
        {"number", RegistryType::DWord, "\1\0\0\0"s, -1, "before"},
        {"long number", RegistryType::QWord, "\1\0\0\0\0\0\0\0"s, -1, "before"},
        {"no type", RegistryType::None, "abc\0"s, -1, "before"},
    };
    for (const auto& row : rows)
        Describe(Raw(row.name, row.type, row.bytes));
    Start();
    for (const auto& row : rows) {
        CString text("before");
        EXPECT_EQ(ReadText(row.name, text), row.status) << row.name;
        EXPECT_STREQ(text, row.text) << row.name;
    }
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, TextOf64KBReadsWhole) {
    Describe(simwin::textValue("long", std::string(65536, 'x')));
    Start();
    CString text;
    EXPECT_EQ(ReadText("long", text), 0);
    EXPECT_EQ(text.GetLength(), 65536);
}

TEST_F(RegistryAccessTest, MissingKeyOrValueOrNameLeavesTheTextUntouched) {
    Describe(simwin::textValue("there", "x"));
    Start();
    CString text("before");
    EXPECT_EQ(ReadText("missing", text), -1);
    EXPECT_EQ(ReadText(nullptr, text), -1);
    EXPECT_EQ(global.GetRegString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Missing", "there", text), -1);
    EXPECT_EQ(global.GetRegString(nullptr, "there", text), -1);
    EXPECT_STREQ(text, "before");
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, FailingDataReadEmptiesTheText) {
    Describe(simwin::textValue("there", "x"));
    Start();
    machine->failCall(3);  // open, ask for the size, read
    CString text("before");
    EXPECT_EQ(ReadText("there", text), -1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(machine->failedCall(), "RegQueryValueExA");
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, NumbersReadFromDWordValuesOnly) {
    Describe(simwin::dwordValue("number", 2400));
    Describe(simwin::textValue("text", "2400"));
    Describe(Raw("short", RegistryType::DWord, "\x10\x27"));
    Describe(Raw("long", RegistryType::DWord, "\1\0\0\0\2\0\0\0"s));
    Describe(Raw("none", RegistryType::DWord, ""));
    Start();
    DWORD number = 7;
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "number", number), 0);
    EXPECT_EQ(number, 2400u);
    number = 7;
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "text", number), -1);
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "missing", number), -1);
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, "SOFTWARE\\Missing", "number", number), -1);
    EXPECT_EQ(number, 7u);
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "short", number), 0);
    EXPECT_EQ(number, 10000u);
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "none", number), 0);
    EXPECT_EQ(number, 0u);
    number = 7;
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "long", number), -1);
    EXPECT_EQ(number, 0u);
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, FailingNumberReadSetsZero) {
    Describe(simwin::dwordValue("number", 2400));
    Start();
    machine->failCall(3);
    DWORD number = 7;
    EXPECT_EQ(global.GetRegDWORD(HKEY_LOCAL_MACHINE, kKey, "number", number), -1);
    EXPECT_EQ(number, 0u);
}

TEST_F(RegistryAccessTest, BytesComeTerminatedFromTextListAndBinaryValues) {
    Describe(simwin::binaryValue("bytes", "\1\2\3"));
    Describe(simwin::multiTextValue("list", {"a", "b"}));
    Describe(simwin::textValue("text", "t"));
    Describe(simwin::dwordValue("number", 1));
    Start();
    for (const auto& [name, expected] :
         {std::pair{"bytes", "\1\2\3\0\0"s}, std::pair{"list", "a\0b\0\0\0"s}, std::pair{"text", "t\0\0"s}}) {
        BYTE* bytes = nullptr;
        ASSERT_EQ(global.GetRegBinary(HKEY_LOCAL_MACHINE, kKey, name, bytes), 0) << name;
        EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), expected.size()), expected) << name;
        delete[] bytes;
    }
    BYTE* bytes = nullptr;
    EXPECT_EQ(global.GetRegBinary(HKEY_LOCAL_MACHINE, kKey, "number", bytes), -1);
    EXPECT_EQ(bytes, nullptr);
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, FailingBytesReadLeavesNull) {
    Describe(simwin::binaryValue("bytes", "\1\2\3"));
    Start();
    machine->failCall(3);
    BYTE* bytes = reinterpret_cast<BYTE*>(this);
    EXPECT_EQ(global.GetRegBinary(HKEY_LOCAL_MACHINE, kKey, "bytes", bytes), -1);
    EXPECT_EQ(bytes, nullptr);
}

TEST_F(RegistryAccessTest, BytesOfAKeyThatIsNotThereAreLeft) {
    Start();
    BYTE before = 7;
    BYTE* bytes = &before;
    EXPECT_EQ(global.GetRegBinary(HKEY_LOCAL_MACHINE, kKey, "bytes", bytes), -1);
    EXPECT_EQ(bytes, &before);
}

TEST_F(RegistryAccessTest, SubKeysAndValuesEnumerateInOrderUntilAnEmptyName) {
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab\\First");
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab\\Second");
    Describe(simwin::textValue("one", "1"));
    Describe(simwin::textValue("two", "2"));
    Start();
    const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, kKey);
    EXPECT_STREQ(global.EnumRegKey(key, 0), "First");
    EXPECT_STREQ(global.EnumRegKey(key, 1), "Second");
    EXPECT_STREQ(global.EnumRegKey(key, 2), "");
    EXPECT_STREQ(global.EnumRegValue(key, 0), "one");
    EXPECT_STREQ(global.EnumRegValue(key, 1), "two");
    EXPECT_STREQ(global.EnumRegValue(key, 2), "");
    EXPECT_STREQ(global.EnumRegKey(nullptr, 0), "");
    EXPECT_STREQ(global.EnumRegValue(nullptr, 0), "");
    global.CloseRegKey(key);
    ExpectEverythingClosed();
}

TEST_F(RegistryAccessTest, NameThatDoesNotFitTheBufferEndsAnEnumeration) {
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab\\" + std::string(254, 'k'));
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Lab\\" + std::string(255, 'k'));
    Describe(simwin::textValue(std::string(254, 'v'), ""));
    Describe(simwin::textValue(std::string(255, 'v'), ""));
    Start();
    const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, kKey);
    EXPECT_EQ(global.EnumRegKey(key, 0).GetLength(), 254);
    EXPECT_STREQ(global.EnumRegKey(key, 1), "");
    EXPECT_EQ(global.EnumRegValue(key, 0).GetLength(), 254);
    EXPECT_STREQ(global.EnumRegValue(key, 1), "");
    global.CloseRegKey(key);
}

TEST_F(RegistryAccessTest, NativePathsMapToTheMachineHiveInExactlyTheirSpelling) {
    Start();
    HKEY hive = nullptr;
    CString path("\\REGISTRY\\Machine\\System\\X");
    EXPECT_EQ(global.MapNativeRegPath(hive, path), 0);
    EXPECT_EQ(hive, HKEY_LOCAL_MACHINE);
    EXPECT_STREQ(path, "System\\X");

    for (const char* other : {"\\Registry\\Machine\\System\\X", "\\REGISTRY\\User\\X", "x\\REGISTRY\\Machine\\X", ""}) {
        path = other;
        EXPECT_EQ(global.MapNativeRegPath(hive, path), -1) << other;
        EXPECT_EQ(hive, nullptr) << other;
        EXPECT_STREQ(path, other);
    }
}

TEST_F(RegistryAccessTest, StrictReadTakesOnlyTerminatedTexts) {
    const struct {
        const char* name;
        RegistryType type;
        std::string bytes;
        LONG error;
        const char* text;
    } rows[] = {
        {"text", RegistryType::Text, "MetaFrame\0"s, ERROR_SUCCESS, "MetaFrame"},
        {"expandable text", RegistryType::ExpandText, "%x%\0"s, ERROR_SUCCESS, "%x%"},
        {"list", RegistryType::MultiText, "a\0b\0\0"s, ERROR_SUCCESS, "a"},
        {"no bytes", RegistryType::Text, ""s, ERROR_SUCCESS, ""},
        {"expandable, no bytes", RegistryType::ExpandText, ""s, ERROR_SUCCESS, ""},
        {"list, no bytes", RegistryType::MultiText, ""s, ERROR_SUCCESS, ""},
        {"unterminated text", RegistryType::Text, "MetaFrame"s, ERROR_INVALID_DATA, ""},
        {"list with one zero", RegistryType::MultiText, "a\0"s, ERROR_INVALID_DATA, ""},
        {"list of one zero", RegistryType::MultiText, "\0"s, ERROR_INVALID_DATA, ""},
        {"bytes", RegistryType::Binary, "a\0"s, ERROR_INVALID_DATA, ""},
        {"no type", RegistryType::None, "a\0"s, ERROR_INVALID_DATA, ""},
        {"no type, no bytes", RegistryType::None, ""s, ERROR_INVALID_DATA, ""},
        {"number", RegistryType::DWord, "\0\0\0\0"s, ERROR_INVALID_DATA, ""},
        {"text that just fits", RegistryType::Text, std::string(15, 'x') + '\0', ERROR_SUCCESS, "xxxxxxxxxxxxxxx"},
    };
    for (const auto& row : rows)
        Describe(Raw(row.name, row.type, row.bytes));
    Describe(simwin::textValue("too long", std::string(16, 'x')));
    Start();
    const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, kKey);
    for (const auto& row : rows) {
        char buffer[16] = "before";
        EXPECT_EQ(global.GetRegStringStrict(key, row.name, buffer, sizeof buffer), row.error) << row.name;
        EXPECT_STREQ(buffer, row.text) << row.name;
    }
    char buffer[16];
    EXPECT_EQ(global.GetRegStringStrict(key, "too long", buffer, sizeof buffer), ERROR_MORE_DATA);
    EXPECT_EQ(global.GetRegStringStrict(key, "missing", buffer, sizeof buffer), ERROR_FILE_NOT_FOUND);
    global.CloseRegKey(key);
}

TEST_F(RegistryAccessTest, OneCharacterAndAZeroAreWideWhereAnythingButAZeroFollows) {
    Start();
    const auto read = [this](const std::string& bytes, DWORD size) {
        return Str(global.RegDataToString(reinterpret_cast<const BYTE*>(bytes.data()), size));
    };
    EXPECT_EQ(read("A\0B\0\0\0\0\0"s, 4), "AB");
    EXPECT_EQ(read("A\0B\0\0\0\0\0"s, 2), "AB");
    EXPECT_EQ(read("A\0B\0\0\0\0\0"s, 1), "A");
    EXPECT_EQ(read("A\0\1\0\0\0\0\0"s, 4), "A\1");
    EXPECT_EQ(read("A\0\0\0\0\0\0\0"s, 4), "A");
}

TEST_F(RegistryAccessTest, WideTextIsNarrowedToItsTerminatorWithoutFlags) {
    Describe(Raw("Wide", RegistryType::Binary, "A\0T\0I\0\0\0"s));
    Start().keepLog(true);
    CString text;
    EXPECT_EQ(ReadText("Wide", text), 0);
    std::vector<std::string> asked;
    for (const simwin::LoggedCall& call : machine->log()) {
        if (call.name == "WideCharToMultiByte")
            asked.push_back(call.arguments);
    }
    using namespace ::testing;
    // CP_ACP; first for the size, then into the room of three characters and their end.
    EXPECT_THAT(asked, ElementsAre(AllOf(StartsWith("0, 0, "), HasSubstr(", -1, 0")),
                                   AllOf(StartsWith("0, 0, "), HasSubstr(", -1, 4"))));
}

}  // namespace
