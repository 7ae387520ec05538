#include "kvstation/JsonView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Samples.h"
#include "kvstation/Errors.h"

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
        const std::string json = jsonView(Record(bytes));
        ASSERT_TRUE(Json::accept(json)) << byte;
        const Record again = recordFromJson(json, "again");
        for (std::size_t i = 0; i < fields().size(); ++i)
            ASSERT_EQ(again.textOf(i), Record(bytes).textOf(i)) << byte;
    }
}

TEST(JsonView, ReadsWhatItWrote) {
    const Record record(sampleBytes());
    const Record again = recordFromJson(jsonView(record), "again");
    for (std::size_t i = 0; i < fields().size(); ++i)
        EXPECT_EQ(again.textOf(i), record.textOf(i));
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
    EXPECT_THAT(errorOf(std::string(100000, '[')), testing::StartsWith("a.json: byte "));
}

}  // namespace
}  // namespace kvstation
