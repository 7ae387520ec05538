// Where the tool stands. Windows only.
#pragma once

#include <string>

#include "framework/Windows.h"

namespace kvstation {

// The file of a loaded library, or with null of the tool, in UTF-8.
std::string pathOf(HMODULE module);

// A file in the tool's folder.
std::string besideProgram(const std::string& name);

}  // namespace kvstation
