#include "simwin/text/Utf8.h"

namespace simwin {
namespace {

constexpr unsigned byteAt(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

// Of a text that does not start with a character: the bytes that could be the start of one, and at least one.
std::size_t lengthOfBroken(std::string_view text) {
    std::size_t length = 1;
    for (; length < text.size(); ++length)
        if (decodeUtf8(std::string(text.substr(0, length + 1)) + "\x80\x80").length <= length + 1)
            break;
    return length;
}

}  // namespace

Utf8Character decodeUtf8(std::string_view text) noexcept {
    const unsigned first = byteAt(text, 0);
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
        if ((byteAt(text, i) & 0xC0) != 0x80)
            return {};
        character = character << 6 | (byteAt(text, i) & 0x3Fu);
    }
    if (character < least || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return {};
    return {character, length};
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

std::string repairedUtf8(std::string_view text) {
    std::string repaired;
    while (!text.empty()) {
        const std::size_t length = decodeUtf8(text).length;
        if (length != 0)
            repaired += text.substr(0, length);
        else
            appendUtf8(repaired, kReplacementCharacter);
        text.remove_prefix(length != 0 ? length : lengthOfBroken(text));
    }
    return repaired;
}

}  // namespace simwin
