#include "kvstation/report/Differences.h"

#include "kvstation/platform/Output.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

// In quotes, so that blanks at its ends and an empty text can be seen.
std::string quoted(const Record& record, std::size_t field) {
    const std::string text = visible(record.textOf(field));
    return fields()[field].type == FieldType::Text ? "\"" + text + "\"" : text;
}

// The text of a file may tell a half character as the replacement character, and its bytes beside.
bool isSame(const Record& left, const Record& right, std::size_t field) {
    return left.textOf(field) == right.textOf(field) ||
           (!left[field].bytes.empty() && left[field].bytes == right[field].bytes &&
            simwin::repairedUtf8(left[field].text) == simwin::repairedUtf8(right[field].text));
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
        text += coloured(kDim, "  - " + quoted(left, field), colours) + "\n";
        text += coloured(kBold, "  + " + quoted(right, field), colours) + "\n";
    }
    return text;
}

}  // namespace kvstation
