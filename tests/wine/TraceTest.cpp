// ZRtrc64.dll: what a trace line says and which lines are wanted.
#include <cstdarg>
#include <cstdio>
#include <regex>

#include "tests/wine/LoadedModule.h"
#include "tests/wine/TraceFixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;

TEST_F(Trace, WritesOneLineWithTimeProcessLevelAndComponent) {
    ZRTrace(2, kComponent, "Reading station data.\n");
    const auto lines = Lines();
    ASSERT_EQ(1U, lines.size());
    const std::regex form(R"((\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}) \[(\d+)\] 2 (.*)\r)");
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(lines[0], parts, form)) << lines[0];
    EXPECT_EQ(std::to_string(GetCurrentProcessId()), parts[2]);
    EXPECT_EQ("KelVor - Station registration (client): Reading station data.", parts[3]);
}

TEST_F(Trace, TellsTheLocalTimeOfTheCall) {
    const auto now = [] {
        SYSTEMTIME time;
        GetLocalTime(&time);
        char text[32];
        snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u", time.wYear, time.wMonth, time.wDay,
                 time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
        return std::string(text);
    };
    const std::string before = now();
    ZRTrace(2, kComponent, "x");
    const std::string after = now();
    ASSERT_EQ(1U, Lines().size());
    const std::string time = Lines()[0].substr(0, before.size());
    EXPECT_LE(before, time);
    EXPECT_LE(time, after);
}

TEST_F(Trace, FormatsItsValues) {
    ZRTrace(6, kComponent, "'%s' ret = %d, %ld, %u, %08lX, %c, %%", "THIN07", -1, -2L, 3U, 0xC0000001UL, 'x');
    EXPECT_THAT(Texts(), ElementsAre("'THIN07' ret = -1, -2, 3, C0000001, x, %\r"));
}

TEST_F(Trace, IsOneLineWhateverTheTextHolds) {
    ZRTrace(2, kComponent, "%s\n", "one\r\ntwo\n");
    EXPECT_THAT(Texts(), ElementsAre("one\\r\\ntwo\\n\r"));
}

TEST_F(Trace, CutsALongText) {
    ZRTrace(2, kComponent, "%s\n", std::string(100000, 'x').c_str());
    ZRTrace(2, kComponent, "next");
    const auto lines = Lines();
    ASSERT_EQ(2U, lines.size());
    EXPECT_EQ(4094U, lines[0].size());
    EXPECT_THAT(lines[0], EndsWith("xxx...\r"));
}

std::size_t g_room = 0;

int NoteRoom(char* buffer, std::size_t count, const char* format, va_list arguments) {
    g_room = count;
    return _vsnprintf(buffer, count, format, arguments);
}

TEST_F(Trace, FormatsIntoTheRoomInFrontOfTheTextsEnd) {
    const ImportOverride format(GetModuleHandleA("ZRtrc64.dll"), "msvcrt.dll", "_vsnprintf", NoteRoom);
    ZRTrace(2, kComponent, "%s", "text");
    EXPECT_EQ(4095U, g_room);
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

TEST_F(Trace, TakesNullTextsForEmptyOnes) {
    const char* nothing = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"  // a null format is the point
    ZRTrace(2, nothing, nothing);
#pragma GCC diagnostic pop
    ASSERT_EQ(1U, Lines().size());
    EXPECT_THAT(Lines()[0], EndsWith("] 2 : \r"));
}

TEST_F(Trace, WritesEveryLevelWithoutALimit) {
    for (const int level : {0, 2, 6, 100})
        ZRTrace(level, kComponent, "%d", level);
    EXPECT_THAT(Texts(), ElementsAre("0\r", "2\r", "6\r", "100\r"));
}

TEST_F(Trace, ObeysTheLimit) {
    SetEnvironmentVariableA("KVTraceLevel", "2");
    for (const int level : {0, 2, 3, 6})
        ZRTrace(level, kComponent, "%d", level);
    EXPECT_THAT(Texts(), ElementsAre("0\r", "2\r"));
}

TEST_F(Trace, LimitOf15CharactersCountsAndALongerOneIsNone) {
    SetEnvironmentVariableA("KVTraceLevel", "000000000000002");
    ZRTrace(6, kComponent, "silent");
    SetEnvironmentVariableA("KVTraceLevel", "0000000000000002");
    ZRTrace(6, kComponent, "told");
    EXPECT_THAT(Texts(), ElementsAre("told\r"));
}

TEST_F(Trace, FollowsItsVariablesWhileTheProcessRuns) {
    SetEnvironmentVariableA("KVTraceLevel", "2");
    ZRTrace(6, kComponent, "too detailed");
    SetEnvironmentVariableA("KVTraceLevel", "6");
    ZRTrace(6, kComponent, "wanted");
    SetEnvironmentVariableA("KVTraceFile", nullptr);
    ZRTrace(6, kComponent, "over");
    EXPECT_THAT(Texts(), ElementsAre("wanted\r"));
}

TEST_F(Trace, LeavesTheLastErrorAsItWas) {
    for (const char* name : {m_file.c_str(), "C:\\no such folder\\trace.log", static_cast<const char*>(nullptr)}) {
        SetEnvironmentVariableA("KVTraceFile", name);
        SetLastError(1234);
        ZRTrace(2, kComponent, "text");
        EXPECT_EQ(1234U, GetLastError());
    }
}

}  // namespace
