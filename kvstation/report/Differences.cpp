#include "kvstation/report/Differences.h"

#include <nlohmann/json.hpp>

#include "kvstation/platform/VisibleText.h"
#include "kvstation/report/JsonView.h"

namespace kvstation {
namespace {

// In quotes, so that blanks at its ends and an empty text can be seen.
std::string quoted(const Record& record, std::size_t field) {
    const std::string text = visible(record.textOf(field));
    return fields()[field].type == FieldType::Text ? "\"" + text + "\"" : text;
}

std::string line(std::string_view sign, const std::string& value, const char* colour) {
    const std::string text = "  " + std::string(sign) + " " + value;
    return (colour != nullptr ? colour + text + "\x1b[0m" : text) + "\n";
}

// The text of a file may tell a half character as the replacement character, and its bytes beside.
bool isSame(const Record& left, const Record& right, std::size_t field) {
    return left.textOf(field) == right.textOf(field) ||
           (!left[field].bytes.empty() && left[field].bytes == right[field].bytes &&
            printed(left[field].text) == printed(right[field].text));
}

}  // namespace

std::vector<std::size_t> differingFields(const Record& left, const Record& right) {
    std::vector<std::size_t> differing;
    for (std::size_t i = 0; i < fields().size(); ++i)
        if (!isSame(left, right, i))
            differing.push_back(i);
    return differing;
}

std::string differencesView(const Record& left, const Record& right, const std::vector<std::size_t>& differing,
                            bool colours) {
    std::string text;
    for (const std::size_t field : differing) {
        text += std::string(fields()[field].name) + "\n";
        text += line("-", quoted(left, field), colours ? "\x1b[2m" : nullptr);
        text += line("+", quoted(right, field), colours ? "\x1b[1m" : nullptr);
    }
    return text;
}

}  // namespace kvstation
