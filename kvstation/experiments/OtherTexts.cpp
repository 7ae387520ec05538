#include "kvstation/experiments/OtherTexts.h"

#include <optional>

#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::string_view kModuleWords[] = {
#include "module_words.inc"
};

constexpr std::string_view kModuleNames[] = {
#include "module_names.inc"
};

char next(char character, char first, char last) {
    const bool isLetter = first != '0';
    return character == last && isLetter ? first : static_cast<char>(character + 1);
}

// Empty where the page has no such character.
std::string inCodePage(char32_t character) {
    if (character < 0x80 || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return {};
    std::string utf8;
    simwin::appendUtf8(utf8, character);
    simwin::Utf8Error ignored{};
    return simwin::fromUtf8(utf8, ignored).value_or(std::string());
}

// No digit becomes a zero, which a number would lose at its beginning.
char otherCharacter(char character) {
    if (character == '9')
        return '8';
    for (const auto& [first, last] : {std::pair{'0', '8'}, {'a', 'f'}, {'g', 'z'}, {'A', 'F'}, {'G', 'Z'}})
        if (character >= first && character <= last)
            return next(character, first, last);
    return character;
}

bool isCapital(const std::string& letter) {
    return simwin::lowerCase(letter) != letter;
}

bool isSmall(const std::string& letter) {
    return simwin::upperCase(letter) != letter;
}

// The nearest letter beyond ASCII that has as many bytes and the same case; the letter itself where there is none.
std::string otherLetter(std::string_view bytes) {
    constexpr char32_t kFarthest = 256;
    std::string letter(bytes);
    const std::string utf8 = simwin::toUtf8(letter);
    if (!simwin::isUtf8(utf8))
        return letter;
    const char32_t number = simwin::decodeUtf8(utf8).character;
    for (char32_t step = 1; step <= kFarthest; ++step) {
        for (const char32_t other : {number + step, number - step}) {
            if (std::string candidate = inCodePage(other); candidate.size() == letter.size() &&
                                                           isCapital(candidate) == isCapital(letter) &&
                                                           isSmall(candidate) == isSmall(letter))
                return candidate;
        }
    }
    return letter;
}

bool differsEverywhere(const std::string& left, const std::string& right) {
    for (std::size_t i = 0; i < left.size(); ++i)
        if (left[i] == right[i])
            return false;
    return left.size() == right.size();
}

std::string otherNumber(unsigned number) {
    constexpr unsigned kLargest = 255;
    std::string text = std::to_string(number);
    for (unsigned other = 0; other <= kLargest; ++other)
        if (std::string candidate = std::to_string(other); differsEverywhere(candidate, text))
            return candidate;
    return text;
}

}  // namespace

std::string sameShape(std::string_view text) {
    std::string other;
    if (const std::optional<std::string> address = simwin::parseDotted(text)) {
        for (const char byte : *address)
            other += (other.empty() ? "" : ".") + otherNumber(static_cast<unsigned char>(byte));
        return other;
    }
    while (!text.empty()) {
        const std::string_view character = text.substr(0, simwin::characterLength(text));
        other += character.size() > 1 || static_cast<unsigned char>(character[0]) >= 0x80
                     ? otherLetter(character)
                     : std::string(1, otherCharacter(character[0]));
        text.remove_prefix(character.size());
    }
    return other;
}

std::span<const std::string_view> moduleWords() {
    return kModuleWords;
}

std::span<const std::string_view> moduleNames() {
    return kModuleNames;
}

}  // namespace kvstation
