// ZRtrc64.dll: trace lines to a file and to the debugger.
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "companions/zrtrc/ZRtrc.h"
#include "framework/Windows.h"
#include "tests/wine/LoadedModule.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr char kComponent[] = "KelVor - Station registration (client)";

std::string FolderOf(HMODULE module) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, MAX_PATH - 1);
    const std::string file(path);
    return file.substr(0, file.rfind('\\') + 1);
}

// Each test has a trace file of its own.
class Trace : public testing::Test {
  protected:
    Trace() {
        char folder[MAX_PATH] = {};
        GetTempPathA(MAX_PATH, folder);
        m_file = std::string(folder) + "kvtrace-" + std::to_string(GetCurrentProcessId()) + ".log";
        DeleteFileA(m_file.c_str());
        SetEnvironmentVariableA("KVTraceFile", m_file.c_str());
        SetEnvironmentVariableA("KVTraceLevel", nullptr);
    }
    ~Trace() override {
        SetEnvironmentVariableA("KVTraceFile", nullptr);
        SetEnvironmentVariableA("KVTraceLevel", nullptr);
        DeleteFileA(m_file.c_str());
    }

    // The lines of the file, each with its carriage return but without the newline.
    std::vector<std::string> Lines() const {
        std::ifstream file(m_file, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    // What the lines say behind the component.
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const std::string& line : Lines())
            texts.push_back(line.substr(line.find("): ") + 3));
        return texts;
    }

    bool HasFile() const { return GetFileAttributesA(m_file.c_str()) != INVALID_FILE_ATTRIBUTES; }

    std::string m_file;
};

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

TEST_F(Trace, AddsToWhatTheFileHolds) {
    std::ofstream(m_file, std::ios::binary) << "kept): \r\n";
    ZRTrace(2, kComponent, "added");
    EXPECT_THAT(Texts(), ElementsAre("\r", "added\r"));
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

TEST_F(Trace, FollowsItsVariablesWhileTheProcessRuns) {
    SetEnvironmentVariableA("KVTraceLevel", "2");
    ZRTrace(6, kComponent, "too detailed");
    SetEnvironmentVariableA("KVTraceLevel", "6");
    ZRTrace(6, kComponent, "wanted");
    SetEnvironmentVariableA("KVTraceFile", nullptr);
    ZRTrace(6, kComponent, "over");
    EXPECT_THAT(Texts(), ElementsAre("wanted\r"));
}

TEST_F(Trace, WritesNothingWhenNoFileIsNamed) {
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        SetEnvironmentVariableA("KVTraceFile", name);
        ZRTrace(2, kComponent, "text");
    }
    EXPECT_FALSE(HasFile());
}

TEST_F(Trace, LeavesAFileAloneThatCannotBeWritten) {
    SetEnvironmentVariableA("KVTraceFile", "C:\\no such folder\\trace.log");
    ZRTrace(2, kComponent, "text");
    SetEnvironmentVariableA("KVTraceFile", std::string(2000, 'x').c_str());
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(Lines(), IsEmpty());
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

TEST_F(Trace, LeavesTheLastErrorAsItWas) {
    for (const char* name : {m_file.c_str(), "C:\\no such folder\\trace.log", static_cast<const char*>(nullptr)}) {
        SetEnvironmentVariableA("KVTraceFile", name);
        SetLastError(1234);
        ZRTrace(2, kComponent, "text");
        EXPECT_EQ(1234U, GetLastError());
    }
}

TEST_F(Trace, KeepsNoHandleOfTheFile) {
    ZRTrace(2, kComponent, "before");
    EXPECT_TRUE(DeleteFileA(m_file.c_str()));
    EXPECT_FALSE(HasFile());
    ZRTrace(2, kComponent, "after");
    EXPECT_THAT(Texts(), ElementsAre("after\r"));
}

TEST_F(Trace, LetsOthersReadTheFileMeanwhile) {
    ZRTrace(2, kComponent, "one");
    std::ifstream reader(m_file, std::ios::binary);
    ZRTrace(2, kComponent, "two");
    std::string first;
    std::string second;
    std::getline(reader, first);
    std::getline(reader, second);
    EXPECT_THAT(second, EndsWith("two\r"));
}

TEST_F(Trace, WritesThoughAnotherWriterIsHeldUp) {
    HANDLE file = CreateFileA(m_file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    ASSERT_TRUE(LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place));
    ZRTrace(2, kComponent, "text");
    CloseHandle(file);
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

HANDLE WINAPI CreateFileWithoutReading(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* attributes,
                                       DWORD disposition, DWORD flags, HANDLE pattern) {
    if ((access & FILE_READ_DATA) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return CreateFileA(name, access, share, attributes, disposition, flags, pattern);
}

TEST_F(Trace, WritesAFileThatMayOnlyBeAppendedTo) {
    const ImportOverride rights(GetModuleHandleA("ZRtrc64.dll"), "kernel32.dll", "CreateFileA",
                                CreateFileWithoutReading);
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

// A second process that traces numbered lines.
class Writer {
  public:
    Writer(const char* component, int lines, DWORD flags = 0) {
        std::string command = '"' + FolderOf(nullptr) + "trace_writer.exe\" " + component + ' ' + std::to_string(lines);
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        EXPECT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr, &startup,
                                   &m_process))
            << command;
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() {
        WaitForSingleObject(m_process.hProcess, INFINITE);
        DWORD status = 1;
        EXPECT_TRUE(GetExitCodeProcess(m_process.hProcess, &status));
        EXPECT_EQ(0U, status);
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }

    HANDLE Process() const { return m_process.hProcess; }

  private:
    PROCESS_INFORMATION m_process = {};
};

TEST_F(Trace, LinesOfTwoProcessesNeverMix) {
    constexpr int kLines = 500;
    {
        const Writer first("first", kLines);
        const Writer second("second", kLines);
    }

    // Every line is whole, and each process's lines are all there in their order.
    const std::regex form(
        R"([-0-9]{10} [:.0-9]{12} \[\d+\] 2 (first|second): line (\d+) of 500, long enough .* shows\r)");
    std::map<std::string, int> last;
    for (const std::string& line : Lines()) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
        EXPECT_EQ(last[parts[1]] + 1, std::stoi(parts[2])) << line;
        ++last[parts[1]];
    }
    EXPECT_EQ(kLines, last["first"]);
    EXPECT_EQ(kLines, last["second"]);
}

// What a debugger of the writer sees of its debug output.
std::vector<std::string> OutputOf(const Writer& writer) {
    std::vector<std::string> output;
    for (DEBUG_EVENT event = {}; event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT;) {
        if (!WaitForDebugEvent(&event, INFINITE)) {
            ADD_FAILURE() << "error " << GetLastError();
            break;
        }
        if (event.dwDebugEventCode == OUTPUT_DEBUG_STRING_EVENT) {
            const OUTPUT_DEBUG_STRING_INFO& text = event.u.DebugString;
            std::string line(text.nDebugStringLength, '?');
            EXPECT_TRUE(ReadProcessMemory(writer.Process(), text.lpDebugStringData, line.data(), line.size(), nullptr));
            output.emplace_back(line.c_str());
        }
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
    }
    return output;
}

TEST_F(Trace, SendsTheLinesOfTheFileToTheDebuggerToo) {
    const Writer writer("writer", 2, DEBUG_ONLY_THIS_PROCESS);
    const auto output = OutputOf(writer);
    const auto lines = Lines();
    ASSERT_EQ(2U, lines.size());
    EXPECT_THAT(output, ElementsAre(lines[0] + '\n', lines[1] + '\n'));
}

TEST_F(Trace, NeedsNoFileForTheDebugger) {
    SetEnvironmentVariableA("KVTraceFile", nullptr);
    const Writer writer("writer", 1, DEBUG_ONLY_THIS_PROCESS);
    EXPECT_THAT(OutputOf(writer), ElementsAre(EndsWith("writer: line 1 of 1, long enough that a torn one shows\r\n")));
    EXPECT_FALSE(HasFile());
}

TEST_F(Trace, ObeysTheLimitForTheDebuggerToo) {
    SetEnvironmentVariableA("KVTraceLevel", "1");
    const Writer writer("writer", 2, DEBUG_ONLY_THIS_PROCESS);
    EXPECT_THAT(OutputOf(writer), IsEmpty());
}

}  // namespace
