#include "kvstation/import/Installations.h"

#include <algorithm>
#include <utility>

#include "kvstation/hives/FolderEntries.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

using Path = std::filesystem::path;

constexpr const char* kOldSystem = "SYSTEM.DAT";
constexpr const char* kOlder = "Windows.old";

std::string fileIn(const Path& folder, const char* name) {
    const std::string path = fileNamedIn(folder, name);
    return path.empty() || isFolder(path) ? std::string() : path;
}

// The folder of that name that this one is or lies in.
std::optional<Path> upTo(const Path& folder, const FolderNames& names) {
    Path place = folder;
    // NOLINTNEXTLINE(modernize-loop-convert): clang 14 does not compile the library's reversed view.
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (!isSameName(place.filename().string(), *name))
            return std::nullopt;
        place = place.parent_path();
    }
    return place;
}

// Windows itself, of a folder that is its hives' place.
std::optional<Path> windowsAbove(const Path& hives) {
    const Path whole = withoutEnd(std::filesystem::absolute(hives));
    const auto windows = upTo(whole, {"System32", "config"});
    return windows ? windows : upTo(whole, {"System32", "config", "RegBack"});
}

// Where the hives lie below a folder that is Windows, System32 or neither.
std::optional<Path> hivesBelow(const Path& folder) {
    for (const FolderNames& names : {FolderNames{"System32", "config"}, FolderNames{"config"}}) {
        std::optional<Path> config = findPath(folder, names);
        if (config && isFolder(config->string()) && !systemFileIn(*config).empty())
            return config;
    }
    return std::nullopt;
}

// Of a folder on the disk; others may be closed to us there, and are none.
std::optional<Path> hivesOfWindows(const Path& folder) {
    std::error_code error;
    if (!isFolder(folder.string()) || std::filesystem::is_symlink(folder, error) ||
        (std::filesystem::directory_iterator(folder, error), error))
        return std::nullopt;
    std::optional<Path> config = findPath(folder, {"System32", "config"});
    if (config && isFolder(config->string()) && !systemFileIn(*config).empty())
        return config;
    return fileIn(folder, kOldSystem).empty() ? std::nullopt : std::optional(folder);
}

std::string joinPaths(const std::vector<Path>& hives) {
    return joinWords(hives, ", ", [](const Path& one) { return one.string(); });
}

Installation installationAt(const Path& hives) {
    return {hives, windowsAbove(hives), !fileIn(hives, kOldSystem).empty()};
}

[[noreturn]] void failWithoutHives(const Path& folder) {
    for (const FolderNames& names :
         {FolderNames{"RegBack"}, FolderNames{"config", "RegBack"}, FolderNames{"System32", "config", "RegBack"},
          FolderNames{"Windows", "System32", "config", "RegBack"}}) {
        const std::optional<Path> copies = findPath(folder, names);
        if (copies && isFolder(copies->string()) && !systemFileIn(*copies).empty())
            throw Failure(folder.string() + " holds no SYSTEM hive, but Windows' own copy of it: name " +
                          copies->string() + " to take that");
    }
    throw Failure(folder.string() +
                  " holds no SYSTEM hive, neither itself nor in Windows/System32/config, and no SYSTEM.DAT");
}

Installation onDisk(const Path& disk) {
    std::vector<Path> current;
    std::vector<Path> older;
    for (const Path& entry : entriesOf(disk)) {
        const bool isOlder = isSameName(entry.filename().string().substr(0, std::string_view(kOlder).size()), kOlder);
        const std::optional<Path> windows = isOlder ? findPath(entry, {"Windows"}) : std::optional(entry);
        if (const std::optional<Path> hives = windows ? hivesOfWindows(*windows) : std::nullopt)
            (isOlder ? older : current).push_back(*hives);
    }
    if (current.empty())
        std::swap(current, older);
    if (current.empty())
        failWithoutHives(disk);
    if (current.size() > 1)
        throw Failure(disk.string() + " holds several installations; name the folder of one: " + joinPaths(current));
    Installation found = installationAt(current.front());
    for (const Path& one : older)
        found.remarks.push_back(disk.string() + " holds an older installation too; name " + one.string() +
                                " to take that");
    return found;
}

}  // namespace

std::string systemFileIn(const Path& folder) {
    const std::string system = fileIn(folder, "SYSTEM");
    const std::string old = fileIn(folder, kOldSystem);
    if (!system.empty() && !old.empty())
        throw Failure(folder.string() + " holds both " + Path(system).filename().string() + " and " +
                      Path(old).filename().string() + "; leave one of them there");
    return system.empty() ? old : system;
}

Installation findInstallation(const Path& folder) {
    if (!systemFileIn(folder).empty())
        return installationAt(folder);
    const std::optional<Path> below = hivesBelow(folder);
    return below ? installationAt(*below) : onDisk(folder);
}

}  // namespace kvstation
