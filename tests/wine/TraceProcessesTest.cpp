// ZRtrc64.dll: trace lines of other processes, in one file and under a debugger.
#include <map>
#include <regex>

#include "tests/wine/TraceFixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

std::string FolderOf(HMODULE module) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, MAX_PATH - 1);
    const std::string file(path);
    return file.substr(0, file.rfind('\\') + 1);
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
