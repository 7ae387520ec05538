// Work in several processes, which are this program again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/platform/Progress.h"
#include "kvstation/sets/Jobs.h"

namespace kvstation {
namespace {

// What a source's name asks for.
std::string act(const Source& source) {
    if (source.name == "dies")
        std::_Exit(7);
    if (source.name == "fails")
        throw Failure(source.path + " is bad");
    if (source.name == "prints")
        std::puts("a library's own words");
    return source.name + std::string(source.name == "long" ? 300000 : 0, '+') + "=" + source.path;
}

constexpr const char* kStillborn = "KVSTATION_TEST_STILLBORN";

// Before the tests' own output begins.
[[maybe_unused]] const int kServed =
    isPart() ? (std::_Exit(std::getenv(kStillborn) != nullptr ? 9 : servePart(act)), 0) : 0;

struct Taken {
    Tally tally;
    std::vector<std::string> results;
    std::string errors;
};

Taken perform(const std::vector<std::string>& names, unsigned jobs) {
    std::vector<Source> sources;
    for (const std::string& name : names)
        sources.push_back({name, "path/" + std::to_string(sources.size()), name == "wrong" ? "wrong as it is" : ""});
    Taken taken;
    testing::internal::CaptureStderr();
    taken.tally =
        performAll(sources,
                   {.what = "testing",
                    .perform = act,
                    .take = [&](const Source&, std::string_view result) { taken.results.emplace_back(result); }},
                   {.jobs = jobs});
    taken.errors = testing::internal::GetCapturedStderr();
    return taken;
}

TEST(Jobs, ResultsComeInTheOrderOfTheSourcesWhateverTheNumberOfProcesses) {
    std::vector<std::string> names;
    std::vector<std::string> expected;
    for (int i = 0; i < 1000; ++i) {
        names.push_back("n" + std::to_string(i));
        expected.push_back(names.back() + "=path/" + std::to_string(i));
    }
    for (const unsigned jobs : {1u, 2u, 5u}) {
        const Taken taken = perform(names, jobs);
        EXPECT_EQ(taken.results, expected) << jobs;
        EXPECT_EQ(taken.tally.done, 1000u);
        EXPECT_EQ(taken.tally.failed, 0u);
        EXPECT_EQ(taken.errors, "");
    }
}

TEST(Jobs, ThatOfOneProcessMayBeLongerThanAPipe) {
    const Taken taken = perform({"long", "short", "long", "long"}, 2);
    ASSERT_EQ(taken.results.size(), 4u);
    EXPECT_EQ(taken.results[0], "long" + std::string(300000, '+') + "=path/0");
    EXPECT_EQ(taken.results[1], "short=path/1");
    EXPECT_EQ(taken.results[3], "long" + std::string(300000, '+') + "=path/3");
}

TEST(Jobs, EachFailureCostsOneLineAndTheOthersGoOn) {
    const Taken taken = perform({"a", "fails", "wrong", "b"}, 2);
    EXPECT_THAT(taken.results, testing::ElementsAre("a=path/0", "b=path/3"));
    EXPECT_EQ(taken.errors, "kvstation: path/1 is bad\nkvstation: wrong as it is\n");
    EXPECT_EQ(taken.tally.done, 4u);
    EXPECT_EQ(taken.tally.failed, 2u);
}

TEST(Jobs, AProcessThatEndsCostsItsSourceAloneAndIsReplaced) {
    const Taken taken = perform({"a", "b", "dies", "c", "d", "e"}, 2);
    EXPECT_THAT(taken.results, testing::ElementsAre("a=path/0", "b=path/1", "c=path/3", "d=path/4", "e=path/5"));
    EXPECT_EQ(taken.errors, "kvstation: path/2: the process that was at it ended with status 7\n");
    EXPECT_EQ(taken.tally.failed, 1u);
}

TEST(Jobs, EverySourceMayEndItsProcess) {
    const Taken taken = perform({"dies", "dies", "dies", "dies", "a"}, 1);
    EXPECT_THAT(taken.results, testing::ElementsAre("a=path/4"));
    EXPECT_EQ(taken.tally.failed, 4u);
}

TEST(Jobs, ProcessesThatNeverGetReadyEndTheWork) {
    setenv(kStillborn, "1", 1);
    EXPECT_THROW(perform({"a", "b"}, 1), Failure);
    unsetenv(kStillborn);
    testing::internal::GetCapturedStderr();
}

TEST(Jobs, WhatALibraryPrintsIsNoResult) {
    EXPECT_THAT(perform({"prints", "a"}, 1).results, testing::ElementsAre("prints=path/0", "a=path/1"));
}

TEST(Progress, TellsWhatIsDoneWhatWentWrongAndTheTimeLeft) {
    EXPECT_EQ(progressText(250, 1000, 3, 4), "[#####...............] 250 of 1000, 3 errors, 12 s left");
    EXPECT_EQ(progressText(1, 1000, 1, 1), "[....................] 1 of 1000, 1 error, 999 s left");
    EXPECT_EQ(progressText(7, 7, 0, 2.5), "[####################] 7 of 7, 0 s left");
}

}  // namespace
}  // namespace kvstation
