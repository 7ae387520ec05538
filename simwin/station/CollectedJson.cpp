#include "simwin/station/CollectedJson.h"

#include <algorithm>
#include <charconv>
#include <chrono>

#include "simwin/station/MemberReaders.h"
#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

constexpr std::string_view kFormOfTime = "dddd-dd-ddTdd:dd:ddZ";  // d: a digit
constexpr std::size_t kLongestVersion = 32;

bool hasFormOfTime(std::string_view text) {
    return std::ranges::equal(text, kFormOfTime, [](char character, char wanted) {
        return wanted == 'd' ? isAsciiDigit(character) : character == wanted;
    });
}

unsigned numberAt(std::string_view text, std::size_t place, std::size_t length) {
    unsigned number = 0;
    std::from_chars(text.data() + place, text.data() + place + length, number);
    return number;
}

bool isTime(std::string_view text) {
    if (!hasFormOfTime(text))
        return false;
    const std::chrono::year_month_day day{std::chrono::year(static_cast<int>(numberAt(text, 0, 4))),
                                          std::chrono::month(numberAt(text, 5, 2)),
                                          std::chrono::day(numberAt(text, 8, 2))};
    return day.ok() && numberAt(text, 11, 2) < 24 && numberAt(text, 14, 2) < 60 && numberAt(text, 17, 2) < 60;
}

// Numbers alone, so that nobody's name can stand here: a redaction leaves it.
bool isVersion(std::string_view text) {
    const bool isNumbers = std::ranges::all_of(text, [](char c) { return isAsciiDigit(c) || c == '.'; });
    return isNumbers && !text.empty() && text.size() <= kLongestVersion && isAsciiDigit(text.front()) &&
           isAsciiDigit(text.back()) && text.find("..") == std::string_view::npos;
}

std::string readTime(const JsonView& view) {
    std::string text = view.utf8();
    if (!isTime(text))
        view.fail("is no time such as 2026-11-22T12:00:00Z");
    return text;
}

std::string readVersion(const JsonView& view) {
    std::string text = view.utf8();
    if (!isVersion(text))
        view.fail("is no version such as 1.2.0 of at most " + std::to_string(kLongestVersion) + " characters");
    return text;
}

}  // namespace

nlohmann::ordered_json collectedJson(const Collected& collected) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    const auto put = [&](const char* name, const std::string& text) {
        if (!text.empty())
            object[name] = text;
    };
    put("at", collected.at);
    put("library", collected.library);
    put("tool", collected.tool);
    return object;
}

Collected readCollected(const JsonView& view) {
    Collected collected;
    readMembers(view, {{"at", [&](const JsonView& value) { collected.at = readTime(value); }},
                       {"library", [&](const JsonView& value) { collected.library = readVersion(value); }},
                       {"tool", [&](const JsonView& value) { collected.tool = readVersion(value); }}});
    return collected;
}

}  // namespace simwin
