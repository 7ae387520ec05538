#include "simwin/station/StationMembers.h"

#include <gmock/gmock.h>

#include "simwin/station/StationPage.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "simwin/text/ReadFile.h"
#include "tests/simwin/station/MemberPlace.h"

namespace {

using namespace simwin;
using Json = nlohmann::json;  // whose members have no order

const NamesInPaths kNames = {{"ADDRESS", "10.0.0.5"}, {"CALL", "GetVersionExA"}, {"ENTRY", "device"},    {"N", "0"},
                             {"NAME", "pc-lab3"},     {"PATH", "C:\\a.exe"},     {"SECTION", "windows"}, {"X", "C"}};

// Each member takes at least one of them that is not its default.
const Json kValues = Json::parse(R"([
  77, true, false, 1250, "Another7", "1.2.0", "2026-11-22T12:00:00Z", "10.200.2650.0", "00-0C-29-AB-CD-EF",
  {"hex": "41 42"}, [77], ["wsock32.dll"], ["10.0.0.5"], ["Another7"]])");

// The members as they are written once they were read; null when they are refused.
Json writtenAgain(const Json& members) {
    Station station;
    try {
        describe(station, nlohmann::ordered_json::parse(members.dump()), "station.json");
    } catch (const ReadError&) {
        return {};
    }
    return Json::parse(stationJson(station).dump());
}

bool comesBack(const Json& before, const Json::json_pointer& place, const Json& value) {
    Json usual = writtenAgain(before);
    Json members = before;
    members[place] = value;
    Json written = writtenAgain(members);
    if (!written.contains(place) || written[place] != value || (usual.contains(place) && usual[place] == value))
        return false;
    // All others are as they were.
    written[place] = nullptr;
    usual[place] = nullptr;
    return written == usual;
}

void expectToComeBack(Json members, const std::string& path) {
    const Json::json_pointer place = placeOf(path, kNames);
    if (Json& parent = members[place.parent_pointer()]; parent.is_null())
        parent = Json::object();
    EXPECT_TRUE(std::ranges::any_of(kValues, [&](const Json& value) { return comesBack(members, place, value); }))
        << path << " comes back with none of the values";
}

bool hasMembers(const MemberTexts& all, const MemberText& member) {
    return std::ranges::any_of(all, [&](const MemberText& one) { return one.path.starts_with(member.path + "."); });
}

TEST(StationMembers, AreWrittenAsTheyWereRead) {
    const MemberTexts all = stationMemberTexts();
    for (const MemberText& member : all)
        if (!hasMembers(all, member))  // free bytes are told beside a total alone
            expectToComeBack(Json::parse(R"({"drives": {"C": {"total": 7}}})"), member.path);
}

TEST(StationMembers, PartsOfACompanionsTextAreWrittenAsTheyWereRead) {
    for (const MemberText& member : companionTextMembers())
        expectToComeBack(Json::parse(R"({"session": {"clientName": {"text": "", "result": 0}}})"),
                         "session.clientName." + member.path);
}

TEST(StationMembers, HaveAValueAndAMeaningThatFitATable) {
    for (const MemberTexts& all : {stationMemberTexts(), companionTextMembers()})
        for (const MemberText& member : all) {
            EXPECT_THAT(member.value, testing::Not(testing::AnyOf(testing::IsEmpty(), testing::HasSubstr("|"))))
                << member.path;
            EXPECT_THAT(member.meaning, testing::Not(testing::AnyOf(testing::IsEmpty(), testing::HasSubstr("|"))))
                << member.path;
        }
}

TEST(StationMembers, AreThoseOfTheDocument) {
    EXPECT_THAT(readFile(KV_STATIONS_DOCUMENT, KV_STATIONS_DOCUMENT, 1024 * 1024),
                testing::HasSubstr("<!-- made by ./kv docs -->\n" + stationMembersPage() + "<!-- end -->\n"))
        << "./kv docs makes it anew";
}

std::vector<std::string> textsThat(Tells what, Station& station) {
    std::vector<std::string> texts;
    eachToldText(station, [&](const std::string& text, Tells tells) {
        if (tells == what)
            texts.push_back(text);
    });
    return texts;
}

TEST(StationMembers, SayWhichTextsTellWhoseTheStationIs) {
    Station station = parseStation(R"json({
        "description": "of Jo", "version": {"servicePack": "Service Pack 3"}, "computerName": "PC",
        "user": {"name": "jo", "principal": "jo@lab"}, "drives": {"C": {"label": "JO", "fileSystem": "NTFS"}},
        "network": {"hostName": "pc", "domain": "LAB"}, "citrix": {"clientName": "THIN8"},
        "session": {"clientName": "THIN7", "clientAddress": {"text": "10.0.0.5", "result": 0}}})json",
                                   "station.json");
    EXPECT_THAT(textsThat(Tells::Name, station),
                testing::ElementsAre("PC", "jo", "jo@lab", "pc", "LAB", "THIN7", "THIN8"));
    EXPECT_THAT(textsThat(Tells::Words, station), testing::ElementsAre("of Jo", "JO", "NTFS"));
    EXPECT_THAT(textsThat(Tells::Version, station), testing::ElementsAre("Service Pack 3"));
    EXPECT_THAT(textsThat(Tells::Addresses, station), testing::ElementsAre("10.0.0.5"));
}

}  // namespace
