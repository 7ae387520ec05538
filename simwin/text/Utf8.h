#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace simwin {

struct Utf8Character {
    char32_t character = 0;
    std::size_t length = 0;  // bytes; 0: not UTF-8
};

// The character at the start of a text, which is not empty. Overlong forms, surrogates and numbers above 0x10FFFF are
// no UTF-8.
Utf8Character decodeUtf8(std::string_view text) noexcept;

bool isUtf8(std::string_view text) noexcept;

// Stands for what is no character.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// The text with one replacement character in the place of each beginning of a character that does not go on, and of
// each other byte that is none.
std::string repairedUtf8(std::string_view text);

// Appends one character, a scalar value up to 0x10FFFF.
void appendUtf8(std::string& text, char32_t character);

}  // namespace simwin
