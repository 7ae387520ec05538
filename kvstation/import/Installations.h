// The installations of Windows on a disk.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kvstation {

struct Installation {
    std::filesystem::path hives;                   // the folder with SYSTEM or SYSTEM.DAT
    std::optional<std::filesystem::path> windows;  // of Windows NT; none: the files lie by themselves
    bool isOld = false;                            // Windows 9x, which keeps them in its own folder
    std::vector<std::string> remarks{};            // a line for each other one
};

// The one whose folder, System32, config or RegBack this is, or that lies on the disk whose root it is. Throws Failure
// when there is none, or several of which none is the older one of another.
Installation findInstallation(const std::filesystem::path& folder);

// The path of the folder's SYSTEM or SYSTEM.DAT, empty when it holds none.
std::string systemFileIn(const std::filesystem::path& folder);

}  // namespace kvstation
