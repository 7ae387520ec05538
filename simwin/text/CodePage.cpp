#include "simwin/text/CodePage.h"

#include <algorithm>
#include <array>
#include <map>

#include "simwin/text/CodePageTables.h"

namespace simwin {
namespace {

constexpr std::array<unsigned, 17> kKnown = {437,  850,  874,  932,  936,  949,  950,  1250,         1251,
                                             1252, 1253, 1254, 1255, 1256, 1257, 1258, kUtf8CodePage};

struct Page {
    unsigned number;
    const CodePageTables* tables;  // null: UTF-8
};

const Page* g_inForce = nullptr;

// Made once a page, and kept as the process's page is.
const Page& pageOf(unsigned number) {
    static std::map<unsigned, Page> pages;
    const CodePageTables* tables = number != kUtf8CodePage ? &CodePageTables::of(number) : nullptr;
    return pages.try_emplace(number, Page{number, tables}).first->second;
}

const Page& page() noexcept {
    if (g_inForce != nullptr)
        return *g_inForce;
    static const Page& first = pageOf(kDefaultCodePage);
    return first;
}

// The first character of a text that is not empty. Half a character stands alone, at the end or before a NUL.
struct Character {
    std::size_t length;
    std::uint16_t code;  // of the page's tables; of half a character its byte
};

Character firstCharacter(const CodePageTables& tables, std::string_view text) noexcept {
    const unsigned char first = byteOf(text[0]);
    if (!tables.isLead(first) || text.size() == 1 || text[1] == '\0')
        return {1, first};
    return {2, static_cast<std::uint16_t>(first << 8 | byteOf(text[1]))};
}

void appendCode(std::string& text, std::uint16_t code) {
    if (code > 0xFF)
        text.push_back(static_cast<char>(code >> 8));
    text.push_back(static_cast<char>(code & 0xFF));
}

using Mapped = std::uint16_t (CodePageTables::*)(std::uint16_t) const noexcept;

// A half character at the end has no other case; neither has a lead byte's own code.
void changeCase(const CodePageTables& tables, char* text, std::size_t length, Mapped mapped) noexcept {
    for (std::size_t i = 0; i < length;) {
        const Character one = firstCharacter(tables, {text + i, length - i});
        const std::uint16_t other = (tables.*mapped)(one.code);
        if (one.length == 2)
            text[i] = static_cast<char>(other >> 8);
        text[i + one.length - 1] = static_cast<char>(other & 0xFF);
        i += one.length;
    }
}

std::string otherCaseInUtf8(std::string_view text, char32_t (*mapped)(char32_t)) {
    std::string other;
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character one = decodeUtf8(text.substr(i));
        if (one.length == 0)
            other.push_back(text[i]);
        else
            appendUtf8(other, mapped(one.character));
        i += std::max<std::size_t>(one.length, 1);
    }
    return other;
}

std::string otherCase(std::string_view text, Mapped mapped, char32_t (*mappedInUtf8)(char32_t)) {
    const CodePageTables* tables = page().tables;
    if (tables == nullptr)
        return otherCaseInUtf8(text, mappedInUtf8);
    std::string other(text);
    changeCase(*tables, other.data(), other.size(), mapped);
    return other;
}

void changeCaseInPlace(char* text, Mapped mapped, char (*mappedInUtf8)(char) noexcept) noexcept {
    const std::size_t length = std::char_traits<char>::length(text);
    if (const CodePageTables* tables = page().tables)
        changeCase(*tables, text, length, mapped);
    else
        std::transform(text, text + length, text, mappedInUtf8);
}

bool isAscii(char character) noexcept {
    return byteOf(character) < 0x80;
}

// As most texts are: the same bytes in every page and in UTF-8.
bool isAscii(std::string_view text) noexcept {
    return std::ranges::all_of(text, [](char character) { return isAscii(character); });
}

// Takes one character off the text and tells its upper case; null tables: of UTF-8.
std::uint32_t takeUpper(const CodePageTables* tables, std::string_view& text) noexcept {
    std::size_t length = 1;
    std::uint32_t upper = byteOf(text[0]);
    if (upper < 0x80) {
        upper = byteOf(upperAscii(text[0]));
    } else if (tables != nullptr) {
        const Character one = firstCharacter(*tables, text);
        length = one.length;
        upper = tables->upper(one.code);
    } else if (const Utf8Character one = decodeUtf8(text); one.length != 0) {
        length = one.length;
        upper = systemUpperCase(one.character);
    }
    text.remove_prefix(length);
    return upper;
}

int compareNoCase(const CodePageTables* tables, std::string_view left, std::string_view right) noexcept {
    // Nearly all names are ASCII, and no call is made more often.
    const std::size_t shorter = std::min(left.size(), right.size());
    std::size_t ascii = 0;
    for (; ascii < shorter && isAscii(static_cast<char>(left[ascii] | right[ascii])); ++ascii) {
        if (left[ascii] == right[ascii])
            continue;
        if (const int difference = upperAscii(left[ascii]) - upperAscii(right[ascii]); difference != 0)
            return difference;
    }
    left.remove_prefix(ascii);
    right.remove_prefix(ascii);
    while (!left.empty() && !right.empty()) {
        const std::uint32_t leftUpper = takeUpper(tables, left);
        const std::uint32_t rightUpper = takeUpper(tables, right);
        if (leftUpper != rightUpper)
            return leftUpper < rightUpper ? -1 : 1;
    }
    return left.empty() == right.empty() ? 0 : left.empty() ? -1 : 1;
}

// Calls `take` with each character of the page, or with its bytes where they are none.
template <class TakeCharacter, class TakeBytes>
void eachCharacter(std::string_view bytes, TakeCharacter takeCharacter, TakeBytes takeBytes) {
    const CodePageTables* tables = page().tables;
    while (!bytes.empty()) {
        std::size_t length = 1;
        std::optional<char32_t> character;
        if (isAscii(bytes[0])) {
            character = byteOf(bytes[0]);
        } else if (tables != nullptr) {
            const Character one = firstCharacter(*tables, bytes);
            length = one.length;
            character = tables->character(one.code);
        } else if (const Utf8Character one = decodeUtf8(bytes); one.length != 0) {
            length = one.length;
            character = one.character;
        }
        if (character)
            takeCharacter(*character);
        else
            takeBytes(bytes.substr(0, length));
        bytes.remove_prefix(length);
    }
}

}  // namespace

bool isControl(char character) noexcept {
    return byteOf(character) < 0x20 || byteOf(character) == 0x7F;
}

std::span<const unsigned> knownCodePages() noexcept {
    return kKnown;
}

bool isKnownCodePage(unsigned number) noexcept {
    return std::ranges::find(kKnown, number) != kKnown.end();
}

std::string listOfCodePages() {
    std::string list;
    for (const unsigned number : kKnown)
        list += (list.empty() ? "" : ", ") + std::to_string(number);
    return list;
}

unsigned codePageInForce() noexcept {
    return page().number;
}

void useCodePage(unsigned number) {
    g_inForce = &pageOf(number);
}

std::size_t characterLength(std::string_view text) noexcept {
    if (text.empty())
        return 0;
    if (const CodePageTables* tables = page().tables)
        return firstCharacter(*tables, text).length;
    return std::max<std::size_t>(decodeUtf8(text).length, 1);
}

bool isLeadByte(char byte) noexcept {
    const CodePageTables* tables = page().tables;
    return tables != nullptr && tables->isLead(byteOf(byte));
}

bool hasDoubleBytes() noexcept {
    const CodePageTables* tables = page().tables;
    return tables != nullptr && tables->hasDoubleBytes();
}

// The second byte of two can be any from 0x40 on; UTF-8 has no ASCII within its characters.
std::size_t findCharacter(std::string_view text, char character, std::size_t from) noexcept {
    if (!hasDoubleBytes())
        return text.find(character, from);
    for (std::size_t i = from; i < text.size(); i += characterLength(text.substr(i)))
        if (text[i] == character)
            return i;
    return std::string_view::npos;
}

std::size_t findLastCharacter(std::string_view text, char character) noexcept {
    if (!hasDoubleBytes())
        return text.rfind(character);
    std::size_t last = std::string_view::npos;
    for (std::size_t i = findCharacter(text, character); i != std::string_view::npos;
         i = findCharacter(text, character, i + 1))
        last = i;
    return last;
}

bool endsWithCharacter(std::string_view text, char character) noexcept {
    return !text.empty() && findLastCharacter(text, character) == text.size() - 1;
}

std::string upperCase(std::string_view text) {
    return otherCase(text, &CodePageTables::upper, systemUpperCase);
}

std::string lowerCase(std::string_view text) {
    return otherCase(text, &CodePageTables::lower, systemLowerCase);
}

void makeUpperCase(char* text) noexcept {
    changeCaseInPlace(text, &CodePageTables::upper, upperAscii);
}

void makeLowerCase(char* text) noexcept {
    changeCaseInPlace(text, &CodePageTables::lower, lowerAscii);
}

int compareNoCase(std::string_view left, std::string_view right) noexcept {
    return compareNoCase(page().tables, left, right);
}

bool equalNoCase(std::string_view left, std::string_view right) noexcept {
    // In UTF-8 a letter's other case can have another length.
    return (left.size() == right.size() || page().tables == nullptr) && compareNoCase(left, right) == 0;
}

std::string upperCaseInUtf8(std::string_view text) {
    return otherCaseInUtf8(text, systemUpperCase);
}

bool equalNoCaseInUtf8(std::string_view left, std::string_view right) noexcept {
    return compareNoCase(nullptr, left, right) == 0;
}

std::string fromUtf16(std::string_view littleEndianBytes) {
    return fromUtf16(utf16FromBytes(littleEndianBytes));
}

std::string fromUtf16(std::u16string_view text) {
    if (page().tables == nullptr)
        return utf8FromUtf16(text);
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        const std::string like = likeUtf16(unit);
        bytes += like.empty() ? "?" : like;
    }
    return bytes;
}

std::string likeUtf16(char16_t unit) {
    const CodePageTables* tables = page().tables;
    if (tables == nullptr)
        return utf8FromUtf16({&unit, 1});
    if (unit == 0)
        return std::string(1, '\0');
    std::string bytes;
    if (const std::optional<std::uint16_t> code = tables->code(unit))
        appendCode(bytes, *code);
    else
        bytes = tables->likeBytes(unit);
    return bytes;
}

std::u16string toUtf16(std::string_view bytes) {
    std::u16string text;
    eachCharacter(
        bytes, [&](char32_t character) { appendUtf16(text, character); },
        [&](std::string_view) { appendUtf16(text, kReplacementCharacter); });
    return text;
}

std::string toUtf16Bytes(std::string_view bytes) {
    return bytesOfUtf16(toUtf16(bytes));
}

std::string toUtf8(std::string_view bytes) {
    if (isAscii(bytes))
        return std::string(bytes);
    std::string text;
    text.reserve(bytes.size());
    eachCharacter(
        bytes, [&](char32_t character) { appendUtf8(text, character); }, [&](std::string_view none) { text += none; });
    return text;
}

std::string toProperUtf8(std::string_view bytes) {
    return survivesUtf8(bytes) ? toUtf8(bytes) : toUtf8(fromUtf16(toUtf16(bytes)));
}

std::optional<std::string> fromUtf8(std::string_view text, Utf8Error& error) {
    const CodePageTables* tables = page().tables;
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character one = decodeUtf8(text.substr(i));
        const std::optional<std::uint16_t> code =
            one.length != 0 && tables != nullptr ? tables->code(one.character) : std::nullopt;
        if (one.length == 0 || (tables != nullptr && !code)) {
            error = {i, one.length != 0};
            return std::nullopt;
        }
        if (code)
            appendCode(bytes, *code);
        else
            bytes += text.substr(i, one.length);
        i += one.length;
    }
    return bytes;
}

std::string fromUtf8Leniently(std::string_view text) {
    if (isAscii(text))
        return std::string(text);
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character one = decodeUtf8(text.substr(i));
        if (one.length <= 1) {
            bytes.push_back(text[i]);
        } else {
            std::u16string units;
            appendUtf16(units, one.character);
            bytes += fromUtf16(units);
        }
        i += std::max<std::size_t>(one.length, 1);
    }
    return bytes;
}

bool survivesUtf8(std::string_view bytes) {
    if (isAscii(bytes))
        return true;
    const std::string text = toUtf8(bytes);
    return isUtf8(text) && fromUtf8Leniently(text) == bytes;
}

}  // namespace simwin
