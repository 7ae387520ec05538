// What a redaction tells that it left as it was.
#include "kvstation/redact/LeftTexts.h"

#include <gmock/gmock.h>

#include "kvstation/redact/Redaction.h"
#include "kvstation/redact/WindowsWords.h"
#include "simwin/station/StationReader.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::LeftText;
using kvstation::Redacting;
using kvstation::TextPlace;
using simwin::Station;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const std::vector<LeftText>& texts) {
    std::vector<std::string> lines;
    for (const LeftText& left : texts)
        lines.push_back(left.text + " | " + left.place + (left.others != 0 ? " +" + std::to_string(left.others) : ""));
    return lines;
}

std::vector<std::string> leftOf(const Station& station, Redacting extent = Redacting::Names) {
    return linesOf(kvstation::leftTexts(station, kvstation::redacted(station, extent)));
}

struct Word {
    const char* text;
    const char* word;
    bool isTelling;
};

constexpr Word kWords[] = {
    {"Laser Mustermann", "Mustermann", true},
    {"Laser Printer", "Printer", false},
    {"PRINTER", "PRINTER", false},
    {"DisplayName", "DisplayName", false},
    {"DisplayMustermann", "DisplayMustermann", true},
    {"SERVER01", "SERVER01", true},
    {"LPT1:", "LPT1", false},
    {"Ne07:", "Ne07", false},
    {"ab", "ab", false},
    {"Abe", "Abe", true},
    // numbers
    {"Raum 4711", "4711", false},
    {"Anlage 47110", "47110", true},
    {"8.0.6001.18702", "18702", false},
    {"18702.1", "18702", false},
    {"Haus 18702.", "18702", true},
    // what Windows makes
    {"{4d36e96e-e325-11ce-bfc1-08002be10318}", "08002be10318", false},
    {"4d36e96e-e325-11ce-bfc1-08002be10318", "08002be10318", true},
    {"{Hof}-e325", "e325", true},
    {"VEN_10EC&DEV_8168", "10EC", false},
    {"4&1f5d7e2a&0", "1f5d7e2a", false},
    {"Meier&Sohn", "Meier", true},
    // binary data
    {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF", false},
};

TEST(WindowsWords, TellNothingAndOthersMay) {
    for (const Word& row : kWords) {
        const kvstation::PageText text = kvstation::pageText(row.text);
        const kvstation::PageText word = kvstation::pageText(row.word);
        EXPECT_EQ(
            isTelling(text, kvstation::PageTextView(text).substr(text.find(word), word.size()), TextPlace::Anywhere),
            row.isTelling)
            << row.text << " " << row.word;
    }
    EXPECT_FALSE(kvstation::isTelling(U"22621", U"22621", TextPlace::Version));
}

TEST(LeftTexts, AreToldOnceWithTheirFirstPlace) {
    Station station;
    station.description = "printer of the warehouse";
    station.registry.set("HKEY_CURRENT_USER\\Software\\Printers",
                         simwin::textValue("Laser Mustermann", "winspool,Ne00:"));
    station.registry.set("HKEY_CURRENT_USER\\Software\\Printers", simwin::textValue("device", "laser mustermann"));
    station.registry.set("HKEY_CURRENT_USER\\Software\\Printers", simwin::textValue("", "LASER MUSTERMANN"));
    EXPECT_THAT(leftOf(station),
                ElementsAre("printer of the warehouse, redacted | station.json /description",
                            "Laser Mustermann | registry.reg [HKEY_CURRENT_USER\\Software\\Printers] +2"));
}

// One of each place that a station has, told in the order of the two files.
TEST(LeftTexts, AreFoundWhereverOneCanStand) {
    Station station = simwin::parseStation(R"({
        "collected": {"at": "2026-11-22T12:00:00Z", "library": "1.2.0.0", "tool": "1.2.0"},
        "environment": {"LAGERPFAD": "C:\\Kommission", "Path": {"hex": "01 5a 6f 72 6e"}},
        "drives": {"C": {"type": "fixed", "label": "Ladelisten", "fileSystem": "Eigenbau"}},
        "files": {"C:\\Tacho\\opera.exe": {"version": "8.100.29670.0"}, "C:\\Windows\\system32\\mstscax.dll": null,
                  "C:\\Opera\\opera.exe": {"resource": {"hex": "00 4d 00 6f 00 6c 00 65 00 00"}}},
        "session": {"clientAddress": {"text": "127.0.0.1 Rampe", "result": 0}},
        "profile": {"windows": {"device": "Farblaser,winspool,Ne00:"}, "Eigenes": {"Vorgabe": "1"}},
        "missing": ["wsock32.dll"], "fails": {"GetVersionExA": 120},
        "unknown": ["network.arp", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Hafen", "environment.KRAN", "network.hosts",
                    "user.directory", "vcdVersion"]
    })",
                                           "station.json");
    station.registry.create("HKEY_USERS\\.DEFAULT\\Werft");
    station.registry.set("HKEY_USERS", {"Data", 3, std::string("\1D\0o\0c\0k\0\0\0", 11)});
    station.registry.set("HKEY_USERS", {"Value", 3, std::string("\1\2Quai\0", 7)});
    station.registry.set("HKEY_USERS", simwin::multiTextValue("List", {"Windows", "Boje"}));
    station.registry.set("HKEY_USERS", simwin::dwordValue("Size", 0x656A6F42));
    station.registry.set("HKEY_USERS", simwin::textValue("CurrentBuildNumber", "22621"));
    EXPECT_THAT(
        leftOf(station),
        ElementsAre("LAGERPFAD | station.json /environment", "C:\\Kommission | station.json /environment/LAGERPFAD",
                    "Zorn | station.json /environment/Path", "Ladelisten | station.json /drives/C/label",
                    "Eigenbau | station.json /drives/C/fileSystem", "C:\\Tacho\\opera.exe | station.json /files",
                    "Mole | station.json /files/C:\\Opera\\opera.exe/resource",
                    "127.0.0.1 Rampe | station.json /session/clientAddress/text",
                    "Farblaser,winspool,Ne00: | station.json /profile/windows/device",
                    "Eigenes | station.json /profile", "Vorgabe | station.json /profile/Eigenes",
                    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Hafen | station.json /unknown/1",
                    "environment.KRAN | station.json /unknown/2", "Dock | registry.reg [HKEY_USERS] \"Data\"",
                    "Quai | registry.reg [HKEY_USERS] \"Value\"", "Boje | registry.reg [HKEY_USERS] \"List\"",
                    "Werft | registry.reg [HKEY_USERS\\.DEFAULT]"));
    EXPECT_THAT(leftOf(station, Redacting::Everything), IsEmpty());
}

// A variable may be called as what marks bytes, and an unknown member may be below any name.
TEST(LeftTexts, AreNoWordsOfTheForm) {
    const Station station = simwin::parseStation(
        R"({"environment": {"hex": "Kran"}, "unknown": ["network.hosts", "network.hosts.Werft", "profile.Mole.Dock", "net\u007fork"]})",
        "station.json");
    EXPECT_THAT(leftOf(station),
                ElementsAre("hex | station.json /environment", "Kran | station.json /environment/hex",
                            "network.hosts.Werft | station.json /unknown/1",
                            "profile.Mole.Dock | station.json /unknown/2", "net\x7Fork | station.json /unknown/3"));
    EXPECT_THAT(leftOf(station, Redacting::Everything), IsEmpty());
}

// The module shows what Netscape's keys are called as its versions, which a redaction leaves.
TEST(LeftTexts, AreNoVersionsThatKeysAreCalledBy) {
    Station station;
    station.registry.create("HKEY_LOCAL_MACHINE\\Software\\Netscape\\8.1 47110");
    station.registry.create("HKEY_LOCAL_MACHINE\\Software\\Windows\\8.1 47111");
    station.deniedKeys = {"HKEY_LOCAL_MACHINE\\Software\\Netscape\\8.1 47110",
                          "HKEY_LOCAL_MACHINE\\Software\\Windows\\8.1 47111"};
    EXPECT_THAT(leftOf(station),
                ElementsAre("HKEY_LOCAL_MACHINE\\Software\\Windows\\8.1 47111 | station.json /deniedKeys/1",
                            "8.1 47111 | registry.reg [HKEY_LOCAL_MACHINE\\Software\\Windows]"));
    EXPECT_THAT(leftOf(station, Redacting::Everything), IsEmpty());
}

// What a variable holds is told by its name, which may be another one now.
TEST(LeftTexts, AreNoVersionsInVariablesThatAreCalledOtherwiseNow) {
    Station station;
    station.environment = {{"WerftVersion", "8.1 47110"}};
    EXPECT_THAT(leftOf(station), ElementsAre("WerftVersion | station.json /environment"));
    EXPECT_THAT(leftOf(station, Redacting::Everything), IsEmpty());
}

TEST(LeftTexts, AreToldAsTheyAreNow) {
    Station station;
    station.user.name = "hinrichs";
    station.registry.set("HKEY_USERS", simwin::textValue("", "Lager von Hinrichs"));
    const std::vector<LeftText> texts = kvstation::leftTexts(station, kvstation::redacted(station));
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_THAT(texts[0].text, testing::StartsWith("Lager von "));
    EXPECT_THAT(texts[0].text, testing::Not(testing::HasSubstr("Hinrichs")));
}

class BareStation : public testing::TestWithParam<std::string> {};

TEST_P(BareStation, HasNothingLeftAndIsCollectedByTheSameQuestions) {
    const Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    const Station made = kvstation::redacted(station, Redacting::Everything);
    EXPECT_THAT(linesOf(kvstation::leftTexts(station, made)), IsEmpty());
    EXPECT_EQ(questionsOf(made), questionsOf(station));
}

INSTANTIATE_TEST_SUITE_P(Stations, BareStation, testing::ValuesIn(stationNames()), kvtest::NameOfStationTest());

}  // namespace
}  // namespace kvtest
