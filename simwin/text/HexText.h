// Hexadecimal digits: of numbers, and of bytes in a row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simwin {

enum class HexCase { Lower, Upper };

// At least `width` digits: "07ff".
std::string hexDigits(std::uint64_t number, std::size_t width = 1, HexCase letters = HexCase::Lower);

// A row of bytes, two hexadecimal digits each: "41 42".
std::string hexText(std::string_view bytes, char separator);

bool isHexDigit(char character) noexcept;

// The byte that one digit or two tell; nothing when that is not what the text is.
std::optional<char> byteOfHex(std::string_view digits) noexcept;

}  // namespace simwin
