// Texts in the bytes of a registry value or a resource, which may be wide.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

// All texts are of the code page in force.
struct BinaryText {
    std::size_t place;  // of its first byte
    std::size_t size;   // bytes
    bool isWide;
    std::string text;
};

// Every run of characters that can be shown: narrow ones of any length where the whole is text, else of four or more
// bytes, and then those of ASCII alone too, which a byte in front of them may hide in a page of two bytes; wide ones of
// three or more Latin characters, at even and at odd places.
std::vector<BinaryText> textsIn(std::string_view bytes, bool isText);

// What stands at the place of such a text in other bytes of the same length.
std::string textAt(std::string_view bytes, const BinaryText& place);

// The text of data that is wide as a whole, its NULs included. `isText`: of a value that holds text.
std::optional<std::string> wideTextOf(std::string_view bytes, bool isText);
// The bytes of such a text.
std::string widened(std::string_view text);

using ReplaceText = std::function<std::string(const std::string&)>;

// The following call replace(text) for each text of at least three characters and put what it gives into the place,
// unless that is of another length.

// The texts of ASCII alone; none in a page of one byte or of UTF-8, where they are parts of the narrow text.
void replaceAscii(std::string& bytes, const ReplaceText& replace);
// The wide texts of Latin characters: of one byte and a NUL each.
void replaceWideLatin(std::string& bytes, const ReplaceText& replace);
// Whatever is wide text if it is text at all: in a page of ideographs most of any data is.
void replaceAnyWide(std::string& bytes, const ReplaceText& replace);

}  // namespace kvstation
