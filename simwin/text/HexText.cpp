#include "simwin/text/HexText.h"

#include <algorithm>
#include <charconv>

namespace simwin {

std::string hexDigits(std::uint64_t number, std::size_t width, HexCase letters) {
    const std::string_view all = letters == HexCase::Upper ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string digits;
    for (; number != 0 || digits.size() < width; number >>= 4)
        digits += all[number & 0xF];
    std::ranges::reverse(digits);
    return digits;
}

std::string hexText(std::string_view bytes, char separator) {
    std::string text;
    for (const char byte : bytes) {
        if (!text.empty())
            text += separator;
        text += hexDigits(static_cast<unsigned char>(byte), 2, HexCase::Upper);
    }
    return text;
}

bool isHexDigit(char character) noexcept {
    return std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

std::optional<char> byteOfHex(std::string_view digits) noexcept {
    if (digits.empty() || digits.size() > 2 || !std::ranges::all_of(digits, isHexDigit))
        return std::nullopt;
    unsigned byte = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    return static_cast<char>(static_cast<unsigned char>(byte));
}

}  // namespace simwin
