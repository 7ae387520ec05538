// Files by UTF-8 names, read and written whole. Throws Failure with the file's name, the system's code and its text.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

std::filesystem::path pathOf(const std::string& utf8);
// With "/" between its parts.
std::string utf8Of(const std::filesystem::path& path);

// For an option or a place of the command line that takes a file or a folder: what is wrong with the name, or empty.
std::string checkFileName(const std::string& path);

bool isFolder(const std::string& path);

// The file's bytes, as simwin::readFile reads them.
std::string readFile(const std::string& path, std::size_t limit);

struct NewFile {
    std::string path;
    std::string bytes;
};

// Several files of which none is replaced before all could be written.
void writeFiles(const std::vector<NewFile>& files);

// A file that could not be written whole does not stay, and the one that it was to replace does. Behind a link
// it is the file that the link leads to. A device or a pipe takes the bytes as they come.
void writeFile(const std::string& path, std::string_view bytes);

}  // namespace kvstation
