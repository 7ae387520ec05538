#pragma once

#include <string_view>

#include "simwin/Station.h"

namespace simwin {

// The described file of a path, in any letter case, or null.
const File* findFile(const Station& station, std::string_view path);

}  // namespace simwin
