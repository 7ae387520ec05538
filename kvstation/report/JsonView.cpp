#include "kvstation/report/JsonView.h"

#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "kvstation/platform/Errors.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/station/StationMembers.h"
#include "simwin/station/TextForms.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kJsonIndent = 2;
constexpr const char* kCollected = "collected";  // no field's name

[[noreturn]] void fail(std::string_view name, const std::string& what) {
    throw Failure(std::string(name) + ": " + what);
}

[[noreturn]] void failAsNoObject(std::string_view name) {
    fail(name, "a station record in JSON is one object");
}

// The parser itself takes the last of several members of one name, does not say where a number was, and builds whatever
// stands in a member's place before anybody sees that it is no text, none with its bytes beside it, and no number.
class MemberGuard {
  public:
    explicit MemberGuard(std::string_view name) : m_name(name) {}

    bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        using Event = Json::parse_event_t;
        if (depth == 0 && event == Event::array_start)
            failAsNoObject(m_name);
        const bool isText = depth == 1 && event == Event::object_start;
        if (depth != 0 && !isText && (event == Event::object_start || event == Event::array_start))
            failAsNoValue();
        if (event != Event::key)
            return true;
        if (depth == 1)
            m_last = parsed.get<std::string>();
        else if (m_last != kCollected && parsed != "text" && parsed != "hex")
            failAsNoValue();
        refuseTwice(depth == 1 ? m_last : m_last + "/" + parsed.get<std::string>());
        return true;
    }

    const std::string& last() const { return m_last; }

  private:
    [[noreturn]] void failAsNoValue() const { fail(m_name, "'" + m_last + "' is neither a text nor a number"); }

    void refuseTwice(const std::string& member) {
        if (!m_seen.insert(member).second)
            fail(m_name, "'" + member + "' stands twice");
    }

    std::string_view m_name;
    std::string m_last;
    std::set<std::string> m_seen;
};

Json parse(std::string_view json, std::string_view name) {
    MemberGuard guard(name);
    try {
        return Json::parse(json, std::ref(guard));
    } catch (const Json::parse_error& error) {
        fail(name, "byte " + std::to_string(error.byte) + ": this is no JSON");
    } catch (const Json::out_of_range&) {
        fail(name, "'" + guard.last() + "' has a number that is too large");
    }
}

// What the record's own code page makes of it is known where it holds all characters.
Value valueOf(std::string text) {
    simwin::Utf8Error ignored{};
    const std::optional<std::string> bytes = simwin::fromUtf8(text, ignored);
    const std::size_t length = bytes ? bytes->size() : characters(text);
    return {.text = std::move(text), .number = 0, .filled = length, .bytes = bytes.value_or(std::string())};
}

// The text as it was given tells more than the bytes do in another code page.
Value exactValue(const Json& value, std::string bytes) {
    std::string text = simwin::toUtf8(bytes);
    const auto given = value.find("text");
    if (given != value.end() && given->is_string() && simwin::repairedUtf8(text) != given->get<std::string>())
        text = given->get<std::string>();
    const std::size_t length = bytes.size();
    return {.text = std::move(text), .number = 0, .filled = length, .bytes = std::move(bytes)};
}

// The bytes of {"hex": "41 42"}; none where it is something else.
std::optional<std::string> exactBytes(const Json& value) {
    if (!value.is_object() || !value.contains("hex"))
        return std::nullopt;
    try {
        return simwin::readHex({value["hex"], "", ""});
    } catch (const simwin::ReadError&) {
        return std::nullopt;
    }
}

Value readText(const Json& value, const Field& field, std::string_view name) {
    const std::optional<std::string> exact = exactBytes(value);
    if (value.is_object() && !exact)
        fail(name, std::string(field.name) +
                       " must be a text, or its bytes as two hexadecimal digits each: {\"hex\": \"41 42\"}");
    if (!value.is_string() && !exact)
        fail(name, std::string(field.name) + " must be a text");
    Value read = exact ? exactValue(value, *exact) : valueOf(value.get<std::string>());
    if (read.filled > field.width)
        fail(name, std::string(field.name) + " is longer than its " + std::to_string(field.width) + " bytes");
    return read;
}

bool fits(const Json& value, FieldType type) {
    if (!value.is_number_integer())
        return false;
    if (value.is_number_unsigned())
        return value.get<std::uint64_t>() <= (type == FieldType::Unsigned
                                                  ? std::numeric_limits<std::uint32_t>::max()
                                                  : std::uint32_t{std::numeric_limits<std::int32_t>::max()});
    return type == FieldType::Number && value.get<std::int64_t>() >= std::numeric_limits<std::int32_t>::min();
}

Value readNumber(const Json& value, const Field& field, std::string_view name) {
    if (!fits(value, field.type))
        fail(name, std::string(field.name) + " must be a whole number of 32 bits");
    return {.text = {}, .number = value.get<std::int64_t>(), .filled = field.width, .bytes = {}};
}

void refuseForeignNames(const Json& object, std::string_view name) {
    for (const auto& item : object.items())
        if (item.key() != kCollected && findField(item.key()) == fields().size())
            fail(name, "'" + item.key() + "' is no field of a station record");
}

// A record that an older tool has written tells nothing of it.
std::optional<simwin::Collected> readCollected(const Json& object, std::string_view name) {
    const auto found = object.find(kCollected);
    if (found == object.end() || found->is_null())
        return std::nullopt;
    try {
        return simwin::readCollected({*found, std::string(name), std::string("/") + kCollected});
    } catch (const simwin::ReadError& error) {
        throw Failure(error.what());
    }
}

}  // namespace

bool tellsAll(const Record& record, std::size_t field) {
    const Value& value = record[field];
    return value.bytes.empty() || (simwin::isUtf8(value.text) && simwin::fromUtf8Leniently(value.text) == value.bytes);
}

nlohmann::ordered_json valueJson(const Record& record, std::size_t field) {
    const Value& value = record[field];
    if (fields()[field].type != FieldType::Text)
        return value.number;
    if (tellsAll(record, field))
        return value.text;
    return {{"text", value.text}, {"hex", simwin::hexText(value.bytes, ' ')}};
}

std::string printed(const nlohmann::ordered_json& json) {
    return json.dump(kJsonIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string printedLine(const nlohmann::ordered_json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string jsonView(const Report& report) {
    const Record& record = report.record;
    Json object = Json::object();
    for (std::size_t i = 0; i < fields().size(); ++i)
        object[std::string(fields()[i].name)] = valueJson(record, i);
    object[kCollected] = report.collected ? simwin::collectedJson(*report.collected) : Json();
    return printed(object);
}

Record recordFromFields(const nlohmann::ordered_json& object, std::string_view name) {
    Record record;
    for (std::size_t i = 0; i < fields().size(); ++i) {
        const Field& field = fields()[i];
        const auto found = object.find(std::string(field.name));
        if (found == object.end())
            fail(name, std::string(field.name) + " is missing: a station record in JSON has every field");
        record[i] = field.type == FieldType::Text ? readText(*found, field, name) : readNumber(*found, field, name);
    }
    return record;
}

Report recordFromJson(std::string_view json, std::string_view name) {
    const Json object = parse(json, name);
    if (!object.is_object())
        failAsNoObject(name);
    refuseForeignNames(object, name);
    Report report;
    report.collected = readCollected(object, name);
    report.record = recordFromFields(object, name);
    return report;
}

}  // namespace kvstation
