#include "kvstation/TraceView.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "kvstation/Steps.h"
#include "tests/watch/StationRuns.h"

namespace kvtest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Without the module's start and end: on Windows it starts before its imports can be watched.
std::vector<std::string> stepsOf(const kvstation::WatchedRun& run) {
    std::vector<std::string> steps;
    for (const kvstation::StepCall& call : run.calls)
        if ((steps.empty() || steps.back() != call.step) && !call.step.starts_with("module "))
            steps.emplace_back(call.step);
    return steps;
}

TEST(Steps, OfAStationComeInTheOrderOfTheCollection) {
    EXPECT_THAT(
        stepsOf(runOf("windows-xp-console")),
        ElementsAre("start", "user name", "Windows account", "display name", "IP configuration", "host name",
                    "DNS name", "MAC address", "masks and gateways", "workgroup", "client name", "providers",
                    "browsers", "network adapters", "mail clients", "ICA client", "RDP client", "domain",
                    "terminal-server product", "operating system", "processor", "processor power", "processor names",
                    "BIOS", "memory", "owner", "current user", "devices", "drives", "keyboard", "printers",
                    "default printer", "printer list", "monitor", "video adapter", "station type", "remote client",
                    "session mark", "VCD module", "publishing", "session id", "server sessions"));
}

TEST(Steps, OfASessionTellServerAndClientApart) {
    const std::vector<std::string> steps = stepsOf(runOf("metaframe-session"));
    const auto begin = std::ranges::find(steps, "IP configuration");
    ASSERT_GE(steps.end() - begin, 7);
    EXPECT_THAT(std::vector<std::string>(begin, begin + 7),
                ElementsAre("IP configuration", "server's address", "server's name", "client's address",
                            "session number", "server's MAC address", "DNS name"));
}

TEST(Steps, AreTheSameOnEveryStationButForTheAddresses) {
    for (const std::string& name : stationNames()) {
        const std::vector<std::string> steps = stepsOf(runOf(name));
        for (const char* step : {"user name", "client name", "providers", "browsers", "network adapters", "domain",
                                 "operating system", "BIOS", "memory", "devices", "drives", "keyboard", "printers",
                                 "monitor", "video adapter", "station type", "VCD module", "publishing", "session id"})
            EXPECT_EQ(std::ranges::count(steps, step), 1) << name << ": " << step;
    }
}

TEST(Steps, TableNamesNoStepThatNothingLeadsTo) {
    for (const kvstation::StepMark& mark : kvstation::stepMarks())
        EXPECT_TRUE(
            mark.after.empty() ||
            std::ranges::any_of(kvstation::stepMarks(), [&](const auto& other) { return other.step == mark.after; }))
            << mark.step;
}

TEST(Trace, TellsQuestionsAnswersAndTraceLinesUnderTheirStep) {
    const std::string text = kvstation::traceView(runOf("metaframe-session").calls, {});
    EXPECT_THAT(text, HasSubstr("user name\n"
                                "  KVGetEnv(\"KVUser\", 512) = 0\n"
                                "  | KVUser=''\n"
                                "  KVGetEnv(\"KVUserType\", 512) = 1, \"1net\"\n"));
    EXPECT_THAT(text, HasSubstr("server's MAC address\n"
                                "  SendARP(172.20.3.17, 0) = 0, 00 02 a5 4f 18 c6, 6\n"));
    EXPECT_THAT(text, HasSubstr("gethostbyname(\"ctx-hanse3\") = \"ctx-hanse3.hansewerk.example\", 172.20.3.17, "
                                "10.17.0.3\n"));
    EXPECT_THAT(text, HasSubstr("NetWkstaGetInfo(null, 101) = 0, \"HANSEWERK\"\n"));
}

TEST(Trace, LeavesOutTheModulesOwnWorkUnlessAllIsWanted) {
    const kvstation::WatchedRun run = runOf("windows-xp-console");
    EXPECT_THAT(kvstation::traceView(run.calls, {}), Not(HasSubstr("RegCloseKey")));
    EXPECT_THAT(kvstation::traceView(run.calls, {.all = true}), HasSubstr("RegCloseKey"));
}

TEST(Trace, IsTheSameInEveryRun) {
    EXPECT_EQ(kvstation::traceView(runOf("windows-xp-console").calls, {.all = true}),
              kvstation::traceView(runOf("windows-xp-console").calls, {.all = true}));
}

}  // namespace
}  // namespace kvtest
