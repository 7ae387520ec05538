// The fields of the station record as a table: every view, the layout and the documents come from it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

enum class FieldType {
    Text,
    Number,    // signed, 32 bits
    Unsigned,  // 32 bits
};

struct Field {
    std::string_view name;
    std::size_t offset;
    std::size_t width;  // in bytes
    std::size_t limit;  // the most characters that a text receives; 0 for a number
    FieldType type;
    bool isList;  // of items joined with ";"
    std::string_view group;
    std::string_view meaning;
};

// In the order of their offsets.
std::span<const Field> fields();

struct Group {
    std::string_view name;  // as the fields have it
    int hue;                // of the colour that shows it, in degrees
};

// In the order in which people read them.
std::span<const Group> groups();

// The index in fields(), or fields().size() when there is no such field.
std::size_t findField(std::string_view name);
// The same of a name that somebody typed, in any letter case.
std::size_t findTypedField(std::string_view name);
// And where there is none, throws WrongUse with the names that are close.
std::size_t requireTypedField(std::string_view name);

// Such as 0x01F4.
std::string hexOffset(std::size_t offset);

// The names that someone may have meant who typed `name`, the closest first, at most three.
std::vector<std::string_view> similarFields(std::string_view name);

}  // namespace kvstation
