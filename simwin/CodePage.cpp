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

unsigned char byteOf(char character) {
    return static_cast<unsigned char>(character);
}

struct Decoded {
    char32_t character = 0;
    std::size_t length = 0;  // 0: not UTF-8
};

// One character at the start of `text`, which is not empty. Overlong forms, surrogates and numbers above 0x10FFFF
// are no UTF-8.
Decoded decodeUtf8(std::string_view text) noexcept {
    const unsigned char first = byteOf(text[0]);
    if (first < 0x80)
        return {first, 1};
    std::size_t length = 0;
    char32_t least = 0;
    char32_t character = 0;
    if (first >= 0xC2 && first < 0xE0) {
        length = 2, least = 0x80, character = first & 0x1Fu;
    } else if (first >= 0xE0 && first < 0xF0) {
        length = 3, least = 0x800, character = first & 0x0Fu;
    } else if (first >= 0xF0 && first < 0xF5) {
        length = 4, least = 0x10000, character = first & 0x07u;
    }
    if (length == 0 || text.size() < length)
        return {};
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteOf(text[i]) & 0xC0) != 0x80)
            return {};
        character = character << 6 | (byteOf(text[i]) & 0x3Fu);
    }
    if (character < least || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return {};
    return {character, length};
}

}  // namespace

char toUpper(char character) noexcept {
    return static_cast<char>(kUpper[byteOf(character)]);
}

char toLower(char character) noexcept {
    return static_cast<char>(kLower[byteOf(character)]);
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
        const auto unit = static_cast<char32_t>(byteOf(littleEndianBytes[i]) | byteOf(littleEndianBytes[i + 1]) << 8);
        text.push_back(fromUnicode(unit).value_or('?'));
    }
    return text;
}

std::optional<std::string> fromUtf8(std::string_view text, Utf8Error& error) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Decoded decoded = decodeUtf8(text.substr(i));
        const std::optional<char> byte = decoded.length != 0 ? fromUnicode(decoded.character) : std::nullopt;
        if (!byte) {
            error = {i, decoded.length != 0};
            return std::nullopt;
        }
        bytes.push_back(*byte);
        i += decoded.length;
    }
    return bytes;
}

std::string fromUtf8Leniently(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Decoded decoded = decodeUtf8(text.substr(i));
        bytes.push_back(fromUnicode(decoded.character).value_or('?'));
        i += std::max<std::size_t>(decoded.length, 1);
    }
    return bytes;
}

bool isUtf8(std::string_view text) noexcept {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = decodeUtf8(text.substr(i)).length;
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

std::string toUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        appendUtf8(text, toUnicode(byte));
    return text;
}

void appendUtf8(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    const auto continuation = [&](int shift) { append(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6);
        continuation(0);
    } else if (character < 0x10000) {
        append(0xE0 | character >> 12);
        continuation(6);
        continuation(0);
    } else {
        append(0xF0 | character >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

}  // namespace simwin
