// Text of ANSI code page 1252: letter case, and the ways from and to Unicode.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace simwin {

// The only ANSI code page that a station can have so far.
inline constexpr unsigned kAnsiCodePage = 1252;

constexpr unsigned char byteOf(char character) noexcept {
    return static_cast<unsigned char>(character);
}

// A letter's other case; a byte without one stays as it is. Two letters have an upper case outside the code page
// (0x83 and 0xB5) and one has none (0xDF).
char toUpper(char character) noexcept;
// Below the blank, or DEL.
bool isControl(char character) noexcept;
char toLower(char character) noexcept;

std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

// Below 0, 0 or above 0: the order of two names without regard to case, as registry, files and variables compare them.
int compareNoCase(std::string_view left, std::string_view right) noexcept;
bool equalNoCase(std::string_view left, std::string_view right) noexcept;

// Every byte has a character: Windows reads the five unused ones (81 8D 8F 90 9D) as the control characters of the
// same number.
char16_t toUnicode(char character) noexcept;

// None for a character that the code page does not hold.
std::optional<char> fromUnicode(char32_t character) noexcept;

// The same with Windows' best fit: a letter that the code page does not hold becomes a like one ("L" for a barred one).
std::optional<char> likeUnicode(char16_t character) noexcept;

// What a narrow registry call makes of UTF-16LE data: a character outside the code page becomes a like one or "?" (a
// pair of surrogates two), and the second half of a cut character at the end is dropped.
std::string fromUtf16(std::string_view littleEndianBytes);

struct Utf8Error {
    std::size_t position;  // of the first byte of the character
    bool outsideCodePage;  // true: proper UTF-8, but the code page does not hold it
};

// The bytes of a UTF-8 text, or none, and then `error` tells what is wrong with it.
std::optional<std::string> fromUtf8(std::string_view text, Utf8Error& error);

// The same for text that was checked: what the code page does not hold becomes what fromUtf16 makes of it.
std::string fromUtf8Leniently(std::string_view text);

bool isUtf8(std::string_view text) noexcept;

std::string toUtf8(std::string_view bytes);

// Appends one character, a scalar value up to 0x10FFFF.
void appendUtf8(std::string& text, char32_t character);

}  // namespace simwin
