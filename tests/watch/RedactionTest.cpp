#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <set>

#include "kvstation/Redaction.h"
#include "kvstation/StandIns.h"
#include "simwin/CodePage.h"
#include "simwin/RegistryWriter.h"
#include "simwin/StationWriter.h"
#include "tests/watch/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::StandIns;
using simwin::Station;
using testing::HasSubstr;
using testing::Not;

// GoogleTest's own expressions know no brackets on Windows.
auto matches(const char* expression) {
    return testing::Truly(
        [expression](const std::string& text) { return std::regex_match(text, std::regex(expression)); });
}

std::string lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return simwin::toLower(c); });
    return text;
}

// The registry's values as their bytes, which its file tells in digits, and without the NULs of wide text.
void appendValues(std::string& text, const simwin::RegistryTree& tree, simwin::KeyId key) {
    for (std::size_t i = 0; const simwin::RegistryValue* value = tree.value(key, i); ++i) {
        std::string bytes = value->bytes;
        text += bytes + "\n";
        std::erase(bytes, '\0');
        text += bytes + "\n";
    }
    for (std::size_t i = 0; const std::string* name = tree.subKeyName(key, i); ++i)
        appendValues(text, tree, *tree.find(key, *name));
}

// Everything that the two files hold, in lower case.
std::string contentOf(const Station& station) {
    std::string text = simwin::writeStation(station) + simwin::writeRegistry(station.registry);
    appendValues(text, station.registry, station.registry.root(simwin::Hive::LocalMachine));
    appendValues(text, station.registry, station.registry.root(simwin::Hive::CurrentUser));
    return lower(text);
}

// Part of the names of Windows' own accounts and services, which stay.
bool isWindowsWord(const std::string& word) {
    return word == "administrator" || word == "workstation";
}

TEST(StandIns, HaveTheFormOfWhatTheyStandFor) {
    StandIns standIns({});
    const std::string made = standIns.whole("Hinrichs, D2-x_Y");
    ASSERT_EQ(made.size(), 16U);
    EXPECT_NE(made, "Hinrichs, D2-x_Y");
    EXPECT_TRUE(std::isupper(static_cast<unsigned char>(made[0])));
    EXPECT_TRUE(std::islower(static_cast<unsigned char>(made[1])));
    EXPECT_EQ(made.substr(8, 2), ", ");
    EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(made[11])));
    EXPECT_EQ(made[12], '-');
    EXPECT_EQ(made[14], '_');
}

TEST(StandIns, AreTheSameForTheSameTextInEveryLetterCaseAndPlace) {
    StandIns standIns({});
    const std::string made = standIns.whole("dhinrichs");
    EXPECT_EQ(standIns.inside("C:\\Users\\dhinrichs\\x"), "C:\\Users\\" + made + "\\x");
    EXPECT_EQ(lower(standIns.inside("DHINRICHS")), made);
    EXPECT_EQ(standIns.inside("mydhinrichs2"), "my" + made + "2");
    EXPECT_EQ(lower(standIns.inside("DHINRI~1")), made.substr(0, 6) + "~1");
}

TEST(StandIns, LeaveWordsThatTheModuleAsksFor) {
    StandIns standIns({"citrix"});
    EXPECT_NE(standIns.whole("Citrix"), "Citrix");
    EXPECT_EQ(standIns.inside("Control\\Citrix"), "Control\\Citrix");
}

TEST(StandIns, OfAddressesKeepTheirDigitsAndTheirZeros) {
    StandIns standIns({});
    standIns.addAddress("10.0.0.0");
    standIns.addAddress("192.168.31.44");
    standIns.addAddress("255.255.0.0");
    EXPECT_THAT(standIns.address("10.0.0.0"), matches("[1-9]0\\.0\\.0\\.0"));
    EXPECT_NE(standIns.address("10.0.0.0"), "10.0.0.0");
    EXPECT_THAT(standIns.address("192.168.31.44"),
                matches("[12][0-9][1-9]\\.[12][0-9][1-9]\\.[1-9][1-9]\\.[1-9][1-9]"));
    EXPECT_EQ(standIns.address("255.255.0.0"), "255.255.0.0");
    EXPECT_EQ(standIns.inside("at 192.168.31.44;"), "at " + standIns.address("192.168.31.44") + ";");
}

TEST(StandIns, OfNumbersHaveAsManyDigits) {
    StandIns standIns({});
    for (const std::uint32_t number : {7U, 305419896U, 4294967295U}) {
        const std::uint32_t made = standIns.number(number);
        EXPECT_EQ(std::to_string(made).size(), std::to_string(number).size());
        EXPECT_NE(made, number);
        EXPECT_EQ(standIns.number(number), made);
    }
    EXPECT_EQ(standIns.number(0), 0U);
}

TEST(Redaction, LeavesNoNameAddressOrNumberOfASession) {
    Station station = kvstation::readStationFolder(stationFolder("metaframe-session"));
    const std::string before = contentOf(station);
    const std::string after = contentOf(kvstation::redacted(station));
    for (const char* secret : {"dhinrichs", "hinrichs", "detlef", "hanse3", "hansewerk", "pforte", "wi_8k3qxn0ar",
                               "172.20.3.17", "10.17.0.3", "192.168.31.44", "172.20.0.1", "00-02-a5-4f-18-c6",
                               "00-80-64-0c-77-e1", "1617493027", "2689147785"}) {
        EXPECT_THAT(before, HasSubstr(secret));
        EXPECT_THAT(after, Not(HasSubstr(secret)));
    }
    EXPECT_THAT(after, HasSubstr("citrix metaframe presentation server"));
}

TEST(Redaction, LeavesWindowsNameOfTheSessionAtTheMachine) {
    Station station;
    station.environment = {{"CLIENTNAME", "Console"}, {"USERDOMAIN", "Consoles"}};
    const Station made = kvstation::redacted(station);
    EXPECT_EQ(made.environment[0].value, "Console");
    EXPECT_NE(made.environment[1].value, "Consoles");
}

// The words and addresses of each station's own names, wherever they stand in the result.
class RedactedStation : public testing::TestWithParam<std::string> {};

TEST_P(RedactedStation, HoldsNoNameOfItsUserOrComputer) {
    Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    station.description.clear();  // a person's own words about the machine
    const std::string after = contentOf(kvstation::redacted(station));
    std::set<std::string> words;
    for (const simwin::OptionalText* text : {&station.computerName, &station.user.name, &station.user.displayName})
        if (*text)
            words.merge(kvstation::wordsOf(**text));
    for (const std::string& word : words)
        if (word.size() >= 5 && !isWindowsWord(word)) {
            EXPECT_THAT(after, Not(HasSubstr(simwin::toUtf8(word))));
        }
    for (const simwin::ArpEntry& entry : station.network.arp)
        EXPECT_THAT(after, Not(HasSubstr("\"" + entry.address + "\"")));
}

TEST_P(RedactedStation, IsCollectedByTheSameQuestions) {
    const auto questions = [](Station station) {
        simwin::Machine machine(std::move(station));
        kvstation::CallLog log;
        machine.observe(&log);
        kvstation::collectOn(machine);
        std::vector<std::string> names;
        for (const kvstation::StepCall& call : log.calls())
            names.push_back(std::string(call.step) + ": " + call.call.name + (call.call.succeeded ? "" : " failed"));
        return names;
    };
    const Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    EXPECT_EQ(questions(kvstation::redacted(station)), questions(station));
}

TEST_P(RedactedStation, IsTheSameEveryTime) {
    const Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    EXPECT_EQ(contentOf(kvstation::redacted(station)), contentOf(kvstation::redacted(station)));
}

INSTANTIATE_TEST_SUITE_P(Stations, RedactedStation, testing::ValuesIn(stationNames()), [](const auto& name) {
    std::string text = name.param;
    std::replace(text.begin(), text.end(), '-', '_');
    return text;
});

}  // namespace
}  // namespace kvtest
