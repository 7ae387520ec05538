// A field's causes for people.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kvstation/cause/Causes.h"

namespace kvstation {

// The field with its meaning, what gives and decides it, and what would come next.
std::string causesText(const FieldCauses& causes, bool colours);

// What is to be said where nothing was found that changes the field.
std::string withoutCauses(const FieldCauses& causes);

// One line: the value, who gives it and what decides it, by their short names.
std::string causesLine(const FieldCauses& causes, bool colours);

// The lines of the causes alone, without roles that nobody has.
struct CauseLine {
    std::string role;  // "gives", "adds", "decides"
    std::string answer;
    std::string source;
};
std::vector<CauseLine> causeLines(const std::vector<Cause>& causes);

// "KVUser", "\"ProductName\"", "SendARP": the variable, the registry value's name or the call.
std::string shortName(const Cause& cause);

// "gives", "adds", "decides".
std::string_view wordOf(Role role);

// A key that only has to be there.
bool isKeyThere(const Cause& cause);

// What stands in a field, in quotes where it is a text.
std::string shownValue(std::size_t field, const std::string& value);

}  // namespace kvstation
