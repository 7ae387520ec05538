#include "kvstation/report/TraceView.h"

#include <gmock/gmock.h>

#include <map>
#include <nlohmann/json.hpp>

#include "kvstation/capture/TracedStation.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::TracedCall;
using testing::HasSubstr;
using testing::Not;

std::vector<TracedCall> newTraceOf(const std::string& name) {
    const kvstation::TracedStation traced = kvstation::traceStation(stationNamed(name));
    EXPECT_EQ(traced.calls.size(), traced.fields.size());
    std::vector<TracedCall> calls;
    for (std::size_t i = 0; i < traced.calls.size(); ++i)
        calls.push_back({traced.calls[i].call, traced.fields[i]});
    return calls;
}

const std::vector<TracedCall>& traceOf(const std::string& name) {
    static std::map<std::string, std::vector<TracedCall>> made;
    const auto known = made.find(name);
    return known != made.end() ? known->second : made.emplace(name, newTraceOf(name)).first->second;
}

TEST(Trace, TellsQuestionsAnswersAndTraceLinesWithTheFieldsThatHangOnThem) {
    const std::string text = kvstation::traceView(traceOf("metaframe-session"), {});
    EXPECT_THAT(text, HasSubstr("  | KVUser=''\n"
                                "KVGetEnv(\"KVUserType\", 512) = \"1net\"  -> szUserName, szCurrentUser, KVUser\n"));
    EXPECT_THAT(text, HasSubstr("KVGetEnv(\"KVUSERNAMETYPE\", 512) = \"NameUserPrincipal\"  -> szWinUser\n"));
    EXPECT_THAT(text, HasSubstr("SendARP(172.20.3.17, 0) = 00-02-a5-4f-18-c6  -> szServerMACAddress\n"));
    EXPECT_THAT(text, HasSubstr("gethostbyname(\"ctx-hanse3\") = \"ctx-hanse3.hansewerk.example\", 172.20.3.17, "
                                "10.17.0.3  -> szServerIPAddress, szServerMACAddress\n"));
    EXPECT_THAT(text, HasSubstr("NetWkstaGetInfo(null, 101) = \"HANSEWERK\"  -> szWorkgroup\n"));
}

TEST(Trace, TellsTextsInTheCodePageOfTheStation) {
    const std::string polish = kvstation::traceView(traceOf("windows-2000-polish"), {});
    EXPECT_THAT(polish, HasSubstr("\u017Bubr.HTML"));
    EXPECT_THAT(polish, Not(HasSubstr("\\xaf")));
    simwin::useCodePage(simwin::kDefaultCodePage);
}

TEST(Trace, TellsTheErrorOfACallByItsCodeAndName) {
    EXPECT_THAT(kvstation::traceView(traceOf("windows-2003-terminal-session"), {}),
                HasSubstr("SendARP(255.255.255.255, 0) = failed, error 67 ERROR_BAD_NET_NAME  -> "));
}

// The second question for a value does not ask for its type again.
TEST(Trace, TellsAListAsTextsAndNotAsBytes) {
    const std::string text = kvstation::traceView(traceOf("metaframe-session"), {});
    EXPECT_THAT(text, Not(HasSubstr("= 5c 44 65 76")));
}

TEST(Trace, LeavesOutTheModulesOwnWorkUnlessAllIsWanted) {
    const std::vector<TracedCall> calls = traceOf("windows-xp-console");
    EXPECT_THAT(kvstation::traceView(calls, {}), Not(HasSubstr("RegCloseKey")));
    EXPECT_THAT(kvstation::traceView(calls, {.all = true}), HasSubstr("RegCloseKey"));
}

TEST(Trace, OfAFieldHasNoMoreThanTheQuestionsThatItHangsOn) {
    const std::string text = kvstation::traceView(traceOf("metaframe-session"), {.field = "szServerMACAddress"});
    EXPECT_THAT(text, HasSubstr("SendARP(172.20.3.17, 0)"));
    EXPECT_THAT(text, Not(HasSubstr("KVUser")));
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1)
        EXPECT_THAT(text.substr(begin, text.find('\n', begin) - begin), HasSubstr("szServerMACAddress"));
}

TEST(Trace, IsAJsonListOfCallsAndLines) {
    const auto list = nlohmann::ordered_json::parse(kvstation::traceJson(traceOf("windows-2003-terminal-session"), {}));
    EXPECT_EQ(list[0], nlohmann::ordered_json::parse(R"({"trace": "Reading station data.", "level": 2})"));
    const auto arp = std::ranges::find_if(list, [](const auto& one) {
        return one.contains("call") && one["call"] == "SendARP" && one["answer"].is_null();
    });
    ASSERT_NE(arp, list.end());
    EXPECT_EQ((*arp)["error"]["code"], 67);
    EXPECT_EQ((*arp)["error"]["name"], "ERROR_BAD_NET_NAME");
    EXPECT_TRUE((*arp)["answer"].is_null());
    EXPECT_THAT((*arp)["fields"], testing::Contains("szMACAddress"));
}

TEST(Trace, IsTheSameInEveryRun) {
    EXPECT_EQ(kvstation::traceView(newTraceOf("nt4-alpha-workstation"), {.all = true}),
              kvstation::traceView(newTraceOf("nt4-alpha-workstation"), {.all = true}));
}

}  // namespace
}  // namespace kvtest
