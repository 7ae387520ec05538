// The verb "show" of the built Windows program: with the real library, and with libraries that are wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "RunningProgram.h"
#include "framework/Windows.h"
#include "kvstation/Handles.h"

#include <tlhelp32.h>

namespace kvstation {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace fs = std::filesystem;

// More than anything here takes, on a busy machine too.
constexpr DWORD kLongTime = 30000;

// Null when the process has no child.
OwnedHandle openChildOf(HANDLE process) {
    const OwnedHandle list(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(list.get(), &entry); more != FALSE; more = Process32Next(list.get(), &entry))
        if (entry.th32ParentProcessID == GetProcessId(process))
            return OwnedHandle(OpenProcess(PROCESS_ALL_ACCESS, FALSE, entry.th32ProcessID));
    return OwnedHandle(nullptr);
}

bool isInJob(HANDLE process) {
    BOOL isMember = FALSE;
    return IsProcessInJob(process, nullptr, &isMember) != FALSE && isMember != FALSE;
}

bool hasEnded(HANDLE process, DWORD within) {
    return WaitForSingleObject(process, within) == WAIT_OBJECT_0;
}

// Whether the process has this event under the number that it has here, as one that is inherited would be.
bool hasInherited(HANDLE process, HANDLE event) {
    HANDLE copy = nullptr;
    if (!DuplicateHandle(process, event, GetCurrentProcess(), &copy, EVENT_MODIFY_STATE, FALSE, 0))
        return false;
    ResetEvent(event);
    SetEvent(copy);
    CloseHandle(copy);
    return WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

// The tool while its child collects, until it is ended here.
class CollectingTool {
  public:
    // It inherits what this process left open to inherit.
    explicit CollectingTool(const std::string& program) {
        STARTUPINFOA start{};
        start.cb = sizeof start;
        std::string line = "kvstation show";
        PROCESS_INFORMATION started{};
        if (!CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                            &started))
            throw std::runtime_error("CreateProcessA: error " + std::to_string(GetLastError()));
        CloseHandle(started.hThread);
        m_tool = OwnedHandle(started.hProcess);
        awaitChild();
    }
    CollectingTool(const CollectingTool&) = delete;
    CollectingTool& operator=(const CollectingTool&) = delete;
    ~CollectingTool() {
        end();
        TerminateProcess(m_child.get(), 1);
        hasEnded(m_child.get(), kLongTime);
    }

    HANDLE process() const { return m_tool.get(); }
    // Null when there was none in a long time.
    HANDLE child() const { return m_child.get(); }

    void end() {
        TerminateProcess(m_tool.get(), 1);
        hasEnded(m_tool.get(), kLongTime);
    }

  private:
    void awaitChild() {
        const ULONGLONG start = GetTickCount64();
        while (!m_child && GetTickCount64() - start < kLongTime && !hasEnded(m_tool.get(), 20))
            m_child = openChildOf(m_tool.get());
    }

    OwnedHandle m_tool{nullptr};
    OwnedHandle m_child{nullptr};
};

// A folder with the tool and, beside it, what the test puts there.
class Show : public testing::Test {
  protected:
    Show() : folder(fs::temp_directory_path() / ("kvstation-" + std::to_string(GetCurrentProcessId()))) {
        fs::create_directories(folder);
        fs::copy_file(KVSTATION_PROGRAM, folder / "kvstation.exe");
    }
    ~Show() override {
        _putenv("KV_MISBEHAVIOUR=");
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    void putLibrary(const fs::path& file) { fs::copy_file(file, folder / "kvcstat64.dll"); }

    void putMisbehavingLibrary(const std::string& behaviour) {
        putLibrary(KV_MISBEHAVING_LIBRARY);
        _putenv(("KV_MISBEHAVIOUR=" + behaviour).c_str());
    }

    std::string tool() const { return (folder / "kvstation.exe").string(); }

    ProgramRun show(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), {tool(), "show"});
        return runProgram(arguments);
    }

    // One line on standard error, nothing on standard output.
    void expectRefusal(const ProgramRun& refused, const testing::Matcher<const std::string&>& line) {
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.output, "");
        EXPECT_THAT(refused.errors, line);
        EXPECT_EQ(std::ranges::count(refused.errors, '\n'), 1);
    }

    const fs::path folder;
};

TEST_F(Show, CollectsWithTheLibraryBesideTheTool) {
    const ProgramRun shown = runProgram({KVSTATION_PROGRAM, "show", "--json"});
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.errors, "");
    const auto record = nlohmann::json::parse(shown.output);
    EXPECT_EQ(record.size(), 60u);
    EXPECT_THAT(record["szOS"].get<std::string>(), StartsWith("Windows NT "));
    EXPECT_GT(record["dwTotalMemoryMB"].get<int>(), 0);
}

TEST_F(Show, NothingButTheResultGoesToStandardOutput) {
    putMisbehavingLibrary("print");
    const ProgramRun shown = show({"--field", "szStation"});
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.output, "PC-\xE2\x82\xAC\xC2\x81\xC3\xA9\n");
    EXPECT_EQ(shown.errors, "");
}

TEST_F(Show, AHangIsEndedAndToldInOneLine) {
    putMisbehavingLibrary("hang");
    expectRefusal(show({"--timeout", "3"}),
                  "kvstation: the collection hung while collecting: ended after 3 seconds; "
                  "--timeout SECONDS gives it longer\n");
}

TEST_F(Show, ACollectionEndsWithTheToolThatItIsFor) {
    putMisbehavingLibrary("hang");
    CollectingTool collecting(tool());
    ASSERT_NE(collecting.child(), nullptr);
    const ULONGLONG start = GetTickCount64();
    while (!isInJob(collecting.child()) && GetTickCount64() - start < kLongTime)
        Sleep(20);
    collecting.end();
    EXPECT_TRUE(hasEnded(collecting.child(), kLongTime));
}

TEST_F(Show, ACollectionHoldsNothingOfWhatTheToolsCallerLeftOpen) {
    putMisbehavingLibrary("hang");
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const OwnedHandle event(CreateEventA(&inherited, TRUE, FALSE, nullptr));
    const CollectingTool collecting(tool());
    ASSERT_NE(collecting.child(), nullptr);
    EXPECT_TRUE(hasInherited(collecting.process(), event.get()));
    EXPECT_FALSE(hasInherited(collecting.child(), event.get()));
}

TEST_F(Show, ACrashIsToldInOneLine) {
    putMisbehavingLibrary("crash");
    expectRefusal(show(),
                  AllOf(StartsWith("kvstation: the collection crashed while collecting (exception 0xC0000005 at "),
                        EndsWith(")\n")));
}

TEST_F(Show, ALibraryThatEndsTheProcessIsToldInOneLine) {
    putMisbehavingLibrary("exit");
    expectRefusal(show(), "kvstation: the collection ended by itself while collecting (exit status 7)\n");
}

TEST_F(Show, AMissingLibraryIsToldInOneLine) {
    expectRefusal(show(), AllOf(StartsWith("kvstation: kvcstat64.dll is not beside the tool, put it there: "),
                                EndsWith("(error 126)\n")));
}

TEST_F(Show, AFileThatIsNoLibraryIsToldInOneLine) {
    std::ofstream(folder / "kvcstat64.dll") << "This is no library.";
    expectRefusal(show(),
                  AllOf(StartsWith("kvstation: kvcstat64.dll beside the tool is no library for 64-bit Windows: "),
                        EndsWith("(error 193)\n")));
}

TEST_F(Show, AnotherLibraryIsToldInOneLine) {
    putLibrary(KV_ANOTHER_LIBRARY);
    expectRefusal(show(), AllOf(StartsWith("kvstation: kvcstat64.dll beside the tool is another library: "),
                                HasSubstr("GetProcAddress(GetStationData)"), EndsWith("(error 127)\n")));
}

TEST_F(Show, MissingCompanionsAreToldInOneLine) {
    putLibrary(KV_MODULE);
    expectRefusal(show(), AllOf(StartsWith("kvstation: a library that kvcstat64.dll needs is missing"),
                                EndsWith("(error 126)\n")));
}

TEST_F(Show, ALibraryThatIsNotThereIsNoReasonToForgetAWrongUse) {
    const ProgramRun refused = show({"--field", "nothing"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
}

TEST_F(Show, ImportIsTheNativeTools) {
    expectRefusal(runProgram({KVSTATION_PROGRAM, "import", "hives", "station"}),
                  "kvstation: import needs the native (Linux) tool; 'kvstation simulate STATION' takes here what it "
                  "wrote\n");
}

}  // namespace
}  // namespace kvstation
