// Records kept in files: the raw bytes, or JSON as the tool prints it, in UTF-8 or in UTF-16 with a byte-order mark.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "kvstation/report/Report.h"

namespace kvstation {

// Far more than a record in JSON takes, with every character escaped.
inline constexpr std::size_t kLongestRecordFile = 256 * 1024;

// The file as text, if it is one: UTF-8 with or without its byte-order mark, or UTF-16 with it, which PowerShell's ">"
// writes.
std::string utf8Text(std::string_view bytes);

// Tells the two forms apart by what is in the file. Throws Failure when it is neither; `name` is the file it tells of.
Report recordFromFileBytes(std::string_view bytes, const std::string& name);

Report readRecordFile(const std::string& path);

}  // namespace kvstation
