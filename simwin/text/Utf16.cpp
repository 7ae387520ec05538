#include "simwin/text/Utf16.h"

#include "simwin/text/Utf8.h"

namespace simwin {
namespace {

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

std::u16string utf16FromBytes(std::string_view bytes, std::endian order) {
    const auto byteAt = [&](std::size_t place) { return unsigned{static_cast<unsigned char>(bytes[place])}; };
    const std::size_t low = order == std::endian::little ? 0 : 1;
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units.push_back(static_cast<char16_t>(byteAt(i + low) | byteAt(i + 1 - low) << 8));
    return units;
}

std::string bytesOfUtf16(std::u16string_view units) {
    std::string bytes;
    bytes.reserve(units.size() * 2);
    for (const char16_t unit : units) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

void appendUtf16(std::u16string& units, char32_t character) {
    if (character > 0xFFFF) {
        units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)));
        character = 0xDC00 + ((character - 0x10000) & 0x3FF);
    }
    units.push_back(static_cast<char16_t>(character));
}

Utf16Character decodeUtf16(std::u16string_view units) noexcept {
    const char16_t first = units[0];
    if (isHighSurrogate(first) && units.size() > 1 && isLowSurrogate(units[1]))
        return {0x10000 + ((first & 0x3FFu) << 10 | (units[1] & 0x3FFu)), 2};
    return {isHighSurrogate(first) || isLowSurrogate(first) ? kReplacementCharacter : char32_t{first}, 1};
}

std::string utf8FromUtf16(std::u16string_view units) {
    std::string text;
    while (!units.empty()) {
        const Utf16Character one = decodeUtf16(units);
        appendUtf8(text, one.character);
        units.remove_prefix(one.length);
    }
    return text;
}

std::u16string utf16FromUtf8(std::string_view text) {
    const std::string proper = repairedUtf8(text);
    std::u16string units;
    for (std::string_view rest = proper; !rest.empty();) {
        const Utf8Character one = decodeUtf8(rest);
        appendUtf16(units, one.character);
        rest.remove_prefix(one.length);
    }
    return units;
}

}  // namespace simwin
