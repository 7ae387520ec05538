#pragma once

#include <bit>
#include <cstddef>
#include <string>
#include <string_view>

namespace simwin {

// The units of bytes in an order; half of one at the end is dropped.
std::u16string utf16FromBytes(std::string_view bytes, std::endian order = std::endian::little);

// The units as UTF-16LE data.
std::string bytesOfUtf16(std::u16string_view units);

// Appends one character, a scalar value up to 0x10FFFF.
void appendUtf16(std::u16string& units, char32_t character);

struct Utf16Character {
    char32_t character;
    std::size_t length;  // units
};

// The character at the start of a text, which is not empty. Half a pair of surrogates is the replacement character.
Utf16Character decodeUtf16(std::u16string_view units) noexcept;

std::string utf8FromUtf16(std::u16string_view units);

// What is no UTF-8 becomes what repairedUtf8 makes of it.
std::u16string utf16FromUtf8(std::string_view text);

// How many units stand before the zero that ends a text. Windows' declarations have a type of their own for them.
template <class Unit>
std::size_t utf16Length(const Unit* text) {
    std::size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

}  // namespace simwin
