#include "kvstation/report/JsonView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "kvstation/platform/Errors.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/Utf8.h"
#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

using OrderedJson = nlohmann::ordered_json;

std::string jsonError(std::string_view json) {
    try {
        recordFromJson(json, "a.json");
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "no error";
}

// The sample with one thing changed.
template <class Change>
std::string changed(Change change) {
    OrderedJson json = OrderedJson::parse(jsonOf(Record(sampleBytes())));
    change(json);
    return json.dump();
}

TEST(JsonView, HasTheRecordsFieldsInTheOrderOfTheirOffsets) {
    std::vector<std::string> names;
    const OrderedJson json = OrderedJson::parse(jsonOf(Record(sampleBytes())));
    for (const auto& item : json.items())
        names.push_back(item.key());
    std::vector<std::string> expected;
    for (const Field& field : fields())
        expected.emplace_back(field.name);
    expected.emplace_back("collected");
    EXPECT_EQ(names, expected);
}

TEST(JsonView, TellsBehindTheFieldsWhenAndByWhatARecordWasCollected) {
    Report report;
    report.collected = {.at = "2026-11-22T12:00:00Z", .library = "1.2.0.0", .tool = "1.2.0"};
    EXPECT_EQ(OrderedJson::parse(jsonView(report))["collected"],
              OrderedJson({{"at", "2026-11-22T12:00:00Z"}, {"library", "1.2.0.0"}, {"tool", "1.2.0"}}));
    EXPECT_EQ(recordFromJson(jsonView(report), "again").collected, report.collected);
    report.collected->library.clear();
    EXPECT_EQ(OrderedJson::parse(jsonView(report))["collected"],
              OrderedJson({{"at", "2026-11-22T12:00:00Z"}, {"tool", "1.2.0"}}))
        << "a library without a version";
    EXPECT_EQ(recordFromJson(jsonView(report), "again").collected, report.collected);
}

TEST(JsonView, TellsThatNobodyKnowsWhenARecordWasCollected) {
    OrderedJson json = OrderedJson::parse(jsonOf(Record(sampleBytes())));
    EXPECT_TRUE(json["collected"].is_null());
    EXPECT_EQ(recordFromJson(json.dump(), "a.json").collected, std::nullopt);
    json.erase("collected");
    EXPECT_EQ(recordFromJson(json.dump(), "a.json").collected, std::nullopt) << "written by an older tool";
}

TEST(JsonView, RefusesTimesAndVersionsThatAreNone) {
    const auto errorWith = [](const OrderedJson& collected) {
        return jsonError(changed([&](OrderedJson& json) { json["collected"] = collected; }));
    };
    EXPECT_EQ(errorWith("yesterday"), "a.json: /collected: is no object");
    EXPECT_EQ(errorWith({{"at", "yesterday"}}), "a.json: /collected/at: is no time such as 2026-11-22T12:00:00Z");
    EXPECT_EQ(errorWith({{"tool", 1}}), "a.json: /collected/tool: is no text");
    EXPECT_EQ(errorWith({{"by", "me"}}), "a.json: /collected/by: is not known");
    EXPECT_EQ(jsonError(R"({"collected": {"tool": "1", "tool": "2"}})"), "a.json: 'collected/tool' stands twice");
    EXPECT_EQ(jsonError(R"({"collected": {"tool": ["1"]}})"), "a.json: 'collected' is neither a text nor a number");
}

TEST(JsonView, TextsAreTextsAndNumbersNumbers) {
    const OrderedJson json = OrderedJson::parse(jsonOf(Record(sampleBytes())));
    EXPECT_EQ(json["szStation"], "PC-LAB3");
    EXPECT_EQ(json["dwOEMCodePage"], 850);
    EXPECT_EQ(json["dwSessionId"], 4294967294u);
    EXPECT_EQ(json["szKeyboard"], "");
}

TEST(JsonView, IsValidForEveryByteInEveryTextField) {
    for (int byte = 1; byte < 256; ++byte) {
        RecordBytes bytes;
        bytes.fill(static_cast<char>(byte));
        const Record record(bytes);
        const std::string json = jsonOf(record);
        ASSERT_TRUE(OrderedJson::accept(json)) << byte;
        const Record again = recordFromJson(json, "again").record;
        for (std::size_t i = 0; i < fields().size(); ++i)
            ASSERT_EQ(again.textOf(i), record.textOf(i)) << byte;
    }
}

TEST(JsonView, ReadsWhatItWrote) {
    const Record record(sampleBytes());
    const Record again = recordFromJson(jsonOf(record), "again").record;
    for (std::size_t i = 0; i < fields().size(); ++i)
        EXPECT_EQ(again.textOf(i), record.textOf(i));
}

// A name of Japanese characters, cut within the second one.
RecordBytes cutName() {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szUserName, "\x8E\x52\x93");
    return bytes;
}

TEST(JsonView, HoldsTheBytesOfATextThatEndsInHalfACharacter) {
    const simwin::CodePageScope scope(932);
    const Record record(cutName());
    const OrderedJson json = OrderedJson::parse(jsonOf(record));
    EXPECT_EQ(json["szUserName"], OrderedJson({{"text", "\u5C71\uFFFD"}, {"hex", "8E 52 93"}}));
    const Record again = recordFromJson(jsonOf(record), "again").record;
    EXPECT_EQ(again.at("szUserName").bytes, "\x8E\x52\x93");
    EXPECT_EQ(again.at("szUserName").text, "\u5C71\x93");
    EXPECT_EQ(again.at("szUserName").filled, 3u);
}

TEST(JsonView, HoldsTheBytesWhereTwoCodesMeanOneCharacter) {
    const simwin::CodePageScope scope(932);
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szUserName, "\xFA\x58");
    EXPECT_EQ(OrderedJson::parse(jsonOf(Record(bytes)))["szUserName"],
              OrderedJson({{"text", "\u3231"}, {"hex", "FA 58"}}));
}

TEST(JsonView, IsValidForEveryByteInEveryTextFieldOfOtherCodePages) {
    for (const unsigned page : {874u, 932u, 950u, 65001u}) {  // with bytes that are none, halves, pairs that are none
        const simwin::CodePageScope scope(page);
        for (int byte = 1; byte < 256; ++byte) {
            RecordBytes bytes;
            bytes.fill(static_cast<char>(byte));
            const Record record(bytes);
            const Record again = recordFromJson(jsonOf(record), "again").record;
            for (std::size_t i = 0; i < fields().size(); ++i)
                ASSERT_EQ(again[i].bytes, record[i].bytes) << page << " " << byte;
        }
    }
}

TEST(JsonView, BytesThatAreNoCharacterAreReplacedAsElsewhere) {
    constexpr std::string_view kEnds = "a\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xE0\xE1\xED\xF0\xF1\xF4\xF5";  // of ranges
    for (const char* first : {"", "\xF0", "\xF1", "\xF4"})
        for (std::size_t i = 0; i < kEnds.size() * kEnds.size() * kEnds.size(); ++i) {
            const std::string text = {kEnds[i / 256], kEnds[i / 16 % 16], kEnds[i % 16]};
            ASSERT_EQ(OrderedJson::parse(printed(first + text)).get<std::string>(), simwin::repairedUtf8(first + text))
                << visible(first + text);
        }
}

TEST(JsonView, ReadsATextThatItsCodePageDoesNotHold) {
    OrderedJson json = OrderedJson::parse(jsonOf(Record(RecordBytes{})));
    json["szUserName"] = "\u5C71";
    const Record record = recordFromJson(json.dump(), "a.json").record;
    EXPECT_EQ(record.at("szUserName").text, "\u5C71");
    EXPECT_EQ(OrderedJson::parse(jsonOf(record))["szUserName"], "\u5C71");
}

TEST(JsonView, RefusesBytesThatAreNone) {
    for (const char* hex : {"8", "xx", "8E 5"}) {
        const auto wrong = [&](OrderedJson& json) { json["szUserName"] = {{"hex", hex}}; };
        EXPECT_EQ(
            jsonError(changed(wrong)),
            "a.json: szUserName must be a text, or its bytes as two hexadecimal digits each: {\"hex\": \"41 42\"}")
            << hex;
    }
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["szUserName"] = OrderedJson::object(); })),
              "a.json: szUserName must be a text, or its bytes as two hexadecimal digits each: {\"hex\": \"41 42\"}");
}

TEST(JsonView, TellsWhereForeignTextStopsBeingJson) {
    EXPECT_EQ(jsonError("{\"szStation\": \"A\", }"), "a.json: byte 20: this is no JSON");
}

TEST(JsonView, RefusesTextThatIsNotUtf8) {
    EXPECT_THAT(jsonError("{\"szStation\": \"\xFF\"}"), testing::StartsWith("a.json: byte "));
}

TEST(JsonView, RefusesJsonThatIsNoObject) {
    EXPECT_EQ(jsonError("[1]"), "a.json: a station record in JSON is one object");
}

TEST(JsonView, RefusesForeignNames) {
    EXPECT_EQ(jsonError("{\"name\": 1}"), "a.json: 'name' is no field of a station record");
}

TEST(JsonView, RefusesARecordWithAFieldMissing) {
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json.erase("szOS"); })),
              "a.json: szOS is missing: a station record in JSON has every field");
}

TEST(JsonView, RefusesANumberInTheTextsPlace) {
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["szOS"] = 5; })), "a.json: szOS must be a text");
}

TEST(JsonView, RefusesATextLongerThanItsField) {
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["szBiosDate"] = "123456789012"; })),
              "a.json: szBiosDate is longer than its 11 bytes");
}

TEST(JsonView, RefusesNumbersThatAreNoWholeNumbersOf32Bits) {
    const char* const expected = "a.json: dwOEMCodePage must be a whole number of 32 bits";
    for (const OrderedJson& value : {OrderedJson("850"), OrderedJson(850.5), OrderedJson(2147483648u),
                                     OrderedJson(-2147483649), OrderedJson(true), OrderedJson()})
        EXPECT_EQ(jsonError(changed([&](OrderedJson& json) { json["dwOEMCodePage"] = value; })), expected) << value;
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["dwSessionId"] = -1; })),
              "a.json: dwSessionId must be a whole number of 32 bits");
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["dwSessionId"] = 4294967295u; })), "no error");
    EXPECT_EQ(jsonError(changed([](OrderedJson& json) { json["dwOEMCodePage"] = -2147483647 - 1; })), "no error");
}

TEST(JsonView, RefusesAFieldThatStandsTwice) {
    std::string json = jsonOf(Record(sampleBytes()));
    json.insert(1, "\"szOS\": \"Windows NT 10.0 (Build 22621)\",");
    EXPECT_EQ(jsonError(json), "a.json: 'szOS' stands twice");
}

TEST(JsonView, NamesTheFieldWhoseNumberIsBeyondEveryRange) {
    std::string json = jsonOf(Record(sampleBytes()));
    const std::string number = "4294967294";
    json.replace(json.find(number), number.size(), "1e999");
    EXPECT_EQ(jsonError(json), "a.json: 'dwSessionId' has a number that is too large");
}

TEST(JsonView, SurvivesDeepNesting) {
    EXPECT_EQ(jsonError(std::string(100000, '[')), "a.json: a station record in JSON is one object");
    EXPECT_EQ(jsonError("{\"szOS\": " + std::string(100000, '[')), "a.json: 'szOS' is neither a text nor a number");
    EXPECT_EQ(jsonError("{\"szOS\": {\"hex\": [] } }"), "a.json: 'szOS' is neither a text nor a number");
    EXPECT_EQ(jsonError("{\"szOS\": {\"bytes\": 1 } }"), "a.json: 'szOS' is neither a text nor a number");
    std::string objects;
    for (int i = 0; i < 20000; ++i)
        objects += "{\"szOS\":";
    EXPECT_EQ(jsonError(objects), "a.json: 'szOS' is neither a text nor a number");
}

}  // namespace
}  // namespace kvstation
