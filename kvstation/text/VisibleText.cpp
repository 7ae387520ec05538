#include "kvstation/text/VisibleText.h"

#include <algorithm>

#include "kvstation/text/CharacterRange.h"
#include "simwin/text/HexText.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

// East Asian characters that a terminal gives two columns: Hangul, kana, ideographs and the full-width forms.
constexpr CharacterRange kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},  {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},
                                    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},  {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6},
                                    {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};

struct Shown {
    std::size_t bytes;
    std::size_t columns;
};

// The first character of a text that is not empty; a byte that is none counts as one.
Shown firstOf(std::string_view utf8) {
    const simwin::Utf8Character one = simwin::decodeUtf8(utf8);
    return {std::max<std::size_t>(one.length, 1), rangeOf(kWide, one.character) != nullptr ? 2u : 1u};
}

void appendSpelledOut(std::string& text, unsigned code) {
    text += "\\x" + simwin::hexDigits(code, 2);
}

}  // namespace

std::string visible(std::string_view utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const auto next = static_cast<unsigned char>(i + 1 < utf8.size() ? utf8[i + 1] : 0);
        if (byte < 0x20 || byte == 0x7F) {
            appendSpelledOut(text, byte);
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F
            appendSpelledOut(text, next);
            ++i;
        } else if (const std::size_t length = simwin::decodeUtf8(utf8.substr(i)).length; length == 0) {
            appendSpelledOut(text, byte);
        } else {
            text += utf8.substr(i, length);
            i += length - 1;
        }
    }
    return text;
}

std::string shortened(std::string_view utf8, std::size_t longest) {
    if (columns(utf8) <= longest)
        return std::string(utf8);
    return std::string(utf8.substr(0, bytesWithin(utf8, longest))) + "...";
}

std::size_t bytesWithin(std::string_view utf8, std::size_t room) {
    std::size_t end = 0;
    while (end < utf8.size()) {
        const Shown one = firstOf(utf8.substr(end));
        if (one.columns > room)
            break;
        room -= one.columns;
        end += one.bytes;
    }
    return end;
}

std::size_t columns(std::string_view utf8) {
    std::size_t count = 0;
    for (Shown one{}; !utf8.empty(); utf8.remove_prefix(one.bytes)) {
        one = firstOf(utf8);
        count += one.columns;
    }
    return count;
}

std::size_t characters(std::string_view utf8) {
    std::size_t count = 0;
    for (; !utf8.empty(); ++count)
        utf8.remove_prefix(firstOf(utf8).bytes);
    return count;
}

}  // namespace kvstation
