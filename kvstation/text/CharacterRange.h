// Ranges of Unicode's characters.
#pragma once

#include <algorithm>
#include <span>

namespace kvstation {

struct CharacterRange {
    char32_t first;
    char32_t last;
};

// The range that holds a character, or null.
constexpr const CharacterRange* rangeOf(std::span<const CharacterRange> ranges, char32_t character) {
    const auto found = std::ranges::find_if(
        ranges, [character](const CharacterRange& one) { return character >= one.first && character <= one.last; });
    return found != ranges.end() ? &*found : nullptr;
}

}  // namespace kvstation
