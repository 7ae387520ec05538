// A collection that a companion ends: the tool's one line names the last question.
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
    words.insert(words.end(), {"--timeout", "2"});
    return kvstation::runProgram(words);
}

constexpr const char* kCrash =
    "kvstation: the collection crashed at its last question KVGetDomainName() for the user's domain (exception "
    "0xC0000005 at "
    "kvnetapi64.dll+0x";
constexpr const char* kExit =
    "kvstation: the library ended the process at its last question KVGetDomainName() for the user's domain (exit at "
    "kvnetapi64.dll+0x";

ProgramRun showWith(const std::string& ending) {
    return runWith(ending, {"show"});
}

void expectOneLine(const ProgramRun& ended, const testing::Matcher<const std::string&>& line) {
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_THAT(ended.errors, line);
    EXPECT_EQ(std::ranges::count(ended.errors, '\n'), 1);
}

TEST(Ending, OfAHangNamesTheLastQuestionInOneLine) {
    expectOneLine(showWith("hang"),
                  "kvstation: the collection hung at its last question KVGetDomainName() for the user's domain: ended "
                  "after 2 seconds; "
                  "--timeout SECONDS gives it longer\n");
}

TEST(Ending, OfACrashNamesTheLastQuestionInOneLine) {
    expectOneLine(showWith("crash"), StartsWith(kCrash));
}

TEST(Ending, OfAProcessThatTheLibraryEndsNamesTheLastQuestionInOneLine) {
    expectOneLine(showWith("exit"), StartsWith(kExit));
}

// Nothing of their result is given out, and no folder is made.
TEST(Ending, IsToldByEveryVerbThatCollectsHere) {
    const fs::path folder = fs::temp_directory_path() / ("kvstation-ending-" + std::to_string(GetCurrentProcessId()));
    const std::vector<std::vector<std::string>> verbs = {
        {"trace"}, {"explain", "szStation"}, {"capture", folder.string()}};
    for (const std::vector<std::string>& words : verbs) {
        SCOPED_TRACE(words.front());
        expectOneLine(runWith("crash", words), StartsWith(kCrash));
        expectOneLine(runWith("exit", words), StartsWith(kExit));
        expectOneLine(runWith("hang", words),
                      StartsWith("kvstation: the collection hung at its last question "
                                 "KVGetDomainName() for the user's domain: ended after 2 seconds"));
    }
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
