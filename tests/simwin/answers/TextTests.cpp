// Conversions, formatting, the string table, trace lines, and the C runtime.
#include <gmock/gmock.h>

#include <array>

#include "simwin/calls/Calls.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::SizeIs;

LPCWSTR wide(const char16_t* text) {
    return reinterpret_cast<LPCWSTR>(text);
}

TEST(WideCharToMultiByte, CountsTheTerminatorOfATextWithoutALength) {
    const Running running;
    std::array<char, 8> buffer{};
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u"ATI"), -1, nullptr, 0, nullptr, nullptr), 4);
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u"ATI"), -1, buffer.data(), 4, nullptr, nullptr), 4);
    EXPECT_STREQ(buffer.data(), "ATI");
    buffer.fill('x');
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u"ATI"), 2, buffer.data(), 8, nullptr, nullptr), 2);
    EXPECT_EQ(std::string(buffer.data(), 3), "ATx");
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u""), -1, nullptr, 0, nullptr, nullptr), 1);
}

TEST(WideCharToMultiByte, ReplacesWhatTheCodePageDoesNotHold) {
    const Running running;
    std::array<char, 8> buffer{};
    BOOL used = FALSE;
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u"\u20AC\u4E2D"), -1, buffer.data(), 8, nullptr, &used), 3);
    EXPECT_STREQ(buffer.data(), "\x80?");
    EXPECT_TRUE(used);
    EXPECT_EQ(WideCharToMultiByte(1252, 0, wide(u"\u4E2D"), -1, buffer.data(), 8, "_", nullptr), 2);
    EXPECT_STREQ(buffer.data(), "_");
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide(u"a"), -1, buffer.data(), 8, nullptr, &used), 2);
    EXPECT_FALSE(used);
}

TEST(WideCharToMultiByte, RefusesWhatWindowsRefuses) {
    const Running running;
    std::array<char, 8> buffer{};
    const auto fails = [&](UINT codePage, const char16_t* text, int length, char* place, int size, DWORD error) {
        EXPECT_EQ(WideCharToMultiByte(codePage, 0, wide(text), length, place, size, nullptr, nullptr), 0);
        EXPECT_EQ(GetLastError(), error);
    };
    fails(CP_ACP, u"ATI", -1, buffer.data(), 3, ERROR_INSUFFICIENT_BUFFER);
    fails(CP_ACP, u"ATI", 0, buffer.data(), 8, ERROR_INVALID_PARAMETER);
    fails(CP_ACP, nullptr, -1, buffer.data(), 8, ERROR_INVALID_PARAMETER);
    fails(CP_ACP, u"ATI", -1, nullptr, 8, ERROR_INVALID_PARAMETER);
    fails(CP_ACP, u"ATI", -1, buffer.data(), -1, ERROR_INVALID_PARAMETER);
    fails(CP_UTF8, u"ATI", -1, buffer.data(), 8, ERROR_INVALID_PARAMETER);
}

TEST(WsprintfA, FormatsAsUserDoes) {
    const Running running;
    std::array<char, 1024> buffer{};
    const auto expect = [&](const char* expected, int length) {
        EXPECT_STREQ(buffer.data(), expected);
        EXPECT_EQ(length, static_cast<int>(std::string(expected).size()));
    };
    expect("6.0.2900.2180", wsprintfA(buffer.data(), "%d.%d.%d.%d", 6, 0, 2900, 2180));
    expect("-1 4294967295 -1", wsprintfA(buffer.data(), "%d %u %ld", -1, 0xFFFFFFFFu, -1));
    expect("2a 2A 0x2a", wsprintfA(buffer.data(), "%x %X %#x", 42, 42, 42));
    expect("C:\\ 100%", wsprintfA(buffer.data(), "%c:\\ %d%%", 'C', 100));
    expect("[   7][7   ][0007][007]", wsprintfA(buffer.data(), "[%4d][%-4d][%04d][%.3d]", 7, 7, 7, 7));
    expect("-007", wsprintfA(buffer.data(), "%04d", -7));
    expect("abc ab (null)", wsprintfA(buffer.data(), "%s %.2s %s", "abc", "abc", nullptr));
    expect("1099511627776", wsprintfA(buffer.data(), "%I64d", 1099511627776LL));
    expect("7 8", wsprintfA(buffer.data(), "%hd %lu", 7, 8u));
    expect("", wsprintfA(buffer.data(), "%"));
}

TEST(WsprintfA, WritesAtMost1024Bytes) {
    const Running running;
    std::array<char, 1025> buffer{};
    buffer.back() = 'x';
    EXPECT_EQ(wsprintfA(buffer.data(), "%s", std::string(2000, 'a').c_str()), 1023);
    EXPECT_EQ(std::string(buffer.data()), std::string(1023, 'a'));
    EXPECT_EQ(buffer.back(), 'x');
}

TEST(LoadStringA, ReadsTheModulesTableAndCutsToTheBuffer) {
    const Running running;
    std::array<char, 64> buffer{};
    EXPECT_EQ(LoadStringA(nullptr, 16003, buffer.data(), 64), 7);
    EXPECT_STREQ(buffer.data(), "unknown");
    EXPECT_EQ(LoadStringA(nullptr, 16003, buffer.data(), 4), 3);
    EXPECT_STREQ(buffer.data(), "unk");
    EXPECT_EQ(LoadStringA(nullptr, 15999, buffer.data(), 64), 0);
    EXPECT_STREQ(buffer.data(), "");
    EXPECT_EQ(LoadStringA(nullptr, 16003, buffer.data(), 0), -1);
    EXPECT_EQ(LoadStringA(nullptr, 16003, nullptr, 64), -1);
}

TEST(ZRTrace, KeepsLevelComponentAndText) {
    Running running;
    ZRTrace(2, "Component", "%s is %d\n", std::string(3000, 'a').c_str(), -5);
    running.machine.keepTrace(false);
    ZRTrace(6, "Component", "forgotten");
    ASSERT_THAT(running.machine.traceLines(), SizeIs(1));
    EXPECT_EQ(running.machine.traceLines()[0].level, 2);
    EXPECT_EQ(running.machine.traceLines()[0].component, "Component");
    EXPECT_EQ(running.machine.traceLines()[0].text, std::string(3000, 'a') + " is -5\n");
}

unsigned char* bytes(char* text) {
    return reinterpret_cast<unsigned char*>(text);
}
const unsigned char* bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

TEST(CRuntime, ChangesTheCaseOfALettersOfTheCodePage) {
    const Running running;
    char text[] = "aZ \xE4\x9C\xFF\xF7\xDF\xB5";
    EXPECT_STREQ(_strupr(text), "AZ \xE4\x9C\xFF\xF7\xDF\xB5");
    EXPECT_STREQ(reinterpret_cast<char*>(_mbsupr(bytes(text))), "AZ \xC4\x8C\x9F\xF7\xDF\xB5");
    EXPECT_STREQ(reinterpret_cast<char*>(_mbslwr(bytes(text))), "az \xE4\x9C\xFF\xF7\xDF\xB5");
    EXPECT_EQ(_mbsupr(nullptr), nullptr);
}

TEST(CRuntime, ComparesExactly) {
    const Running running;
    EXPECT_EQ(_mbscmp(bytes("a"), bytes("a")), 0);
    EXPECT_EQ(_mbscmp(bytes("A"), bytes("a")), -1);
    EXPECT_EQ(_mbscmp(bytes("\xE4"), bytes("a")), 1);
    EXPECT_EQ(_mbscmp(bytes("ab"), bytes("a")), 1);
    EXPECT_EQ(_mbscmp(nullptr, bytes("a")), 0x7FFFFFFF);
}

TEST(CodePage, RefusesWhatIsNoUtf8) {
    for (const char* text : {"\x80", "\xC0\x80", "\xC3", "\xC3(", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xF5\x80\x80\x80", "\xFF"}) {
        Utf8Error error{};
        EXPECT_FALSE(isUtf8(text));
        EXPECT_FALSE(fromUtf8(text, error));
        EXPECT_FALSE(error.outsideCodePage);
    }
    Utf8Error error{};
    EXPECT_FALSE(fromUtf8("ab\xE4\xB8\xAD", error));
    EXPECT_TRUE(error.outsideCodePage);
    EXPECT_EQ(error.position, 2u);
    EXPECT_EQ(fromUtf8("\xE2\x82\xAC\xC3\xA4", error), "\x80\xE4");
    EXPECT_EQ(toUtf8("\x80\xE4"), "\xE2\x82\xAC\xC3\xA4");
    std::string text;
    appendUtf8(text, 0x1F600);
    EXPECT_EQ(text, "\xF0\x9F\x98\x80");
}

TEST(CodePage, ComparesNamesWithoutRegardToCase) {
    EXPECT_TRUE(
        equalNoCase("Stra\xDF"
                    "e\xE4",
                    "sTRA\xDF"
                    "E\xC4"));
    EXPECT_FALSE(equalNoCase("a", "ab"));
    EXPECT_LT(compareNoCase("a", "B"), 0);
    EXPECT_GT(compareNoCase("ab", "A"), 0);
}

TEST(HexText, HasTheDigitsOfANumberAndZerosInFront) {
    EXPECT_EQ(hexDigits(0), "0");
    EXPECT_EQ(hexDigits(0x1F), "1f");
    EXPECT_EQ(hexDigits(0x1F, 4, HexCase::Upper), "001F");
    EXPECT_EQ(hexDigits(0x12345, 4), "12345");
    EXPECT_EQ(hexDigits(0xFEDCBA9876543210, 2), "fedcba9876543210");
    EXPECT_EQ(hexDigits(0, 0), "");
    EXPECT_EQ(hexText("\x01\xAB", '-'), "01-AB");
}

TEST(HexText, TellsAByteByOneDigitOrTwo) {
    EXPECT_EQ(byteOfHex("0"), '\0');
    EXPECT_EQ(byteOfHex("aF"), '\xAF');
    for (const char* text : {"", "123", "g", "1g", " 1", "-1", "+1", "0x"})
        EXPECT_EQ(byteOfHex(text), std::nullopt) << text;
}

}  // namespace
