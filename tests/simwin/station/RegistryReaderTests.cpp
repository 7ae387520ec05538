#include "simwin/station/RegistryReader.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "simwin/station/RegistryWriter.h"
#include "simwin/text/CodePage.h"

namespace {

using namespace simwin;
using namespace std::string_literals;

constexpr const char* kVersion5 = "Windows Registry Editor Version 5.00\r\n\r\n";
constexpr const char* kVersion4 = "REGEDIT4\r\n\r\n";
constexpr const char* kKey = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Product]\r\n";

const RegistryValue* find(const RegistryTree& tree, const char* name) {
    const std::optional<KeyId> key = tree.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product");
    return key ? tree.findValue(*key, name) : nullptr;
}

struct ReadCase {
    const char* data;
    std::uint32_t type;
    std::string bytes;
};

void expectRead(const char* header, const std::vector<ReadCase>& cases) {
    for (const ReadCase& one : cases) {
        const RegistryTree tree = readRegistry(header + std::string(kKey) + "\"Name\"=" + one.data + "\r\n", "x.reg");
        const RegistryValue* value = find(tree, "name");
        ASSERT_NE(value, nullptr) << one.data;
        EXPECT_EQ(value->type, one.type) << one.data;
        EXPECT_EQ(value->bytes, one.bytes) << one.data;
    }
}

TEST(RegistryReader, ReadsEveryTypeOfAVersion5FileAsTheNarrowCallsSeeIt) {
    expectRead(kVersion5, {{"\"text\"", 1, "text\0"s},
                           {"\"\"", 1, "\0"s},
                           {R"("C:\\a \"b\"")", 1, "C:\\a \"b\"\0"s},
                           {"dword:0000ABcd", 4, "\xCD\xAB\0\0"s},
                           {"dword:7", 4, "\7\0\0\0"s},
                           {"hex:01,02,ff", 3, "\1\2\xFF"s},
                           {"hex:", 3, ""},
                           {"hex:1,2", 3, "\1\2"s},
                           {"hex(0):01", 0, "\1"s},
                           {"hex(1):41,00,42,00,00,00", 1, "AB\0"s},
                           {"hex(2):25,00,00,00", 2, "%\0"s},
                           {"hex(7):61,00,00,00,62,00,00,00,00,00", 7, "a\0b\0\0"s},
                           {"hex(b):01,00,00,00,00,00,00,00", 11, "\1\0\0\0\0\0\0\0"s},
                           {"hex(4):01,00", 4, "\1\0"s},
                           {"hex(100000):41,00", 0x100000, "A\0"s}});
}

TEST(RegistryReader, KeepsMissingTerminatorsAndDropsHalfACharacter) {
    expectRead(kVersion5, {{"hex(1):41,00,42,00", 1, "AB"},
                           {"hex(1):41,00,42", 1, "A"},
                           {"hex(1):41", 1, ""},
                           {"hex(1):", 1, ""},
                           {"hex(7):61,00,00,00", 7, "a\0"s},
                           {"hex(7):61,00,00,00,62", 7, "a\0"s}});
}

TEST(RegistryReader, ReadsCodePageBytesOfAVersion4File) {
    expectRead(kVersion4, {{"hex(1):41,42,00", 1, "AB\0"s},
                           {"hex(7):61,00,62,00,00", 7, "a\0b\0\0"s},
                           {"hex(2):25", 2, "%"},
                           {"\"text\"", 1, "text\0"s}});
}

TEST(RegistryReader, JoinsContinuedLines) {
    expectRead(kVersion5, {{"hex:01,02,\\\r\n  03,\\\r\n  04", 3, "\1\2\3\4"s},
                           {"hex:\\\r\n  01", 3, "\1"s},
                           {"hex:01,\\\n\\\n02", 3, "\1\2"s}});
}

TEST(RegistryReader, ReadsATextThatGoesOverALinesEnd) {
    expectRead(kVersion5, {{"\"a\r\n  b\"", 1, "a\r\n  b\0"s}, {R"("a\r\nb")", 1, "a\r\nb\0"s}});
}

TEST(RegistryReader, PassesOverBlanksAndComments) {
    const std::string file = std::string(kVersion5) + "; a comment\r\n  " + kKey +
                             "\t\"A\" = dword:1 ; one\r\n\r\n\"B\"=\"b\";\r\n\"C\"=hex:01 ; bytes\r\n@=\"d\"";
    const RegistryTree tree = readRegistry(file, "x.reg");
    EXPECT_EQ(find(tree, "A")->bytes, "\1\0\0\0"s);
    EXPECT_EQ(find(tree, "B")->bytes, "b\0"s);
    EXPECT_EQ(find(tree, "C")->bytes, "\1");
    EXPECT_EQ(find(tree, "")->bytes, "d\0"s);
}

TEST(RegistryReader, KeepsTheFirstNameAndTheLastDataOfAValue) {
    const RegistryTree tree =
        readRegistry(std::string(kVersion5) + kKey + "\"Name\"=\"one\"\n\"NAME\"=dword:2\n", "x.reg");
    EXPECT_EQ(find(tree, "name")->name, "Name");
    EXPECT_EQ(find(tree, "name")->bytes, "\2\0\0\0"s);
    EXPECT_EQ(tree.value(*tree.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product"), 1), nullptr);
}

TEST(RegistryReader, TakesAllEncodings) {
    const std::string line = "\"N\xC3\xA4me\"=\"\xE2\x82\xAC\"\n";
    const std::string utf8 = std::string(kVersion5) + kKey + line;
    std::string utf16 = "\xFF\xFE";
    for (const char letter : std::string(kVersion5) + kKey)
        utf16 += std::string{letter, '\0'};
    utf16 += "\"\0N\0\xE4\0m\0e\0\"\0=\0\"\0\xAC\x20\"\0\n\0"s;
    const std::string codePage = std::string(kVersion4) + kKey + "\"N\xE4me\"=\"\x80\"\n";
    for (const std::string& file : {utf8, "\xEF\xBB\xBF" + utf8, utf16, codePage}) {
        const RegistryTree tree = readRegistry(file, "x.reg");
        const RegistryValue* value = find(tree, "N\xC4ME");
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(value->name, "N\xE4me");
        EXPECT_EQ(value->bytes, "\x80\0"s);
    }
}

TEST(RegistryReader, ReadsLettersThatTheCodePageDoesNotHoldAsLikeOnes) {
    const std::string line = std::string(kKey) + "\"Name\"=";
    EXPECT_EQ(find(readRegistry(kVersion5 + line + "\"\xC5\x81\xC4\x81\"", "x.reg"), "Name")->bytes, "La\0"s);
    EXPECT_EQ(find(readRegistry(kVersion5 + line + "hex(1):41,01,01,01,00,00", "x.reg"), "Name")->bytes, "La\0"s);
}

TEST(RegistryReader, TakesSeveralExportsPutTogetherEachInItsForm) {
    const std::string narrow = std::string(kKey) + "\"Narrow\"=hex(2):61,62,00\r\n";
    const std::string wide = std::string(kKey) + "\"Wide\"=hex(2):61,00,62,00,00,00\r\n";
    for (const std::string& content :
         {kVersion5 + wide + kVersion4 + narrow, kVersion4 + narrow + "\r\n" + kVersion5 + wide}) {
        const RegistryTree tree = readRegistry(content, "x.reg");
        EXPECT_EQ(find(tree, "Narrow")->bytes, "ab\0"s);
        EXPECT_EQ(find(tree, "Wide")->bytes, "ab\0"s);
    }
}

TEST(RegistryReader, PassesOverTheByteOrderMarksOfExportsPutTogether) {
    const std::string one = std::string(kVersion5) + kKey + "\"One\"=\"1\"\r\n";
    const std::string other = std::string(kVersion5) + kKey + "\"Other\"=\"2\"\r\n";
    const auto wide = [](const std::string& text) {
        std::string bytes = "\xFF\xFE";
        for (const char character : text)
            bytes += {character, '\0'};
        return bytes;
    };
    for (const std::string& content : {"\xEF\xBB\xBF" + one + "\xEF\xBB\xBF" + other, wide(one) + wide(other)}) {
        const RegistryTree tree = readRegistry(content, "x.reg");
        EXPECT_NE(find(tree, "One"), nullptr);
        EXPECT_NE(find(tree, "Other"), nullptr);
    }
}

// Exports of real machines stand beside a checkout and are no part of it.
class RealExports : public testing::Test {
  protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(KV_REAL_EXPORTS))
            GTEST_SKIP() << "there is no folder " << KV_REAL_EXPORTS << " with exports of real machines";
        for (const auto& entry : std::filesystem::directory_iterator(KV_REAL_EXPORTS))
            if (entry.path().extension() == ".reg")
                files.push_back(entry.path());
        ASSERT_FALSE(files.empty());
    }

    static std::string contentOf(const std::filesystem::path& path) {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        return content.str();
    }

    std::vector<std::filesystem::path> files;
};

// The paths of the keys as the lines of the file tell them.
std::vector<std::string> keyLines(const std::string& content) {
    std::vector<std::string> paths;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("["))
            paths.push_back(line.substr(1, line.rfind(']') - 1));
    return paths;
}

TEST_F(RealExports, ReadAsTheyAreAndAgainAsTheyAreWritten) {
    for (const std::filesystem::path& file : files) {
        const std::string content = contentOf(file);
        const RegistryTree tree = readRegistry(content, file.filename().string());
        ASSERT_FALSE(keyLines(content).empty()) << file;
        for (const std::string& path : keyLines(content))
            EXPECT_TRUE(tree.find(path).has_value()) << file << " " << path;
        const std::string written = writeRegistry(tree);
        EXPECT_EQ(writeRegistry(readRegistry(written, "written.reg")), written) << file;
    }
}

TEST_F(RealExports, ReadPutTogetherInOneFile) {
    std::string all;
    for (const std::filesystem::path& file : files)
        all += contentOf(file);
    const RegistryTree tree = readRegistry(all, "all.reg");
    for (const std::string& path : keyLines(all))
        EXPECT_TRUE(tree.find(path).has_value()) << path;
}

TEST(RegistryReader, ReadsWhatTheCodePageDoesNotHoldAsQuestionMarks) {
    const RegistryTree tree = readRegistry(std::string(kVersion5) + kKey + "\"Name\"=\"\xE4\xB8\xAD\"\n", "x.reg");
    EXPECT_EQ(find(tree, "Name")->bytes, "?\0"s);
}

// Exports of a Japanese Windows 98: the second bytes of some characters are backslashes, brackets and quotes'
// neighbours.
TEST(RegistryReader, ReadsCharactersOfTwoBytes) {
    const CodePageScope scope(932);
    const RegistryTree tree = readRegistry(
        "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\\x83\x5C\x83\x74\x83\x67\\\x83\x5D]\n"
        "\"\x95\x5C\"=\"C:\\\\\x83\x5C\\\\\x94\x5C\"\n\"ab\x81\x5B\"=\"\x83\x7C\"\n",
        "x.reg");
    const std::optional<KeyId> key = tree.find("HKEY_LOCAL_MACHINE\\Software\\\x83\x5C\x83\x74\x83\x67\\\x83\x5D");
    ASSERT_TRUE(key);
    EXPECT_EQ(tree.name(*key), "\x83\x5D");
    ASSERT_NE(tree.findValue(*key, "\x95\x5C"), nullptr);
    EXPECT_EQ(tree.findValue(*key, "\x95\x5C")->bytes, "C:\\\x83\x5C\\\x94\x5C\0"s);
    ASSERT_NE(tree.findValue(*key, "AB\x81\x5B"), nullptr);
    EXPECT_EQ(tree.findValue(*key, "ab\x81\x5B")->bytes, "\x83\x7C\0"s);
    EXPECT_EQ(tree.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\\x83"), std::nullopt);
}

TEST(RegistryReader, ReadsUnicodeAsTheCodePageInForce) {
    for (const auto& [page, bytes] :
         {std::pair(932u, "\x83\x5C\x84\x4C?"s), {1251u, "?\xCB?"s}, {65001u, "\u30BD\u041B\uD55C"s}}) {
        const CodePageScope scope(page);
        expectRead(kVersion5, {{"\"\u30BD\u041B\uD55C\"", 1, bytes + '\0'}});
    }
    const CodePageScope scope(932);
    expectRead(kVersion5, {{"hex(1):bd,30,00,00", 1, "\x83\x5C\0"s}});
}

// A yen sign, a won sign and wide signs are a backslash or a quote in these pages.
TEST(RegistryReader, TakesNoLetterForTheBackslashOrTheQuoteThatItBecomes) {
    for (const auto& [page, text, bytes] : {std::tuple(932u, "\u00A5100", "\\100"),
                                            {949u, "\u20A9100", "\\100"},
                                            {1252u, "x\uFF02y", "x\"y"},
                                            {1252u, "x\uFF3Cy", "x\\y"}}) {
        const CodePageScope scope(page);
        expectRead(kVersion5, {{(std::string("\"") + text + '"').c_str(), 1, std::string(bytes) + '\0'}});
    }
    const CodePageScope scope(932);
    try {
        readRegistry(kVersion5 + "[HKEY_LOCAL_MACHINE\\A\u00A5B]\n"s, "x.reg");
        FAIL();
    } catch (const ReadError& error) {
        EXPECT_STREQ(error.what(), "x.reg:3: a key's name has a character that is a backslash in code page 932");
    }
}

TEST(RegistryReader, EndsATextBehindHalfACharacter) {
    const CodePageScope scope(932);
    const RegistryTree tree = readRegistry("REGEDIT4\n[HKEY_LOCAL_MACHINE]\n\"a\"=\"b\x83\"\n", "x.reg");
    EXPECT_EQ(tree.findValue(*tree.find("HKEY_LOCAL_MACHINE"), "a")->bytes, "b\x83\0"s);
}

TEST(RegistryReader, SaysWhichKeyOfTwoByteCharactersHasNoClosingBracket) {
    const CodePageScope scope(932);
    EXPECT_THROW(readRegistry("REGEDIT4\n[HKEY_LOCAL_MACHINE\\\x83\x5D\n", "x.reg"), ReadError);
}

std::string writtenAgain(const std::string& data) {
    RegistryTree tree;
    tree.set("HKEY_LOCAL_MACHINE\\\x83\x5C", textValue("\x95\x5C", data));
    tree.set("HKEY_LOCAL_MACHINE\\\x83\x5C", multiTextValue("All", {data, "a"}));
    const RegistryTree again = readRegistry(writeRegistry(tree), "x.reg");
    EXPECT_EQ(again.findValue(*again.find("HKEY_LOCAL_MACHINE\\\x83\x5C"), "All")->bytes, data + "\0a\0\0"s);
    return again.findValue(*again.find("HKEY_LOCAL_MACHINE\\\x83\x5C"), "\x95\x5C")->bytes;
}

TEST(RegistryWriter, WritesEveryByteBackThatIsReadAgain) {
    const CodePageScope scope(932);
    for (const char* data : {"\x83\x5C\x94\x5C", "half \x83", "\xA0\xFD none", "\xFA\x58 the other code", "plain"})
        EXPECT_EQ(writtenAgain(data), data + "\0"s);
}

TEST(RegistryWriter, TakesTheFormWhoseDataAreBytesOnlyWhereItMust) {
    const CodePageScope scope(932);
    RegistryTree tree;
    tree.set("HKEY_LOCAL_MACHINE\\A", textValue("Name", "\x83\x5C"));
    EXPECT_TRUE(writeRegistry(tree).starts_with("Windows Registry Editor Version 5.00\n"));
    tree.set("HKEY_LOCAL_MACHINE\\A", textValue("Name", "\x83"));
    EXPECT_EQ(writeRegistry(tree), "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\A]\n\"Name\"=hex(1):83,00\n");
    // Names have no such form.
    tree = RegistryTree();
    tree.set("HKEY_LOCAL_MACHINE\\A", textValue("b\x83", "x"));
    EXPECT_EQ(writeRegistry(tree), "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\A]\n\"b?\"=\"x\"\n");
}

TEST(RegistryReader, SaysWhereAndWhatIsWrong) {
    const std::string begin = std::string(kVersion5) + kKey;
    struct {
        std::string file;
        const char* error;
    } const cases[] = {
        {"", "x.reg:1: the first line is neither \"Windows Registry Editor Version 5.00\" nor \"REGEDIT4\""},
        {"regedit4", "x.reg:1: the first line is neither \"Windows Registry Editor Version 5.00\" nor \"REGEDIT4\""},
        {begin + "[HKEY_LOCAL_MACHINE\\A", "x.reg:4: the key's closing bracket is missing"},
        {begin + "[HKLM\\A]", "x.reg:4: the key begins with no hive's full name, such as HKEY_LOCAL_MACHINE"},
        {begin + "[HKEY_LOCAL_MACHINEX\\A]",
         "x.reg:4: the key begins with no hive's full name, such as HKEY_LOCAL_MACHINE"},
        {begin + "[HKEY_LOCAL_MACHINE\\A\\\\B]", "x.reg:4: the key's path has an empty piece"},
        {begin + "[HKEY_LOCAL_MACHINE\\A\\]", "x.reg:4: the key's path has an empty piece"},
        {begin + "[HKEY_LOCAL_MACHINE\\]", "x.reg:4: the key's path has an empty piece"},
        {begin + "[-HKEY_LOCAL_MACHINE\\A]",
         "x.reg:4: a key that is to be removed; a station is described by what is there"},
        {begin + "\"A\"=-", "x.reg:4: a value that is to be removed; a station is described by what is there"},
        {kVersion5 + "\"A\"=\"a\""s, "x.reg:3: a value before the first key"},
        {begin + "A=\"a\"", "x.reg:4: neither a key in brackets nor a value's name in quotes"},
        {begin + "\"A\"\"a\"", "x.reg:4: \"=\" is missing behind the value's name"},
        {begin + "\"A", "x.reg:4: the closing quote is missing"},
        {begin + "\"A\"=\"a\nb\n", "x.reg:4: the closing quote is missing"},
        {begin + "\"A\"=\"C:\\dir\"", "x.reg:4: a backslash that stands before neither \\, \", n nor r"},
        {begin + "\"A\"=\"a\" b", "x.reg:4: something stands behind the value's data"},
        {begin + "\"A\"=a", "x.reg:4: data that is neither a text in quotes nor dword: nor hex:"},
        {begin + "\"A\"=", "x.reg:4: data that is neither a text in quotes nor dword: nor hex:"},
        {begin + "\"A\"=dword:", "x.reg:4: dword: stands before no hexadecimal number of up to 8 digits"},
        {begin + "\"A\"=dword:123456789", "x.reg:4: dword: stands before no hexadecimal number of up to 8 digits"},
        {begin + "\"A\"=dword:1g", "x.reg:4: something stands behind the value's data"},
        {begin + "\"A\"=hex01", "x.reg:4: \":\" is missing behind hex"},
        {begin + "\"A\"=hex(7:01", "x.reg:4: hex( stands before no hexadecimal type number and \")\""},
        {begin + "\"A\"=hex():01", "x.reg:4: hex( stands before no hexadecimal type number and \")\""},
        {begin + "\"A\"=hex(100000000):01", "x.reg:4: hex( stands before no hexadecimal type number and \")\""},
        {begin + "\"A\"=hex:01,zz", "x.reg:4: a byte is not written as hexadecimal digits"},
        {begin + "\"A\"=hex:01 02", "x.reg:4: a comma is missing between two bytes"},
        {begin + "\"A\"=hex:0102", "x.reg:4: a comma is missing between two bytes"},
        {begin + "\"A\"=hex:01,\\\n  02,\\\n  xx", "x.reg:6: a byte is not written as hexadecimal digits"},
        {begin + "\"A\"=hex:01,\\", "x.reg:4: the bytes go on behind the file's end"},
    };
    for (const auto& one : cases) {
        try {
            readRegistry(one.file, "x.reg");
            ADD_FAILURE() << "read: " << one.file;
        } catch (const ReadError& error) {
            EXPECT_STREQ(error.what(), one.error);
        }
    }
}

std::string keyOf(std::size_t levels, std::size_t nameLength) {
    std::string path = "[HKEY_USERS";
    for (std::size_t i = 0; i < levels; ++i)
        path += "\\" + std::string(nameLength, 'k');
    return kVersion5 + path + "]\n";
}

std::string numbered(int number) {
    const std::string digits = std::to_string(number);
    return std::string(6 - digits.size(), '0') + digits;
}

// In the order in which a list that is kept sorted has to make room at its front each time.
TEST(RegistryReader, ReadsNamesInFallingOrderAndInNone) {
    constexpr int kMany = 5000;
    std::string falling = kVersion5;
    for (int i = kMany; i-- > 0;)
        falling += "[HKEY_USERS\\" + numbered(i) + "]\n[HKEY_USERS]\n\"" + numbered(i * 7919 % kMany) +
                   "\"=dword:" + numbered(i) + "\n";
    const RegistryTree tree = readRegistry(falling, "x.reg");
    const KeyId users = tree.root(Hive::Users);
    ASSERT_EQ(tree.subKeys(users).size(), std::size_t{kMany});
    ASSERT_EQ(tree.values(users).size(), std::size_t{kMany});
    for (int i = 0; i < kMany; ++i) {
        const std::optional<KeyId> key = tree.find(users, numbered(i));
        ASSERT_TRUE(key) << i;
        EXPECT_EQ(tree.name(*key), numbered(i));
        const RegistryValue* value = tree.findValue(users, numbered(i * 7919 % kMany));
        ASSERT_NE(value, nullptr) << i;
        EXPECT_EQ(value->bytes, dwordValue("", static_cast<std::uint32_t>(std::stoul(numbered(i), nullptr, 16))).bytes);
    }
    EXPECT_FALSE(tree.find(users, numbered(kMany)));
    EXPECT_EQ(tree.findValue(users, ""), nullptr);
}

TEST(RegistryReader, DropsAMillionByteOrderMarksInOneGo) {
    std::string marks = "\xEF\xBB\xBFREGEDIT4\n";
    for (int i = 0; i < 1000000; ++i)
        marks += "\xEF\xBB\xBF\n";
    EXPECT_TRUE(readRegistry(marks + "[HKEY_USERS\\A]\n", "x.reg").find("HKEY_USERS\\A"));
}

TEST(RegistryReader, HoldsItsLimits) {
    EXPECT_NO_THROW(readRegistry(keyOf(512, 1), "x.reg"));
    EXPECT_NO_THROW(readRegistry(keyOf(1, 255), "x.reg"));
    EXPECT_THROW(readRegistry(keyOf(513, 1), "x.reg"), ReadError);
    EXPECT_THROW(readRegistry(keyOf(1, 256), "x.reg"), ReadError);
    const auto valueOf = [](std::size_t length) {
        return kVersion5 + std::string(kKey) + "\"" + std::string(length, 'v') + "\"=\"\"\n";
    };
    EXPECT_NO_THROW(readRegistry(valueOf(16383), "x.reg"));
    EXPECT_THROW(readRegistry(valueOf(16384), "x.reg"), ReadError);
}

}  // namespace
