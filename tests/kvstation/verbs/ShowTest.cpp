// The built Windows program: the verb "show" with the real library, and with libraries that are wrong, and sets of
// stations.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "framework/Windows.h"
#include "kvstation/platform/Handles.h"
#include "tests/kvstation/RunningProgram.h"

#include <tlhelp32.h>

namespace kvstation {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kFields[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning) #name,
#define KV_NUMBER(name, offset, group, meaning) #name,
#define KV_UNSIGNED(name, offset, group, meaning) #name,
#include "include/kvcstat_fields.inc"
};

bool hasChild(HANDLE process) {
    const OwnedHandle list(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(list.get(), &entry); more != FALSE; more = Process32Next(list.get(), &entry))
        if (entry.th32ParentProcessID == GetProcessId(process))
            return true;
    return false;
}

auto LineWithPlace(const std::string& start) {
    return AllOf(StartsWith(start + "kvcstat64.dll+0x"), EndsWith(")\n"));
}

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

    void putLibrary(const fs::path& file) {
        fs::copy_file(file, folder / "kvcstat64.dll", fs::copy_options::overwrite_existing);
    }

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
    for (const char* field : kFields)
        EXPECT_TRUE(record.contains(field)) << field;
    EXPECT_EQ(record.size(), std::size(kFields) + 1) << "and when and by what it was collected";
    EXPECT_THAT(record["szOS"].get<std::string>(), StartsWith("Windows NT "));
    EXPECT_GT(record["dwTotalMemoryMB"].get<int>(), 0);
    EXPECT_THAT(record["collected"]["at"].get<std::string>(), MatchesRegex("\\d+-\\d+-\\d+T\\d+:\\d+:\\d+Z"));
    EXPECT_EQ(record["collected"]["library"], KV_VERSION ".0");
    EXPECT_EQ(record["collected"]["tool"], KV_VERSION);
}

TEST_F(Show, NothingButTheResultGoesToStandardOutput) {
    putMisbehavingLibrary("print");
    const ProgramRun shown = show({"--field", "szStation"});
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.output, "PC-\xE2\x82\xAC\xC2\x81\xC3\xA9\n");
    EXPECT_EQ(shown.errors, "");
}

TEST_F(Show, ARowIsNamedAsTheStationRegisters) {
    putMisbehavingLibrary("");
    const auto row = nlohmann::json::parse(show({"--ndjson", "--field", "szStation"}).output);
    EXPECT_EQ(row["name"], "PC-\xE2\x82\xAC\xC2\x81\xC3\xA9");
    EXPECT_EQ(row["fields"]["szStation"], row["name"]);
    EXPECT_EQ(row["collected"]["tool"], KV_VERSION);
}

// It is the native tool's, which can show no computer.
TEST_F(Show, NoRowGoesIntoAnSqliteFile) {
    EXPECT_THAT(show({"--sqlite", "x.db"}).errors, HasSubstr("'--sqlite' is no option of show"));
    const ProgramRun simulated =
        runProgram({KVSTATION_PROGRAM, "simulate", KV_STATIONS "/windows-xp-console", "--sqlite", "x.db"});
    EXPECT_EQ(simulated.output, "");
    EXPECT_THAT(simulated.errors, HasSubstr("--sqlite: needs the native (Linux) tool"));
}

TEST_F(Show, AHangIsEndedAndToldInOneLine) {
    putMisbehavingLibrary("hang");
    expectRefusal(show({"--timeout", "2"}),
                  "kvstation: the collection hung while collecting: ended after 2 seconds; "
                  "--timeout SECONDS gives it longer\n");
}

TEST_F(Show, AHangThatHoldsTheLoadersLockIsEndedAndToldInOneLine) {
    putMisbehavingLibrary("hang at its load");
    expectRefusal(show({"--timeout", "2"}),
                  "kvstation: the collection hung while loading kvcstat64.dll: ended after 2 seconds; "
                  "--timeout SECONDS gives it longer\n");
}

TEST_F(Show, ACollectionIsMadeInTheToolsOwnProcess) {
    putMisbehavingLibrary("hang");
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;  // none
    std::string line = "kvstation show --timeout 2";
    PROCESS_INFORMATION started{};
    ASSERT_TRUE(
        CreateProcessA(tool().c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started));
    const OwnedHandle process(started.hProcess);
    const OwnedHandle thread(started.hThread);
    while (WaitForSingleObject(process.get(), 100) == WAIT_TIMEOUT)
        EXPECT_FALSE(hasChild(process.get()));
}

TEST_F(Show, ACrashIsToldWithItsPlaceInOneLine) {
    putMisbehavingLibrary("access");
    expectRefusal(show(),
                  LineWithPlace("kvstation: the collection crashed while collecting (exception 0xC0000005 at "));
}

TEST_F(Show, AStackThatIsUsedUpIsToldInOneLine) {
    putMisbehavingLibrary("overflow");
    expectRefusal(show(),
                  LineWithPlace("kvstation: the collection crashed while collecting (exception 0xC00000FD at "));
}

TEST_F(Show, AFailedAssertionAndAnAbortAreToldInOneLine) {
    for (const char* behaviour : {"assert", "abort"}) {
        SCOPED_TRACE(behaviour);
        putMisbehavingLibrary(behaviour);
        expectRefusal(show(), LineWithPlace("kvstation: the collection was aborted while collecting (SIGABRT at "));
    }
}

TEST_F(Show, ALibraryThatEndsTheProcessIsToldInOneLine) {
    for (const char* behaviour : {"exit", "ExitProcess", "ExitProcess in another thread", "TerminateProcess"}) {
        SCOPED_TRACE(behaviour);
        putMisbehavingLibrary(behaviour);
        expectRefusal(show(), LineWithPlace("kvstation: the library ended the process while collecting (exit at "));
    }
    putMisbehavingLibrary("exit at its load");
    expectRefusal(show(), StartsWith("kvstation: the library ended the process while loading kvcstat64.dll (exit at "
                                     "kvcstat64.dll+0x"));
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

// The tool's folder holds all that a collection by the real library needs.
std::string release(const char* name) {
    return (fs::path(KVSTATION_PROGRAM).parent_path() / name).string();
}

TEST(Sets, StationsAreSharedAmongProcesses) {
    const ProgramRun told = runProgram(
        {KVSTATION_PROGRAM, "simulate", KV_STATIONS "/windows-xp-*", "--jobs", "2", "--csv", "--field", "SZIPADDRESS"});
    EXPECT_EQ(told.status, 0);
    EXPECT_EQ(told.errors, "");
    EXPECT_THAT(told.output, MatchesRegex("name,source,.*,szIPAddress\r\n"
                                          "windows-xp-console,.*,172\\.20\\.16\\.45\r\nwindows-xp-russian,.*\r\n"));
}

TEST(Sets, WhatALibraryMakesOfAStationIsComparedWithWhatAnotherMakes) {
    const std::string module = release("kvcstat64.dll");
    const ProgramRun same =
        runProgram({KVSTATION_PROGRAM, "diff", "--library", module, module, KV_STATIONS "/windows-xp-*"});
    EXPECT_EQ(same.status, 0) << same.errors;
    EXPECT_THAT(same.output, EndsWith("0 of 2 on both sides differ\n"));
    const ProgramRun other = runProgram({KVSTATION_PROGRAM, "diff", "--library", module, KV_MISBEHAVING_LIBRARY,
                                         KV_STATIONS "/windows-xp-*", "--json"});
    EXPECT_EQ(other.status, 1) << other.errors;
    EXPECT_THAT(other.output, HasSubstr("\"name\": \"windows-xp-console\",\n        \"left\": \"001AA03FC7E2\""));
}

TEST(Sets, AStationOverWhichALibraryCrashesCostsALine) {
    _putenv("KV_MISBEHAVIOUR=access");
    const ProgramRun told = runProgram({KVSTATION_PROGRAM, "diff", "--library", release("kvcstat64.dll"),
                                        KV_MISBEHAVING_LIBRARY, KV_STATIONS "/windows-xp-console"});
    _putenv("KV_MISBEHAVIOUR=");
    EXPECT_EQ(told.status, 2);
    EXPECT_THAT(told.errors,
                HasSubstr("kvstation: windows-xp-console: the process that was at it ended with status 3221225477\n"));
}

}  // namespace
}  // namespace kvstation
