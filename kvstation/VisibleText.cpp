#include "kvstation/VisibleText.h"

#include <algorithm>
#include <cstdio>

namespace kvstation {
namespace {

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

void appendSpelledOut(std::string& text, unsigned code) {
    char spelled[8];
    std::snprintf(spelled, sizeof spelled, "\\x%02x", code);
    text += spelled;
}

}  // namespace

std::string visible(std::string_view utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const auto next = static_cast<unsigned char>(i + 1 < utf8.size() ? utf8[i + 1] : 0);
        if (byte < 0x20 || byte == 0x7F) {
            appendSpelledOut(text, byte);
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F
            appendSpelledOut(text, next);
            ++i;
        } else {
            text += utf8[i];
        }
    }
    return text;
}

std::string shortened(std::string_view utf8, std::size_t longest) {
    if (columns(utf8) <= longest)
        return std::string(utf8);
    return std::string(utf8.substr(0, bytesOf(utf8, longest))) + "...";
}

std::size_t bytesOf(std::string_view utf8, std::size_t count) {
    std::size_t end = 0;
    for (; end < utf8.size(); ++end) {
        if (!isContinuation(utf8[end]) && count-- == 0)
            break;
    }
    return end;
}

std::size_t columns(std::string_view utf8) {
    return utf8.size() - static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), isContinuation));
}

}  // namespace kvstation
