#include "simwin/text/JsonLayout.h"

#include <algorithm>
#include <string_view>

namespace simwin {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidth = 120;
constexpr std::size_t kStep = 2;

// Lists of things of one kind, which read best one below the other.
constexpr std::string_view kAlwaysBroken[] = {"environment", "drives", "files", "network"};

std::size_t columnsOf(std::string_view utf8) {
    return static_cast<std::size_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

std::string keyText(const std::string& name) {
    return Json(name).dump() + ": ";
}

bool isTight(const Json& json) {
    return json.empty() || (json.is_array() &&
                            std::all_of(json.begin(), json.end(), [](const Json& item) { return item.is_number(); }));
}

std::string inlineText(const Json& json) {
    if (!json.is_structured())
        return json.dump();
    std::string text;
    for (const auto& [name, value] : json.items())
        text += (text.empty() ? "" : ", ") + (json.is_object() ? keyText(name) : "") + inlineText(value);
    const std::string space = isTight(json) ? "" : " ";
    return json.is_object() ? "{" + space + text + space + "}" : "[" + space + text + space + "]";
}

std::string laidOut(const Json& json, std::size_t indent, std::size_t column, bool isBroken);

// Members that are simple follow each other on lines as full as they get.
std::string filled(const Json& json, std::size_t indent) {
    std::string text;
    std::size_t column = kWidth;
    for (const auto& [name, value] : json.items()) {
        const std::string member = (json.is_object() ? keyText(name) : "") + inlineText(value);
        const std::size_t width = columnsOf(member);
        if (text.empty() || column + width + 2 > kWidth) {
            text += (text.empty() ? "" : ",") + ("\n" + std::string(indent, ' ')) + member;
            column = indent + width;
        } else {
            text += ", " + member;
            column += width + 2;
        }
    }
    return text;
}

std::string onePerLine(const Json& json, std::size_t indent) {
    std::string text;
    for (const auto& [name, value] : json.items()) {
        const std::string key = json.is_object() ? keyText(name) : "";
        const bool isBroken =
            std::find(std::begin(kAlwaysBroken), std::end(kAlwaysBroken), name) != std::end(kAlwaysBroken);
        text += (text.empty() ? "" : ",") + ("\n" + std::string(indent, ' ')) + key +
                laidOut(value, indent, indent + columnsOf(key), isBroken && indent == kStep);
    }
    return text;
}

std::string laidOut(const Json& json, std::size_t indent, std::size_t column, bool isBroken) {
    std::string line = inlineText(json);
    if (!json.is_structured() || json.empty() || (!isBroken && column + columnsOf(line) < kWidth))
        return line;
    const bool isSimple =
        !isBroken && std::none_of(json.begin(), json.end(), [](const Json& value) { return value.is_object(); });
    const std::string members = isSimple ? filled(json, indent + kStep) : onePerLine(json, indent + kStep);
    const std::string end = "\n" + std::string(indent, ' ');
    return json.is_object() ? "{" + members + end + "}" : "[" + members + end + "]";
}

}  // namespace

std::string layOut(const Json& json) {
    return laidOut(json, 0, 0, true) + "\n";
}

}  // namespace simwin
