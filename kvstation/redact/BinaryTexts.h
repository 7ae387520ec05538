// Texts in the bytes of a registry value or a resource, which may be wide.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

struct BinaryText {
    std::size_t place;  // of its first byte
    std::string text;   // without the NULs of a wide one
    bool isWide;
};

// Every run of characters that can be shown: narrow ones of any length where the whole is text, else of four or more;
// wide ones of three or more, at even and at odd places.
std::vector<BinaryText> textsIn(std::string_view bytes, bool isText);

// What stands at the place of such a text in other bytes of the same length.
std::string textAt(std::string_view bytes, const BinaryText& place);

// Whether it is wide text as a whole, its NULs included.
bool isWide(std::string_view bytes);
std::string narrowed(std::string_view wide);
std::string widened(std::string_view text);

// The wide texts: at least three characters of one byte and a NUL each, at even or at odd places. Calls replace(text)
// for each, which gives one of the same length.
template <class Replace>
void replaceWide(std::string& bytes, Replace replace) {
    constexpr std::size_t kShortest = 3;
    for (std::size_t start : {std::size_t{0}, std::size_t{1}}) {
        while (start + 1 < bytes.size()) {
            std::string text;
            for (std::size_t i = start; i + 1 < bytes.size() && bytes[i] != '\0' && bytes[i + 1] == '\0'; i += 2)
                text += bytes[i];
            if (text.size() >= kShortest) {
                text = replace(text);
                for (std::size_t i = 0; i < text.size(); ++i)
                    bytes[start + 2 * i] = text[i];
            }
            start += 2 * text.size() + 2;
        }
    }
}

}  // namespace kvstation
