// Files that nobody vouches for.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "simwin/text/ReadError.h"

namespace simwin {

// The file's bytes. One that is longer than `limit` bytes is refused, and no more of it than that is read, whatever
// length it tells. A folder, a device, a pipe and a socket are refused, also behind a link, and none is waited for.
// Throws ReadError, which begins with `name` and tells the system's reason where there is one.
std::string readFile(const std::filesystem::path& path, const std::string& name, std::size_t limit);

// "registry.reg is longer than 64 MiB".
ReadError tooLong(const std::string& name, std::size_t limit);

}  // namespace simwin
