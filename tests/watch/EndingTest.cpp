// A collection that hangs or crashes in a companion: the tool's one line names the step and the call.
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>

namespace kvtest {
namespace {

struct Outcome {
    std::string output;  // of both
    int status = 0;
};

Outcome showWith(const std::string& ending) {
    _putenv_s("KV_TEST_ENDING", ending.c_str());
    Outcome outcome;
    FILE* pipe = _popen("\"" KV_ENDING_FOLDER "\\kvstation.exe\" show --timeout 5 2>&1", "r");
    char block[512];
    for (std::size_t read = 0; (read = std::fread(block, 1, sizeof block, pipe)) != 0;)
        outcome.output.append(block, read);
    outcome.status = _pclose(pipe);
    return outcome;
}

TEST(Ending, OfAHangNamesStepAndCall) {
    const Outcome outcome = showWith("hang");
    EXPECT_THAT(outcome.output, testing::StartsWith("kvstation: the collection hung while collecting: domain, "
                                                    "last call KVGetDomainName(): ended after 5 seconds"));
    EXPECT_EQ(outcome.status, 1);
}

TEST(Ending, OfACrashNamesStepAndCall) {
    const Outcome outcome = showWith("crash");
    EXPECT_THAT(outcome.output, testing::StartsWith("kvstation: the collection crashed while collecting: domain, "
                                                    "last call KVGetDomainName() (exception 0xC0000005"));
    EXPECT_EQ(outcome.status, 1);
}

TEST(Ending, IsNoneWhereTheLibraryIsGood) {
    const Outcome outcome = showWith("");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
}

}  // namespace
}  // namespace kvtest
