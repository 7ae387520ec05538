// A record as JSON: one object with the record's field names in the order of their offsets, numbers as numbers. A text
// that holds bytes that are no character of its code page is an object with the text, as far as it goes, and its bytes:
// {"text": "...", "hex": "41 83"}. Behind the fields stands when and by what the record was collected:
// "collected": {"at": "2026-11-22T12:00:00Z", "library": "1.2.0.0", "tool": "1.2.0"}, or null where that is not known.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "kvstation/report/Report.h"

namespace kvstation {

std::string jsonView(const Report& report);

// Of one field.
nlohmann::ordered_json valueJson(const Record& record, std::size_t field);

// False for a text that does not tell all of its bytes, such as one with half a character at the field's end.
bool tellsAll(const Record& record, std::size_t field);

// JSON as the tool prints it; a byte that is no character becomes the replacement character.
std::string printed(const nlohmann::ordered_json& json);
// The same in one line.
std::string printedLine(const nlohmann::ordered_json& json);

// Reads what jsonView wrote: record and `collected`, which may be missing. Texts are in the ANSI code page in force
// where that holds them. Throws Failure with what is wrong, a field that stands twice included; `name` is the file that
// it tells of.
Report recordFromJson(std::string_view json, std::string_view name);

// The same of an object that holds the fields and may hold more.
Record recordFromFields(const nlohmann::ordered_json& object, std::string_view name);

}  // namespace kvstation
