// Files by UTF-8 names, read and written whole. Throws Failure with the file's name, the system's code and its text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvstation {

bool isFolder(const std::string& path);

// The file's bytes; a file longer than `limit` is refused.
std::string readFile(const std::string& path, std::size_t limit);

// A file that could not be written whole does not stay.
void writeFile(const std::string& path, std::string_view bytes);

}  // namespace kvstation
