// A collection that a companion ends: the tool's one line names the step and the call.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "tests/kvstation/RunningProgram.h"

namespace kvtest {
namespace {

using kvstation::ProgramRun;
using testing::StartsWith;

ProgramRun showWith(const std::string& ending) {
    _putenv_s("KV_TEST_ENDING", ending.c_str());
    return kvstation::runProgram({KV_ENDING_FOLDER "\\kvstation.exe", "show", "--timeout", "5"});
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

TEST(Ending, IsNoneWhereTheLibraryIsGood) {
    const ProgramRun good = showWith("");
    EXPECT_EQ(good.status, 0);
    EXPECT_EQ(good.errors, "");
}

}  // namespace
}  // namespace kvtest
