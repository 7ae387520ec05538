// A record as JSON: one object with the record's field names in the order of their offsets, numbers as numbers.
#pragma once

#include <string>
#include <string_view>

#include "kvstation/Record.h"

namespace kvstation {

std::string jsonView(const Record& record);

// Reads what jsonView wrote. Throws Failure with what is wrong, a field that stands twice included; `name` is the file
// that it tells of.
Record recordFromJson(std::string_view json, std::string_view name);

}  // namespace kvstation
