// Files and folders by names in any letter case, as Windows finds them.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace kvstation {

using FolderNames = std::vector<std::string_view>;

// The path without the slashes and dots at its end, which would hide its last name.
std::filesystem::path withoutEnd(const std::filesystem::path& path);

bool isSameName(std::string_view left, std::string_view right);

// Sorted. Throws Failure where the folder cannot be read.
std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder);

// A disk of Windows has no two names that differ in letter case alone; a folder here can, which is a Failure.
std::optional<std::filesystem::path> findEntry(const std::filesystem::path& folder, std::string_view name);

// From the folder on down; none where a name on the way is no folder.
std::optional<std::filesystem::path> findPath(const std::filesystem::path& folder, const FolderNames& names);

// The path of what the folder has of that name, empty when there is none.
std::string fileNamedIn(const std::filesystem::path& folder, std::string_view name);

}  // namespace kvstation
