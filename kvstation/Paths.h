// Where the tool stands. Windows only.
#pragma once

#include <string>

namespace kvstation {

// The tool's own file, in UTF-8.
std::string programPath();

// A file in the tool's folder.
std::string besideProgram(const std::string& name);

}  // namespace kvstation
