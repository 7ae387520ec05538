#include "simwin/CodePage.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace simwin {
namespace {

// Characters of the bytes 0x80 to 0x9F; all others have their own number.
constexpr std::array<char16_t, 32> kHighControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned char upperOf(unsigned char byte) {
    switch (byte) {
        case 0x9A:
        case 0x9C:
        case 0x9E:
            return static_cast<unsigned char>(byte - 0x10);
        case 0xFF:
            return 0x9F;
        case 0xF7:
            return byte;
        default:
            return (byte >= 'a' && byte <= 'z') || byte >= 0xE0 ? static_cast<unsigned char>(byte - 0x20) : byte;
    }
}

constexpr std::array<unsigned char, 256> makeUpperTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte)
        table[byte] = upperOf(static_cast<unsigned char>(byte));
    return table;
}

constexpr std::array<unsigned char, 256> makeLowerTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte)
        table[byte] = static_cast<unsigned char>(byte);
    for (unsigned byte = 0; byte < 256; ++byte)
        if (upperOf(static_cast<unsigned char>(byte)) != byte)
            table[upperOf(static_cast<unsigned char>(byte))] = static_cast<unsigned char>(byte);
    return table;
}

constexpr auto kUpper = makeUpperTable();
constexpr auto kLower = makeLowerTable();

}  // namespace

char toUpper(char character) noexcept {
    return static_cast<char>(kUpper[byteOf(character)]);
}

char toLower(char character) noexcept {
    return static_cast<char>(kLower[byteOf(character)]);
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), toUpper);
    return upper;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), toLower);
    return lower;
}

bool isControl(char character) noexcept {
    return byteOf(character) < 0x20 || byteOf(character) == 0x7F;
}

int compareNoCase(std::string_view left, std::string_view right) noexcept {
    const std::size_t shorter = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < shorter; ++i) {
        const int difference = kUpper[byteOf(left[i])] - kUpper[byteOf(right[i])];
        if (difference != 0)
            return difference;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool equalNoCase(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && compareNoCase(left, right) == 0;
}

char16_t toUnicode(char character) noexcept {
    const unsigned char byte = byteOf(character);
    return byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80u] : byte;
}

std::optional<char> fromUnicode(char32_t character) noexcept {
    if (character < 0x80 || (character >= 0xA0 && character < 0x100))
        return static_cast<char>(static_cast<unsigned char>(character));
    const auto* found = std::find(kHighControls.begin(), kHighControls.end(), character);
    if (found == kHighControls.end())
        return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(0x80 + (found - kHighControls.begin())));
}

std::string fromUtf16(std::string_view littleEndianBytes) {
    std::string text;
    text.reserve(littleEndianBytes.size() / 2);
    for (std::size_t i = 0; i + 1 < littleEndianBytes.size(); i += 2) {
        const auto unit = static_cast<char16_t>(byteOf(littleEndianBytes[i]) | byteOf(littleEndianBytes[i + 1]) << 8);
        text.push_back(likeUnicode(unit).value_or('?'));
    }
    return text;
}

}  // namespace simwin
