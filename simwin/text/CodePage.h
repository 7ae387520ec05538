// Texts of the ANSI code page: their characters, their letter case, and the ways from and to Unicode.
//
// As in Windows there is one such page for the whole process at a time: the page in force, which all functions here go
// by that take bytes; one thread alone uses them. A described station's is in force while it is read and while its
// machine answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simwin/text/Utf16.h"
#include "simwin/text/Utf8.h"

namespace simwin {

inline constexpr unsigned kDefaultCodePage = 1252;
inline constexpr unsigned kUtf8CodePage = 65001;

constexpr unsigned char byteOf(char character) noexcept {
    return static_cast<unsigned char>(character);
}

constexpr char upperAscii(char character) noexcept {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

constexpr char lowerAscii(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr bool isAsciiDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

// Below the blank, or DEL.
bool isControl(char character) noexcept;

// The code pages that a station can have, in ascending order.
std::span<const unsigned> knownCodePages() noexcept;
bool isKnownCodePage(unsigned number) noexcept;
// "437, 850, ... 65001".
std::string listOfCodePages();

// The number of the page in force; 1252 at first.
unsigned codePageInForce() noexcept;
// Puts a page in force. Throws std::out_of_range for one that the system does not know, which none of the known is.
void useCodePage(unsigned number);

// Puts a page in force for the scope's life.
class CodePageScope {
  public:
    explicit CodePageScope(unsigned number) : m_previous(codePageInForce()) { useCodePage(number); }
    CodePageScope(const CodePageScope&) = delete;
    CodePageScope& operator=(const CodePageScope&) = delete;
    ~CodePageScope() { useCodePage(m_previous); }

  private:
    unsigned m_previous;
};

// The length in bytes of the text's first character: 1 or 2, or up to 4 in UTF-8. Bytes that are no character count as
// one of the length that their first byte promises, as far as the text goes; those of broken UTF-8 one by one. 0 for an
// empty text.
std::size_t characterLength(std::string_view text) noexcept;

// The first byte of a character of two; and whether the page has such characters.
bool isLeadByte(char byte) noexcept;
bool hasDoubleBytes() noexcept;

// Where the character of one byte stands first, at `from` or behind it, or last; npos where it does not. Its byte as
// the second half of another character does not count.
std::size_t findCharacter(std::string_view text, char character, std::size_t from = 0) noexcept;
std::size_t findLastCharacter(std::string_view text, char character) noexcept;
bool endsWithCharacter(std::string_view text, char character) noexcept;

// Every letter that has another case in the page; all other characters stay as they are.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);
// Of a text that is changed in place; no letter changes its length but in UTF-8, where those of ASCII alone change, as
// Windows' C runtime has it.
void makeUpperCase(char* text) noexcept;
void makeLowerCase(char* text) noexcept;

// Below 0, 0 or above 0: the order of two names without regard to case, as registry, files and variables compare them.
int compareNoCase(std::string_view left, std::string_view right) noexcept;
bool equalNoCase(std::string_view left, std::string_view right) noexcept;

// The same of texts in UTF-8, such as the names in station.json.
std::string upperCaseInUtf8(std::string_view text);
bool equalNoCaseInUtf8(std::string_view left, std::string_view right) noexcept;

// What a narrow registry call makes of UTF-16LE data: a character outside the code page becomes a like one (Windows'
// best fit) or "?" (a pair of surrogates two), and half of one at the end is dropped.
std::string fromUtf16(std::string_view littleEndianBytes);
// The same of one text.
std::string fromUtf16(std::u16string_view text);

// Bytes that are no character become the replacement character.
std::u16string toUtf16(std::string_view bytes);
// The same as UTF-16LE data.
std::string toUtf16Bytes(std::string_view bytes);

// What Windows makes of one UTF-16 unit; empty where nothing in the page is like it.
std::string likeUtf16(char16_t unit);

// Bytes that are no character stay as they are, so that the text is UTF-8 but for them, and they are not lost.
std::string toUtf8(std::string_view bytes);

// For names, which no file of a station can hold in bytes: what is no character becomes "?".
std::string toProperUtf8(std::string_view bytes);

struct Utf8Error {
    std::size_t position;  // of the first byte of the character
    bool outsideCodePage;  // true: proper UTF-8, but the code page does not hold it
};

// The bytes of a UTF-8 text, or none, and then `error` tells what is wrong with it.
std::optional<std::string> fromUtf8(std::string_view text, Utf8Error& error);

// The way back from toUtf8. What the code page does not hold becomes what fromUtf16 makes of it.
std::string fromUtf8Leniently(std::string_view text);

// UTF-8 says all there is about the bytes: they come back the same.
bool survivesUtf8(std::string_view bytes);

}  // namespace simwin
