#include "kvstation/cause/OtherTexts.h"

#include <optional>

#include "simwin/Address.h"

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

// No digit becomes a zero, which a number would lose at its beginning.
char otherCharacter(char character) {
    if (character == '9')
        return '8';
    for (const auto& [first, last] : {std::pair{'0', '8'}, {'a', 'f'}, {'g', 'z'}, {'A', 'F'}, {'G', 'Z'}})
        if (character >= first && character <= last)
            return next(character, first, last);
    return character;
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
    for (const char character : text)
        other += otherCharacter(character);
    return other;
}

std::span<const std::string_view> moduleWords() {
    return kModuleWords;
}

std::span<const std::string_view> moduleNames() {
    return kModuleNames;
}

}  // namespace kvstation
