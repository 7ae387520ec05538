#include "simwin/CodePage.h"

#include <algorithm>

namespace simwin {
namespace {

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
        // Two surrogates stand for a character beyond 16 bits.
        if (decoded.character > 0xFFFF)
            bytes += "??";
        else
            bytes.push_back(likeUnicode(static_cast<char16_t>(decoded.character)).value_or('?'));
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
