#include "simwin/station/StationMembers.h"

#include <gmock/gmock.h>

#include <set>

#include "simwin/station/NetworkForms.h"
#include "simwin/station/StationPage.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "simwin/station/ValueForms.h"
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
    eachToldText(station, [&](const std::string& text, const Told& told) {
        if (told.tells == what)
            texts.push_back(text);
    });
    return texts;
}

TEST(StationMembers, SayWhichTextsTellWhoseTheStationIs) {
    Station station = parseStation(R"json({
        "description": "of Jo", "version": {"servicePack": "Service Pack 3"}, "computerName": "PC",
        "environment": {"KVUser": "jo"},
        "user": {"name": "jo", "principal": "jo@lab"}, "drives": {"C": {"label": "JO", "fileSystem": "NTFS"}},
        "files": {"C:\\jo.exe": {"resource": {"hex": "6a 6f"}}},
        "network": {"hostName": "pc", "domain": "LAB", "hosts": {"h": {"name": "h.lab", "addresses": ["65.66.67.68"]}},
            "addresses": {"10.0.0.6": "pc.lab"}, "arp": {"10.0.0.7": "61-62-63"}, "netbios": [{"lana": 0, "address":
            "61-62-63-64-65-66"}]},
        "profile": {"section": {"entry": "value"}}, "deniedKeys": ["HKEY_USERS\\jo"], "unknown": ["files", "user"],
        "missing": ["wsock32.dll"], "fails": {"GetVersionExA": 120}, "collected": {"library": "1.2.0.0"},
        "citrix": {"clientName": "THIN8"},
        "session": {"clientName": "THIN7", "clientAddress": {"text": "10.0.0.5", "result": 0}}})json",
                                   "station.json");
    EXPECT_THAT(textsThat(Tells::Name, station),
                testing::ElementsAre("PC", "jo", "jo@lab", "pc", "LAB", "THIN7", "THIN8"));
    EXPECT_THAT(textsThat(Tells::Utf8Words, station), testing::ElementsAre("of Jo"));
    EXPECT_THAT(textsThat(Tells::Words, station), testing::ElementsAre("JO", "NTFS"));
    EXPECT_THAT(textsThat(Tells::Version, station), testing::ElementsAre("Service Pack 3"));
    EXPECT_THAT(textsThat(Tells::Addresses, station), testing::ElementsAre("10.0.0.5"));
    EXPECT_THAT(textsThat(Tells::Host, station), testing::ElementsAre("h.lab", "h", "pc.lab"));
    EXPECT_THAT(textsThat(Tells::AddressBytes, station), testing::ElementsAre("ABCD"));
    EXPECT_THAT(textsThat(Tells::Address, station), testing::ElementsAre("10.0.0.6", "10.0.0.7"));
    EXPECT_THAT(textsThat(Tells::PhysicalBytes, station), testing::ElementsAre("abc", "abcdef"));
    EXPECT_THAT(textsThat(Tells::Setting, station), testing::ElementsAre("jo"));
    EXPECT_THAT(textsThat(Tells::OwnWords, station), testing::ElementsAre("C:\\jo.exe", "value"));
    EXPECT_THAT(textsThat(Tells::Key, station), testing::ElementsAre("HKEY_USERS\\jo"));
    EXPECT_THAT(textsThat(Tells::Unknown, station), testing::ElementsAre("files", "user"));
    EXPECT_THAT(textsThat(Tells::VersionBytes, station), testing::ElementsAre("jo"));
    EXPECT_THAT(textsThat(Tells::OwnName, station), testing::ElementsAre("KVUser", "section", "entry"));
    EXPECT_THAT(textsThat(Tells::Nothing, station), testing::IsEmpty());
}

TEST(StationMembers, TellUnderWhichNameATextStands) {
    Station station = parseStation(R"({"description": "x", "computerName": "PC", "environment": {"KVUser": "jo"},
                                       "profile": {"section": {"entry": "value"}}})",
                                   "station.json");
    std::vector<std::string> names;
    eachToldText(station, [&](const std::string& text, const Told& told) {
        names.push_back(text + " " + std::string(told.name));
    });
    EXPECT_THAT(names, testing::ElementsAre("x ", "PC ", "jo KVUser", "KVUser ", "value entry", "section ", "entry "));
}

// The texts that stand in JSON, with what toldAt() knows of them.
void collectTexts(const Json& json, MemberPath path, std::vector<std::pair<std::string, Tells>>& texts) {
    const ToldAt told = toldAt(path);
    if (json.is_string())
        texts.emplace_back(json.get<std::string>(), told.text);
    if (!json.is_structured())
        return;
    path.emplace_back();
    for (const auto& [name, value] : json.items()) {
        if (json.is_object() && told.names != Tells::Nothing)
            texts.emplace_back(name, told.names);
        path.back() = name;
        collectTexts(value, path, texts);
    }
}

// Whatever the reader takes for a text of somebody's own is visited as what its place tells.
TEST(StationMembers, AreKnownByTheirPlaceAsWhatTheyAreVisitedAs) {
    const NamesInPaths names = {
        {"ADDRESS", "10.0.0.5"}, {"CALL", "GetVersionExA"}, {"ENTRY", "mine.entry"},  {"N", "0"},
        {"NAME", "mine.name"},   {"PATH", "C:\\mine.exe"},  {"SECTION", "mine.part"}, {"X", "C"}};
    const Json values = {"mine", Json::object(), Json::array({"mine"}), {{"text", "mine"}, {"result", 0}}};
    const auto isMine = [](const std::string& text) { return text.find("mine") != std::string::npos; };
    std::set<Tells> known;
    for (const MemberText& member : stationMemberTexts())
        for (const Json& value : values) {
            Json members;
            members[placeOf(member.path, names)] = value;
            const Json written = writtenAgain(members);
            if (written.is_null())
                continue;
            Station station;
            describe(station, nlohmann::ordered_json::parse(members.dump()), "station.json");
            std::vector<std::pair<std::string, Tells>> visited;
            eachToldText(station,
                         [&](const std::string& text, const Told& told) { visited.emplace_back(text, told.tells); });
            std::vector<std::pair<std::string, Tells>> texts;
            collectTexts(written, {}, texts);
            for (const auto& text : texts)
                if (isMine(text.first)) {
                    EXPECT_THAT(visited, testing::Contains(text)) << member.path;
                    known.insert(text.second);
                }
        }
    // All but addresses and bytes.
    EXPECT_THAT(known, testing::ElementsAre(Tells::Name, Tells::Host, Tells::Utf8Words, Tells::Words, Tells::Addresses,
                                            Tells::Version, Tells::Setting, Tells::OwnWords, Tells::Key, Tells::Unknown,
                                            Tells::OwnName));
}

TEST(StationMembers, HaveNamesOfTheStationsOwnInPathsWithDots) {
    for (const std::string own : {"environment.", "files.", "profile.", "network.hosts.", "network.arp."})
        EXPECT_EQ(ownNameIn(own + "C:\\a.exe"), own.size()) << own;
    for (const std::string_view form : {"", "environment", "environment.", "network.domain", "user.name", "drives.C",
                                        "drives.C.label", "network.netbios.0.lana", "fails", "fails.GetVersion"})
        EXPECT_EQ(ownNameIn(form), form.size()) << form;
    for (const std::string_view none :
         {"jo", "user.jo", "drives.Disk", "drives.1", "network.netbios.jo", "fails.jo", "user.name.jo", "userx"})
        EXPECT_EQ(ownNameIn(none), 0U) << none;
}

// Rows that do not compile.
template <auto Field, class Form>
concept SaysNothing = requires {
    member<Field, Form>("name", "meaning");
};
template <class Form, class Value>
concept VisitsNothing = requires(Value& value, const Told& told, const TextVisitor& visit) {
    Form::eachText(value, told, visit);
};
static_assert(SaysNothing<&Keyboard::type, FormOf<int>>);
static_assert(!SaysNothing<&User::name, FormOf<OptionalText>>);
static_assert(!SaysNothing<&Station::unknown, ListOf<TextForm>>);
static_assert(!SaysNothing<&Station::environment, Named<&Variable::name, VariableName, Only<&Variable::value>>>);
static_assert(!SaysNothing<&Station::profile, ProfileForm>);
static_assert(!SaysNothing<&File::resource, Maybe<BytesForm>>);
static_assert(!SaysNothing<&Lana::address, Maybe<PhysicalAddressForm<6, 6>>>);
static_assert(VisitsNothing<OneValue, int> && !VisitsNothing<OneValue, std::string> &&
              !VisitsNothing<OneValue, std::vector<std::string>>);

}  // namespace
