#include "kvstation/JsonView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Samples.h"
#include "kvstation/Errors.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

std::string errorOf(std::string_view json) {
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
    Json json = Json::parse(jsonView(Record(sampleBytes())));
    change(json);
    return json.dump();
}

TEST(JsonView, HasTheRecordsFieldsInTheOrderOfTheirOffsets) {
    std::vector<std::string> names;
    const Json json = Json::parse(jsonView(Record(sampleBytes())));
    for (const auto& item : json.items())
        names.push_back(item.key());
    ASSERT_EQ(names.size(), 60u);
    EXPECT_EQ(names.front(), "szStation");
    EXPECT_EQ(names[1], "szUserName");
    EXPECT_EQ(names[3], "dwKeyboardType");
    EXPECT_EQ(names.back(), "szVCDVersion");
}

TEST(JsonView, TextsAreTextsAndNumbersNumbers) {
    const Json json = Json::parse(jsonView(Record(sampleBytes())));
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
        const std::string json = jsonView(record);
        ASSERT_TRUE(Json::accept(json)) << byte;
        const Record again = recordFromJson(json, "again");
        for (std::size_t i = 0; i < fields().size(); ++i)
            ASSERT_EQ(again.textOf(i), record.textOf(i)) << byte;
    }
}

TEST(JsonView, ReadsWhatItWrote) {
    const Record record(sampleBytes());
    const Record again = recordFromJson(jsonView(record), "again");
    for (std::size_t i = 0; i < fields().size(); ++i)
        EXPECT_EQ(again.textOf(i), record.textOf(i));
}

// A name of Japanese characters, cut within the second one.
RecordBytes cutName() {
    RecordBytes bytes{};
    put(bytes, 51, "\x8E\x52\x93");
    return bytes;
}

TEST(JsonView, HoldsTheBytesOfATextThatEndsInHalfACharacter) {
    const simwin::CodePageScope scope(932);
    const Record record(cutName());
    const Json json = Json::parse(jsonView(record));
    EXPECT_EQ(json["szUserName"], Json({{"text", "\u5C71\uFFFD"}, {"hex", "8E 52 93"}}));
    const Record again = recordFromJson(jsonView(record), "again");
    EXPECT_EQ(again.at("szUserName").bytes, "\x8E\x52\x93");
    EXPECT_EQ(again.at("szUserName").text, "\u5C71\x93");
    EXPECT_EQ(again.at("szUserName").filled, 3u);
}

TEST(JsonView, HoldsTheBytesWhereTwoCodesMeanOneCharacter) {
    const simwin::CodePageScope scope(932);
    RecordBytes bytes{};
    put(bytes, 51, "\xFA\x58");
    EXPECT_EQ(Json::parse(jsonView(Record(bytes)))["szUserName"], Json({{"text", "\u3231"}, {"hex", "FA 58"}}));
}

TEST(JsonView, IsValidForEveryByteInEveryTextFieldOfOtherCodePages) {
    for (const unsigned page : {874u, 932u, 950u, 65001u}) {  // with bytes that are none, halves, pairs that are none
        const simwin::CodePageScope scope(page);
        for (int byte = 1; byte < 256; ++byte) {
            RecordBytes bytes;
            bytes.fill(static_cast<char>(byte));
            const Record record(bytes);
            const Record again = recordFromJson(jsonView(record), "again");
            for (std::size_t i = 0; i < fields().size(); ++i)
                ASSERT_EQ(again[i].bytes, record[i].bytes) << page << " " << byte;
        }
    }
}

TEST(JsonView, ReadsATextThatItsCodePageDoesNotHold) {
    Json json = Json::parse(jsonView(Record(RecordBytes{})));
    json["szUserName"] = "\u5C71";
    const Record record = recordFromJson(json.dump(), "a.json");
    EXPECT_EQ(record.at("szUserName").text, "\u5C71");
    EXPECT_EQ(Json::parse(jsonView(record))["szUserName"], "\u5C71");
}

TEST(JsonView, RefusesBytesThatAreNone) {
    for (const char* hex : {"8", "xx", "8E 5"}) {
        const auto wrong = [&](Json& json) { json["szUserName"] = {{"hex", hex}}; };
        EXPECT_EQ(
            errorOf(changed(wrong)),
            "a.json: szUserName must be a text, or its bytes as two hexadecimal digits each: {\"hex\": \"41 42\"}")
            << hex;
    }
    EXPECT_EQ(errorOf(changed([](Json& json) { json["szUserName"] = Json::object(); })),
              "a.json: szUserName must be a text, or its bytes as two hexadecimal digits each: {\"hex\": \"41 42\"}");
}

TEST(JsonView, TellsWhereForeignTextStopsBeingJson) {
    EXPECT_EQ(errorOf("{\"szStation\": \"A\", }"), "a.json: byte 20: this is no JSON");
}

TEST(JsonView, RefusesTextThatIsNotUtf8) {
    EXPECT_THAT(errorOf("{\"szStation\": \"\xFF\"}"), testing::StartsWith("a.json: byte "));
}

TEST(JsonView, RefusesJsonThatIsNoObject) {
    EXPECT_EQ(errorOf("[1]"), "a.json: a station record in JSON is one object");
}

TEST(JsonView, RefusesForeignNames) {
    EXPECT_EQ(errorOf("{\"name\": 1}"), "a.json: 'name' is no field of a station record");
}

TEST(JsonView, RefusesARecordWithAFieldMissing) {
    EXPECT_EQ(errorOf(changed([](Json& json) { json.erase("szOS"); })),
              "a.json: szOS is missing: a station record in JSON has every field");
}

TEST(JsonView, RefusesANumberInTheTextsPlace) {
    EXPECT_EQ(errorOf(changed([](Json& json) { json["szOS"] = 5; })), "a.json: szOS must be a text");
}

TEST(JsonView, RefusesATextLongerThanItsField) {
    EXPECT_EQ(errorOf(changed([](Json& json) { json["szBiosDate"] = "123456789012"; })),
              "a.json: szBiosDate is longer than its 11 bytes");
}

TEST(JsonView, RefusesNumbersThatAreNoWholeNumbersOf32Bits) {
    const char* const expected = "a.json: dwOEMCodePage must be a whole number of 32 bits";
    for (const Json& value : {Json("850"), Json(850.5), Json(2147483648u), Json(-2147483649), Json(true), Json()})
        EXPECT_EQ(errorOf(changed([&](Json& json) { json["dwOEMCodePage"] = value; })), expected) << value;
    EXPECT_EQ(errorOf(changed([](Json& json) { json["dwSessionId"] = -1; })),
              "a.json: dwSessionId must be a whole number of 32 bits");
    EXPECT_EQ(errorOf(changed([](Json& json) { json["dwSessionId"] = 4294967295u; })), "no error");
    EXPECT_EQ(errorOf(changed([](Json& json) { json["dwOEMCodePage"] = -2147483647 - 1; })), "no error");
}

TEST(JsonView, RefusesAFieldThatStandsTwice) {
    std::string json = jsonView(Record(sampleBytes()));
    json.insert(1, "\"szOS\": \"Windows NT 10.0 (Build 22621)\",");
    EXPECT_EQ(errorOf(json), "a.json: 'szOS' stands twice");
}

TEST(JsonView, NamesTheFieldWhoseNumberIsBeyondEveryRange) {
    std::string json = jsonView(Record(sampleBytes()));
    const std::string number = "4294967294";
    json.replace(json.find(number), number.size(), "1e999");
    EXPECT_EQ(errorOf(json), "a.json: 'dwSessionId' has a number that is too large");
}

TEST(JsonView, SurvivesDeepNesting) {
    EXPECT_EQ(errorOf(std::string(100000, '[')), "a.json: a station record in JSON is one object");
    EXPECT_EQ(errorOf("{\"szOS\": " + std::string(100000, '[')), "a.json: 'szOS' is neither a text nor a number");
    EXPECT_EQ(errorOf("{\"szOS\": {\"hex\": [] } }"), "a.json: 'szOS' is neither a text nor a number");
    EXPECT_EQ(errorOf("{\"szOS\": {\"bytes\": 1 } }"), "a.json: 'szOS' is neither a text nor a number");
    std::string objects;
    for (int i = 0; i < 20000; ++i)
        objects += "{\"szOS\":";
    EXPECT_EQ(errorOf(objects), "a.json: 'szOS' is neither a text nor a number");
}

}  // namespace
}  // namespace kvstation
