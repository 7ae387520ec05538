// The table of counts in a document, held against a run.
#pragma once

#include <string>
#include <vector>

#include "tests/conformance/Check.h"

namespace conformance {

// One line for each function whose row tells other counts than this run's, is missing, or is not of this run. The table
// is made by tests/conformance/make-table; a row is
//
//     | `RegOpenKeyA` | 40 | 40 | 39, 1 differs |
//
// with the assertions that are made, those that hold on simwin, and those that hold under Wine. On another Windows
// there is no column to hold it against, and every function is a difference. Throws std::runtime_error when the
// document cannot be read.
std::vector<std::string> differencesFromDocument(const Report& report, const std::string& path);

}  // namespace conformance
