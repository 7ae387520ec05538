// The picture of the record's bytes: every field at its place, what is filled stronger than what is empty.
#pragma once

#include <string>

#include "kvstation/record/Record.h"

namespace kvstation {

// "0x0727, 37 of 100 bytes": a text ends before its field does.
std::string placeOf(const Field& field, const Value& value);

std::string mapOfBytes(const Record& record);

}  // namespace kvstation
