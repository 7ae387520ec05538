// A collection that a companion ends: the tool's one line names the step and the call.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "framework/Windows.h"
#include "tests/kvstation/RunningProgram.h"

namespace kvtest {
namespace {

namespace fs = std::filesystem;
using kvstation::ProgramRun;
using testing::StartsWith;

ProgramRun runWith(const std::string& ending, std::vector<std::string> words) {
    _putenv_s("KV_TEST_ENDING", ending.c_str());
    words.insert(words.begin(), KV_ENDING_FOLDER "\\kvstation.exe");
    words.insert(words.end(), {"--timeout", "5"});
    return kvstation::runProgram(words);
}

ProgramRun showWith(const std::string& ending) {
    return runWith(ending, {"show"});
}

void expectOneLine(const ProgramRun& ended, const testing::Matcher<const std::string&>& line) {
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_THAT(ended.errors, line);
    EXPECT_EQ(std::ranges::count(ended.errors, '\n'), 1);
}

TEST(Ending, OfAHangNamesStepAndCallInOneLine) {
    expectOneLine(showWith("hang"),
                  "kvstation: the collection hung while collecting: domain, last call KVGetDomainName(): ended after 5 "
                  "seconds; --timeout SECONDS gives it longer\n");
}

TEST(Ending, OfACrashNamesStepAndCallInOneLine) {
    expectOneLine(showWith("crash"), StartsWith("kvstation: the collection crashed while collecting: domain, last call "
                                                "KVGetDomainName() (exception 0xC0000005 at 0x"));
}

TEST(Ending, OfAProcessThatTheLibraryEndsNamesStepAndCallInOneLine) {
    expectOneLine(showWith("exit"),
                  "kvstation: the collection ended by itself while collecting: domain, last call KVGetDomainName() "
                  "(exit status 0)\n");
}

// The verbs that run in the child as a whole: nothing of their result is given out, and no folder is made.
TEST(Ending, IsToldByEveryVerbThatCollectsHere) {
    const fs::path folder = fs::temp_directory_path() / ("kvstation-ending-" + std::to_string(GetCurrentProcessId()));
    const std::vector<std::vector<std::string>> verbs = {
        {"trace"}, {"explain", "szStation"}, {"capture", folder.string()}};
    for (const std::vector<std::string>& words : verbs) {
        SCOPED_TRACE(words.front());
        expectOneLine(runWith("crash", words),
                      StartsWith("kvstation: the collection crashed while collecting: domain, last call "
                                 "KVGetDomainName() (exception 0xC0000005 at 0x"));
        expectOneLine(runWith("exit", words),
                      "kvstation: the collection ended by itself while collecting: domain, last call "
                      "KVGetDomainName() (exit status 0)\n");
    }
    expectOneLine(runWith("hang", {"capture", folder.string()}),
                  StartsWith("kvstation: the collection hung while collecting: domain, last call KVGetDomainName(): "
                             "ended after 5 seconds"));
    EXPECT_FALSE(fs::exists(folder));
}

TEST(Ending, IsNoneWhereTheLibraryIsGood) {
    for (const char* verb : {"show", "trace"}) {
        const ProgramRun good = runWith("", {verb});
        EXPECT_EQ(good.status, 0);
        EXPECT_NE(good.output, "");
        EXPECT_EQ(good.errors, "");
    }
}

}  // namespace
}  // namespace kvtest
