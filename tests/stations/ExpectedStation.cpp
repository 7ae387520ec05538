#include "tests/stations/ExpectedStation.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "include/kvcstat.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/TextForms.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace kvtest {
namespace {

using Json = nlohmann::ordered_json;

struct Field {
    const char* name;
    std::size_t offset;
    std::size_t width;  // 0: a signed number, 1: an unsigned one
};

constexpr std::size_t kSigned = 0;
constexpr std::size_t kUnsigned = 1;

constexpr Field kFields[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning) {#name, offset, width},
#define KV_NUMBER(name, offset, group, meaning) {#name, offset, kSigned},
#define KV_UNSIGNED(name, offset, group, meaning) {#name, offset, kUnsigned},
#include "include/kvcstat_fields.inc"
};

// In quotes; what is no character is the replacement character, and then the bytes stand behind it.
std::string quoted(const std::string& bytes) {
    const std::string text = Json(simwin::toUtf8(bytes)).dump(-1, ' ', false, Json::error_handler_t::replace);
    return simwin::survivesUtf8(bytes) ? text : text + " (" + simwin::hexText(bytes, ' ') + ")";
}

// A text, or {"text": "...", "hex": "41 83"} for one whose end is no character: its bytes, and how they read.
std::string bytesOf(const Json& text, const std::string& place) {
    if (!text.is_object())
        return simwin::fromUtf8Leniently(text.get<std::string>());
    const std::string bytes = simwin::readHex({text.at("hex"), place, "hex"});
    if (quoted(bytes) != Json(text.at("text")).dump() + " (" + simwin::hexText(bytes, ' ') + ")")
        throw std::runtime_error(place + ": the bytes are no such text, or tell no more than it: " + quoted(bytes));
    return bytes;
}

FieldValue readValue(const Json& value, const std::string& place) {
    if (value.is_number())
        return value.get<std::int64_t>();
    return bytesOf(value, place);
}

template <class Number>
Number numberAt(const std::string& record, std::size_t offset) {
    Number number = 0;
    std::memcpy(&number, record.data() + offset, sizeof number);
    return number;
}

FieldValue valueOf(const Field& field, const std::string& record) {
    if (field.width == kSigned)
        return std::int64_t{numberAt<std::int32_t>(record, field.offset)};
    if (field.width == kUnsigned)
        return std::int64_t{numberAt<std::uint32_t>(record, field.offset)};
    const std::string bytes = record.substr(field.offset, field.width);
    return bytes.substr(0, bytes.find('\0'));
}

std::string quoted(const FieldValue& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return std::to_string(*number);
    return quoted(std::get<std::string>(value));
}

std::string quoted(const simwin::TraceLine& line) {
    return "level " + std::to_string(line.level) + " " + quoted(line.text);
}

void compare(std::vector<std::string>& lines, const std::string& what, const FieldValue& expected,
             const FieldValue& found) {
    if (expected != found)
        lines.push_back(what + ": expected " + quoted(expected) + ", found " + quoted(found));
}

void compareRecords(std::vector<std::string>& lines, const ExpectedStation& expected, const std::string& record) {
    const Fields fields = fieldsOf(record);
    for (std::size_t i = 0; i < fields.size(); ++i)
        compare(lines, fields[i].first, expected.record[i].second, fields[i].second);
    const std::string bytes = recordBytes(expected.record);
    const auto [wanted, other] = std::mismatch(bytes.begin(), bytes.end(), record.begin(), record.end());
    if (wanted != bytes.end() || other != record.end())
        lines.push_back("record: the bytes differ from offset " + std::to_string(wanted - bytes.begin()) + " on");
}

void compareEnvironments(std::vector<std::string>& lines, const std::vector<simwin::Variable>& expected,
                         std::vector<simwin::Variable> found) {
    for (const simwin::Variable& variable : expected) {
        const auto place =
            std::find_if(found.begin(), found.end(), [&](const auto& other) { return other.name == variable.name; });
        if (place == found.end()) {
            lines.push_back("variable " + variable.name + ": expected " + quoted(variable.value) + ", not set");
            continue;
        }
        compare(lines, "variable " + variable.name, variable.value, place->value);
        found.erase(place);
    }
    for (const simwin::Variable& variable : found)
        lines.push_back("variable " + variable.name + ": not expected, set to " + quoted(variable.value));
}

void compareTraces(std::vector<std::string>& lines, const std::vector<simwin::TraceLine>& expected,
                   const std::vector<simwin::TraceLine>& found) {
    for (std::size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
        const std::string wanted = i < expected.size() ? quoted(expected[i]) : "no line";
        const std::string line = i < found.size() ? quoted(found[i]) : "no line";
        if (wanted != line)
            lines.push_back("trace line " + std::to_string(i + 1) + ": expected " + wanted + ", found " + line);
    }
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(path.string() + ": cannot be read");
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// Every field, of which the file tells those that hold something.
Fields readRecord(const Json& values, const std::string& file) {
    Fields record = fieldsOf(std::string(KVCSTAT_RECORD_SIZE, '\0'));
    auto value = values.begin();
    for (auto& [name, content] : record) {
        if (value == values.end() || value.key() != name)
            continue;
        content = readValue(*value, file + ": " + name);
        ++value;
    }
    if (value != values.end())
        throw std::runtime_error(file + ": record: " + value.key() + " is no field, or out of the order of offsets");
    return record;
}

ExpectedStation readContent(const Json& content, const std::string& file) {
    ExpectedStation expected;
    expected.record = readRecord(content.at("record"), file);
    for (const auto& [name, value] : content.at("environment").items())
        expected.environment.push_back({name, bytesOf(value, file + ": " + name)});
    for (const auto& line : content.at("trace"))
        expected.trace.push_back({line.at("level").get<int>(), {}, bytesOf(line.at("text"), file + ": trace")});
    expected.standardOutput = bytesOf(content.at("stdout"), file + ": stdout");
    return expected;
}

void putValue(std::string& record, const Field& field, const FieldValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        text->copy(record.data() + field.offset, field.width);
        return;
    }
    const auto number = static_cast<std::uint32_t>(std::get<std::int64_t>(value));
    std::memcpy(record.data() + field.offset, &number, sizeof number);
}

}  // namespace

ExpectedStation readExpectedStation(const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / "expected.json";
    const std::filesystem::path description = folder / "station.json";
    const unsigned codePage = simwin::parseStation(contentOf(description), description.string()).codePages.ansi;
    const simwin::CodePageScope scope(codePage);
    try {
        ExpectedStation expected = readContent(Json::parse(contentOf(path)), path.string());
        expected.codePage = codePage;
        return expected;
    } catch (const Json::exception& error) {
        throw std::runtime_error(path.string() + ": " + error.what());
    }
}

Fields fieldsOf(const std::string& record) {
    Fields fields;
    for (const Field& field : kFields)
        fields.emplace_back(field.name, valueOf(field, record));
    return fields;
}

std::string recordBytes(const Fields& fields) {
    std::string record(KVCSTAT_RECORD_SIZE, '\0');
    for (std::size_t i = 0; i < std::size(kFields); ++i)
        putValue(record, kFields[i], fields[i].second);
    return record;
}

std::vector<std::string> differences(const ExpectedStation& expected, const CollectedStation& found) {
    const simwin::CodePageScope scope(expected.codePage);
    std::vector<std::string> lines;
    compareRecords(lines, expected, found.record);
    compareEnvironments(lines, expected.environment, found.environment);
    compareTraces(lines, expected.trace, found.trace);
    compare(lines, "standard output", expected.standardOutput, found.standardOutput);
    return lines;
}

std::vector<std::string> filledFields(const ExpectedStation& expected) {
    std::vector<std::string> names;
    for (const auto& [name, value] : expected.record) {
        if (value != FieldValue(std::string()) && value != FieldValue(std::int64_t{0}))
            names.push_back(name);
    }
    return names;
}

}  // namespace kvtest
