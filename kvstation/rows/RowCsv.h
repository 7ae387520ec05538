// Rows as CSV (RFC 4180) in UTF-8: a header, then a line a row, each with its end of line.
#pragma once

#include <string>

#include "kvstation/rows/StationRow.h"

namespace kvstation {

std::string csvHeader(const FieldList& fields);

// A byte that is no character becomes the replacement character, and what nobody knows an empty cell.
std::string csvLine(const StationRow& row, const FieldList& fields);

}  // namespace kvstation
