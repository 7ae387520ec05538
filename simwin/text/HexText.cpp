#include "simwin/text/HexText.h"

#include <array>
#include <cstdio>

namespace simwin {

std::string hexText(std::string_view bytes, char separator) {
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        if (!text.empty())
            text += separator;
        text += digits.data();
    }
    return text;
}

}  // namespace simwin
