#include "companions/zrtrc/TraceLine.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>

namespace {

constexpr char kComponent[] = "KelVor - Station registration (client)";
constexpr TraceTime kTime = {2024, 3, 9, 7, 5, 3, 42};

std::string Line(const TraceEntry& entry) {
    char line[kTraceLineSize];
    const std::size_t length = FormatTraceLine(entry, line);
    EXPECT_LT(length, sizeof line);
    EXPECT_EQ('\0', line[length]);
    return {line, length};
}

// The line's end behind "component: ".
std::string TextOf(const char* text) {
    const std::string line = Line({kTime, 1, 2, "c", text});
    return line.substr(line.find("c: ") + 3);
}

TEST(TraceLine, HoldsTimeProcessLevelComponentAndText) {
    EXPECT_EQ("2024-03-09 07:05:03.042 [1234] 2 KelVor - Station registration (client): Reading station data.\r\n",
              Line({kTime, 1234, 2, kComponent, "Reading station data.\n"}));
}

TEST(TraceLine, WritesLargeAndNegativeNumbers) {
    EXPECT_EQ("2024-12-31 23:59:59.999 [4294967295] -2147483648 c: t\r\n",
              Line({{2024, 12, 31, 23, 59, 59, 999}, 4294967295, INT_MIN, "c", "t"}));
}

TEST(TraceLine, DropsOneLineEnd) {
    EXPECT_EQ("text\r\n", TextOf("text"));
    EXPECT_EQ("text\r\n", TextOf("text\n"));
    EXPECT_EQ("text\r\n", TextOf("text\r\n"));
    EXPECT_EQ("text\\n\r\n", TextOf("text\n\n"));
    EXPECT_EQ("text\\r\r\n", TextOf("text\r"));
    EXPECT_EQ("\r\n", TextOf("\n"));
    EXPECT_EQ("\r\n", TextOf(""));
}

TEST(TraceLine, EscapesControlCharactersOfTheText) {
    EXPECT_EQ("one\\ntwo\\r\\nthree\\tfour\r\n", TextOf("one\ntwo\r\nthree\tfour"));
    EXPECT_EQ("\\x01\\x1B[31m\\x7F\r\n", TextOf("\x01\x1B[31m\x7F"));
    EXPECT_EQ("\\x10\\x1D\\x1F \r\n", TextOf("\x10\x1D\x1F "));
}

TEST(TraceLine, EscapesControlCharactersOfTheComponent) {
    EXPECT_EQ("2024-03-09 07:05:03.042 [1] 2 a\\nb: t\r\n", Line({kTime, 1, 2, "a\nb", "t"}));
}

TEST(TraceLine, KeepsBackslashesAndTheLettersOfTheCodePage) {
    EXPECT_EQ("C:\\new\\table M\xFCller \x80\r\n", TextOf("C:\\new\\table M\xFCller \x80"));
}

TEST(TraceLine, TakesNullTextsForEmptyOnes) {
    EXPECT_EQ("2024-03-09 07:05:03.042 [1] 2 : \r\n", Line({kTime, 1, 2, nullptr, nullptr}));
}

// The shortest prefix is 33 bytes: the time, " [1] 2 c: ".
constexpr std::size_t kPrefix = 33;
constexpr std::size_t kLongest = kTraceLineSize - 1 - 2;  // without terminator and line end

TEST(TraceLine, HoldsTheLongestTextWhole) {
    const std::string text(kLongest - kPrefix - 3, 'x');
    EXPECT_EQ(text + "\r\n", TextOf(text.c_str()));
}

TEST(TraceLine, CutsALongerTextAndMarksIt) {
    const std::string whole(kLongest - kPrefix - 3, 'x');
    EXPECT_EQ(whole + "...\r\n", TextOf((whole + 'y').c_str()));
    EXPECT_EQ(whole + "...\r\n", TextOf((whole + std::string(5000, 'y')).c_str()));
}

TEST(TraceLine, CutsATextOfEscapesToo) {
    const std::string line = TextOf(std::string(kTraceLineSize, '\x01').c_str());
    EXPECT_EQ(kTraceLineSize - 1 - kPrefix, line.size());
    EXPECT_TRUE(line.ends_with("...\r\n"));
    EXPECT_EQ(std::string::npos, line.find('\x01'));
}

TEST(TraceLine, CutsALongComponentAndStaysOneLine) {
    const std::string component(2 * kTraceLineSize, '\n');
    const std::string line = Line({kTime, 1, 2, component.c_str(), "text\n"});
    EXPECT_EQ(kTraceLineSize - 1, line.size());
    EXPECT_TRUE(line.ends_with("...\r\n"));
    EXPECT_EQ(line.size() - 1, line.find('\n'));
}

}  // namespace
