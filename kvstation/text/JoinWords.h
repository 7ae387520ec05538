// Words in a row, for people and for scripts.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kvstation {

// "a, b, c" of three with ", " between; `textOf` gives the text of each.
template <class Words, class TextOf = std::identity>
std::string joinWords(const Words& words, std::string_view between, TextOf textOf = {}) {
    std::string text;
    bool isFirst = true;
    for (const auto& word : words) {
        text.append(isFirst ? "" : between).append(std::invoke(textOf, word));
        isFirst = false;
    }
    return text;
}

}  // namespace kvstation
