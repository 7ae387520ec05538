#include "kvstation/rows/RowSchema.h"

#include <limits>
#include <nlohmann/json.hpp>

#include "kvstation/record/FieldTable.h"
#include "kvstation/report/JsonView.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kDialect = "https://json-schema.org/draft/2020-12/schema";
constexpr const char* kAboutTheRow = "One line of 'kvstation simulate --ndjson', decode or show: a station's record.";
constexpr const char* kAboutTheFields = "The record's fields: all of them, or with --field those that were asked for.";
constexpr const char* kAboutTexts =
    "A text, in which each byte of the field is at most one character. One that holds bytes that are no character, "
    "such as half of one at the field's end, is an object of the text, as far as it goes, and its bytes.";
constexpr const char* kVersionPattern = "^[0-9]+(\\.[0-9]+)*$";
constexpr const char* kTimePattern = "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z$";
constexpr const char* kHexPattern = "^[0-9A-F]{2}( [0-9A-F]{2})*$";

Json reference(const char* definition) {
    return {{"$ref", std::string("#/$defs/") + definition}};
}

// An object with no other members.
Json closedObject(Json properties) {
    return {{"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
}

Json described(std::string_view description, const Json& schema) {
    Json all = {{"description", description}};
    all.update(schema);
    return all;
}

template <typename Number>
Json wholeNumber() {
    return {{"type", "integer"},
            {"minimum", std::numeric_limits<Number>::min()},
            {"maximum", std::numeric_limits<Number>::max()}};
}

Json definitions() {
    Json exact =
        closedObject({{"text", {{"type", "string"}}}, {"hex", {{"type", "string"}, {"pattern", kHexPattern}}}});
    exact["required"] = {"text", "hex"};
    return {{"text", described(kAboutTexts, {{"anyOf", {{{"type", "string"}}, reference("exactText")}}})},
            {"exactText", exact},
            {"int32", wholeNumber<std::int32_t>()},
            {"uint32", wholeNumber<std::uint32_t>()},
            {"version", {{"type", "string"}, {"pattern", kVersionPattern}}}};
}

// Such as "41 83": two digits a byte and a blank between two.
std::size_t hexLength(std::size_t bytes) {
    return 3 * bytes - 1;
}

// maxLength is a string's alone, and properties are an object's.
Json textField(const Field& field) {
    Json schema = reference("text");
    schema["maxLength"] = field.width;
    schema["properties"]["hex"]["maxLength"] = hexLength(field.width);
    return schema;
}

Json fieldSchema(const Field& field) {
    switch (field.type) {
        case FieldType::Text:
            return textField(field);
        case FieldType::Number:
            return reference("int32");
        case FieldType::Unsigned:
            return reference("uint32");
    }
    return {};
}

Json recordSchema() {
    Json all = Json::object();
    for (const Field& field : fields())
        all[std::string(field.name)] = described(field.meaning, fieldSchema(field));
    Json schema = closedObject(std::move(all));
    schema["minProperties"] = 1;
    return described(kAboutTheFields, schema);
}

Json collectedSchema() {
    Json schema =
        closedObject({{"at", described("in UTC, to the second",
                                       {{"type", "string"}, {"format", "date-time"}, {"pattern", kTimePattern}})},
                      {"library", described("version of the library that collected", reference("version"))},
                      {"tool", described("version of kvstation that was used", reference("version"))}});
    schema["type"] = {"object", "null"};
    return described("When and by what the record was collected, without what nobody knows of it.", schema);
}

Json rowProperties() {
    const Json text = {{"type", "string"}};
    const auto codePages = simwin::knownCodePages();
    Json all;
    all["name"] = described(
        "the place below the folder that was named; - is standard input; of this computer its szStation", text);
    all["source"] = described("the path that it came from, or that it is this station's", text);
    all["codePage"] = described("ANSI code page of its texts", {{"enum", Json(codePages)}});
    all["tool"] = described("version of kvstation that wrote the line", reference("version"));
    all["collected"] = collectedSchema();
    all["fields"] = recordSchema();
    return all;
}

}  // namespace

std::string rowSchema() {
    Json schema = closedObject(rowProperties());
    for (const auto& [name, ignored] : schema["properties"].items())
        schema["required"].push_back(name);
    Json document = {{"$schema", kDialect}, {"title", "Station row"}};
    document.update(described(kAboutTheRow, schema));
    document["$defs"] = definitions();
    return printed(document);
}

}  // namespace kvstation
