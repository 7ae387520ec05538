#pragma once

#include <cstdint>
#include <string_view>

#include "simwin/station/Station.h"

namespace simwin {

// The described file of a path, in any letter case, or null.
const File* findFile(const Station& station, std::string_view path);

// Why a path that is not there cannot be opened: ERROR_FILE_NOT_FOUND, or ERROR_PATH_NOT_FOUND without its folder.
std::uint32_t missingFileError(const Station& station, std::string_view path);

}  // namespace simwin
