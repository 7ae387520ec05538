// Texts of the code page in force by their characters, which may take several bytes each.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvstation {

// One for each character: its bytes, the first one highest, so that ASCII is itself. Bytes that are no character count
// as simwin::characterLength has them. The bytes of a text come back the same.
using PageText = std::u32string;
using PageTextView = std::u32string_view;

PageText pageText(std::string_view bytes);
std::string bytesOf(PageTextView text);
// The bytes that the text takes.
std::size_t sizeOf(PageTextView text);

bool isDigit(char32_t character);
bool isHexDigit(char32_t character);
// Of ASCII or beyond it. There it is whatever does not only join or mark words in Unicode, such as a dash, an
// ideographic space or a currency sign.
bool isLetter(char32_t character);
// A letter or a digit.
bool isWordCharacter(char32_t character);
bool isUpper(char32_t character);
bool isLower(char32_t character);

// The letter's other case where that takes as many bytes, else the letter.
char32_t toUpper(char32_t character);
char32_t toLower(char32_t character);
PageText lowerCase(PageTextView text);
// A stand-in in the letter case of the text whose place it takes. A letter that stands for a digit, as in a physical
// address, follows the others.
PageText inCaseOf(PageTextView original, PageTextView standIn);

// 0 where the text has none.
inline char32_t characterAt(PageTextView text, std::size_t place) {
    return place < text.size() ? text[place] : U'\0';
}
inline char32_t characterBefore(PageTextView text, std::size_t place) {
    return place == 0 ? U'\0' : text[place - 1];
}

PageTextView withoutDotsBehind(PageTextView text);
// The characters of a text, from its first one on, up to one that does not belong to them.
PageTextView runOf(PageTextView text, bool (*belongs)(char32_t));

// How much a text tells of whose it is, counted in letters of an alphabet: an ideograph or a syllable tells more.
std::size_t weightOf(PageTextView text);

// The small letters or digits that may stand in the place of one, itself among them: of its script, where the page has
// enough of it, and of as many bytes, each of which is as whoever reads byte by byte takes it. So a backslash that is
// the second byte of a character stays one. Never empty.
PageTextView standInsFor(char32_t character);

}  // namespace kvstation
