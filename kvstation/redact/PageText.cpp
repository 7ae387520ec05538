#include "kvstation/redact/PageText.h"

#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <unordered_map>

#include "kvstation/text/CharacterRange.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

constexpr char32_t kFirstBeyondAscii = 0x80;
constexpr char32_t kFirstEastAsian = 0x2E80;  // of Unicode: radicals, kana, ideographs, syllables
constexpr std::size_t kEastAsianWeight = 3;   // a name of two ideographs is as rare as one of six letters

// What stands between words in Unicode beyond ASCII.
constexpr CharacterRange kBetweenWords[] = {
    {0x80, 0xA9},     {0xAB, 0xB4},     {0xB6, 0xB9},     {0xBB, 0xBF},     {0xD7, 0xD7},     {0xF7, 0xF7},
    {0x2C2, 0x2DF},   {0x2000, 0x2BFF}, {0x2E00, 0x2E7F}, {0x3000, 0x3004}, {0x3008, 0x3020}, {0x3030, 0x3030},
    {0x303D, 0x303F}, {0x30FB, 0x30FB}, {0x3200, 0x33FF}, {0xFE10, 0xFE6F}, {0xFF00, 0xFF0F}, {0xFF1A, 0xFF20},
    {0xFF3B, 0xFF40}, {0xFF5B, 0xFF65}, {0xFFE0, 0xFFFF},
};

// The letters that stand-ins are made of, by scripts: known to every Unicode, and each by itself.
constexpr CharacterRange kScripts[] = {
    {0xC0, 0x24F},    {0x386, 0x3CE},   {0x400, 0x45F},   {0x5D0, 0x5EA},     {0x620, 0x64A},
    {0xE01, 0xE2E},   {0x1E00, 0x1EFF}, {0x3041, 0x3094}, {0x30A1, 0x30F4},   {0x4E00, 0x9FA5},
    {0xAC00, 0xD7A3}, {0xFF41, 0xFF5A}, {0xFF66, 0xFF9D}, {0x20000, 0x2A6D6},
};
constexpr std::size_t kEnough = 16;  // letters, for one of them not to be guessed

// 0 for what is no character of the page.
char32_t unicodeOf(std::string_view character) {
    return simwin::survivesUtf8(character) ? simwin::decodeUtf8(simwin::toUtf8(character)).character : 0;
}

// Letters of one script whose bytes look alike to whoever reads byte by byte. A second byte beyond ASCII is like any
// other such.
struct Form {
    std::size_t size;
    char32_t asciiByte;            // the second one, or 0
    const CharacterRange* script;  // null: of any

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy takes the 0 of its comparisons for a pointer.
    auto operator<=>(const Form&) const = default;
};

Form formOf(char32_t character, char32_t unicode) {
    const char32_t last = character & 0xFF;
    return {sizeOf({&character, 1}), last < kFirstBeyondAscii ? last : 0, rangeOf(kScripts, unicode)};
}

struct Known {
    char32_t self;
    char32_t upper;
    char32_t lower;
    bool isLetter;
    std::size_t weight;
    Form form;

    bool isCased() const { return upper != lower; }
};

// The small letters of a form.
struct Letters {
    PageText cased;
    PageText caseless;
};

char32_t otherCase(char32_t character, std::string (*change)(std::string_view)) {
    const std::string bytes = bytesOf({&character, 1});
    const std::string other = change(bytes);
    return other.size() == bytes.size() ? pageText(other)[0] : character;
}

Known look(char32_t character) {
    const char32_t unicode = unicodeOf(bytesOf({&character, 1}));
    return {character,
            otherCase(character, simwin::upperCase),
            otherCase(character, simwin::lowerCase),
            unicode != 0 && rangeOf(kBetweenWords, unicode) == nullptr,
            unicode >= kFirstEastAsian ? kEastAsianWeight : 1,
            formOf(character, unicode)};
}

// What was asked about one page's characters beyond ASCII.
class Page {
  public:
    const Known& known(char32_t character) {
        const auto [place, isNew] = m_known.try_emplace(character);
        if (isNew)
            place->second = look(character);
        return place->second;
    }

    // As like the letter as there are enough: a sharp s is one among few without another case.
    PageTextView standInsFor(const Known& letter) {
        if (m_standIns.empty())
            findStandIns();
        const Known& small = known(letter.lower);
        PageTextView most(&small.self, 1);
        for (const CharacterRange* script : {small.form.script, static_cast<const CharacterRange*>(nullptr)}) {
            const Letters& letters = m_standIns[{small.form.size, small.form.asciiByte, script}];
            for (const bool isCased : {letter.isCased(), !letter.isCased()})
                if (const PageText& all = isCased ? letters.cased : letters.caseless;
                    most.size() < kEnough && all.size() > most.size())
                    most = all;
        }
        return most;
    }

  private:
    void findStandIns() {
        for (const CharacterRange& script : kScripts)
            for (char32_t unicode = script.first; unicode <= script.last; ++unicode)
                addStandIn(unicode);
    }

    void addStandIn(char32_t unicode) {
        std::string utf8;
        simwin::appendUtf8(utf8, unicode);
        simwin::Utf8Error error{};
        const std::optional<std::string> bytes = simwin::fromUtf8(utf8, error);
        const Known one = bytes ? look(pageText(*bytes)[0]) : Known{};
        if (!one.isLetter || one.lower != one.self)
            return;
        for (const Form& form : {one.form, Form{one.form.size, one.form.asciiByte, nullptr}}) {
            Letters& letters = m_standIns[form];
            (one.isCased() ? letters.cased : letters.caseless) += one.self;
        }
    }

    std::unordered_map<char32_t, Known> m_known;
    std::map<Form, Letters> m_standIns;
};

Page& pageInForce() {
    static std::map<unsigned, Page> pages;
    return pages[simwin::codePageInForce()];
}

bool isSmallAscii(char32_t character) {
    return character >= U'a' && character <= U'z';
}
bool isCapitalAscii(char32_t character) {
    return character >= U'A' && character <= U'Z';
}

}  // namespace

PageText pageText(std::string_view bytes) {
    PageText text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = simwin::characterLength(bytes);
        char32_t character = 0;
        for (const char byte : bytes.substr(0, length))
            character = character << 8 | simwin::byteOf(byte);
        text += character;
        bytes.remove_prefix(length);
    }
    return text;
}

std::string bytesOf(PageTextView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const char32_t character : text)
        for (int shift = 24; shift >= 0; shift -= 8)
            if (shift == 0 || character >> shift != 0)
                bytes += static_cast<char>(static_cast<unsigned char>(character >> shift));
    return bytes;
}

std::size_t sizeOf(PageTextView text) {
    std::size_t size = 0;
    for (const char32_t character : text)
        size += character > 0xFFFFFF ? 4 : character > 0xFFFF ? 3 : character > 0xFF ? 2 : 1;
    return size;
}

bool isDigit(char32_t character) {
    return character >= U'0' && character <= U'9';
}
bool isHexDigit(char32_t character) {
    return isDigit(character) || (character >= U'a' && character <= U'f') || (character >= U'A' && character <= U'F');
}
bool isLetter(char32_t character) {
    return character < kFirstBeyondAscii ? isSmallAscii(character) || isCapitalAscii(character)
                                         : pageInForce().known(character).isLetter;
}
bool isWordCharacter(char32_t character) {
    return isDigit(character) || isLetter(character);
}
bool isUpper(char32_t character) {
    return isLetter(character) && toLower(character) != character;
}
bool isLower(char32_t character) {
    return isLetter(character) && !isUpper(character);
}

char32_t toUpper(char32_t character) {
    if (character < kFirstBeyondAscii)
        return isSmallAscii(character) ? character - U'a' + U'A' : character;
    return pageInForce().known(character).upper;
}
char32_t toLower(char32_t character) {
    if (character < kFirstBeyondAscii)
        return isCapitalAscii(character) ? character - U'A' + U'a' : character;
    return pageInForce().known(character).lower;
}

PageTextView withoutDotsBehind(PageTextView text) {
    while (text.ends_with(U'.'))
        text.remove_suffix(1);
    return text;
}

PageTextView runOf(PageTextView text, bool (*belongs)(char32_t)) {
    const auto end = std::ranges::find_if_not(text, belongs);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

PageText lowerCase(PageTextView text) {
    PageText lower(text);
    std::ranges::transform(lower, lower.begin(), toLower);
    return lower;
}

PageText inCaseOf(PageTextView original, PageTextView standIn) {
    const bool isCapital = std::ranges::any_of(original, isUpper) && std::ranges::none_of(original, isLower);
    PageText result(standIn);
    for (std::size_t i = 0; i < result.size() && i < original.size(); ++i)
        if (isLetter(original[i]) ? isUpper(original[i]) : isCapital)
            result[i] = toUpper(result[i]);
    return result;
}

std::size_t weightOf(PageTextView text) {
    std::size_t weight = 0;
    for (const char32_t character : text)
        weight += character < kFirstBeyondAscii ? 1 : pageInForce().known(character).weight;
    return weight;
}

PageTextView standInsFor(char32_t character) {
    if (isDigit(character))
        return U"0123456789";
    if (character < kFirstBeyondAscii)
        return U"abcdefghijklmnopqrstuvwxyz";
    return pageInForce().standInsFor(pageInForce().known(character));
}

}  // namespace kvstation
