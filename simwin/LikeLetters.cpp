// Letters that the code page does not have and one of its own stands for: what Windows calls the best fit.
#include "simwin/CodePage.h"

#include <algorithm>
#include <iterator>

namespace simwin {
namespace {

// A row of characters from `first` on, and the byte for each; "?" where no letter is like the character. The pairs are
// those that Unicode publishes of Windows' code page 1252.
struct LikeLetters {
    char16_t first;
    std::string_view bytes;
};

constexpr LikeLetters kLikeLetters[] = {
    {0x0100,
     "AaAaAaCcCcCcCcDd\xD0"
     "dEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi?\?JjKk?LlLlLl?\?LlNnNnNn?\?\?OoOoOo?\?RrRrRrSsSsSs?\?TtTtTtUuUuUuUuUuUuWwYy?"
     "ZzZz?\?\?b"},
    {0x0189, "\xD0"},
    {0x0191, "\x83"},
    {0x0197, "I?\?l"},
    {0x019F, "OOo"},
    {0x01AB, "t?\?TUu"},
    {0x01B6, "z"},
    {0x01C0, "|?\?!"},
    {0x01CD, "AaIiOoUuUuUuUuUu?Aa"},
    {0x01E4, "GgGgKkOoOo?\?j"},
    {0x0261, "g"},
    {0x02B9, "'\"?'"},
    {0x02C4, "^?\?\?'\xAF\xB4`?_"},
    {0x02DA, "\xB0"},
    {0x0300, "`\xB4^~\xAF\xAF?\?\xA8?\xB0?\?\?\""},
    {0x0327, "\xB8"},
    {0x0331, "__"},
    {0x037E, ";"},
    {0x0393, "G"},
    {0x0398, "T"},
    {0x03A3, "S?\?F?\?O"},
    {0x03B1, "a\xDF?de"},
    {0x03BC, "\xB5?\?\?p?\?st?f"},
    {0x04BB, "h"},
    {0x0589, ":"},
    {0x066A, "%"},
    {0x2000, "       "},
    {0x2010, "--"},
    {0x2017, "="},
    {0x2024, "\xB7"},
    {0x2032, "'?\?`"},
    {0x2044, "/"},
    {0x2070, "\xB0?\?\?45678"},
    {0x207F, "n0123456789"},
    {0x20A1, "\xA2?\?\xA3?\?P"},
    {0x2102, "C"},
    {0x2107, "E?\?gHHHh?IILl?N?\?PPQRRR"},
    {0x2124,
     "Z?\?\?Z?K\xC5"
     "BCeeEF?Mo"},
    {0x2205, "\xD8"},
    {0x2212, "-\xB1?/\\*\xB0\xB7v?\?\?8"},
    {0x2223, "|"},
    {0x2229, "n"},
    {0x2236, ":"},
    {0x223C, "~"},
    {0x2248, "\x98"},
    {0x2261, "=?\?=="},
    {0x226A, "\xAB\xBB"},
    {0x22C5, "\xB7"},
    {0x2302, "\xA6^"},
    {0x2310, "\xAC"},
    {0x2320, "()"},
    {0x2329, "<>"},
    {0x2500, "-?\xA6"},
    {0x250C, "+?\?\?+?\?\?+?\?\?+?\?\?+"},
    {0x2524, "\xA6"},
    {0x252C, "-"},
    {0x2534, "-"},
    {0x253C, "+"},
    {0x2550, "-\xA6++++++++++++\xA6\xA6\xA6\xA6\xA6\xA6------+++"},
    {0x2580, "\xAF?\?\?_?\?\?\xA6?\?\?\xA6?\?\?\xA6\xA6\xA6\xA6"},
    {0x25A0, "\xA6"},
    {0x263C, "\xA4"},
    {0x2758, "|"},
    {0x3000, " "},
    {0x3008, "<>\xAB\xBB"},
    {0x301A, "[]"},
    {0x30FB, "\xB7"},
    {0xFF01, "!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"},
};

}  // namespace

std::optional<char> likeUnicode(char16_t character) noexcept {
    if (const std::optional<char> same = fromUnicode(character))
        return same;
    const auto* row = std::upper_bound(std::begin(kLikeLetters), std::end(kLikeLetters), character,
                                       [](char16_t wanted, const LikeLetters& one) { return wanted < one.first; });
    if (row == std::begin(kLikeLetters))
        return std::nullopt;
    const std::size_t place = static_cast<std::size_t>(character - (row - 1)->first);
    const std::string_view bytes = (row - 1)->bytes;
    return place < bytes.size() && bytes[place] != '?' ? std::optional(bytes[place]) : std::nullopt;
}

}  // namespace simwin
