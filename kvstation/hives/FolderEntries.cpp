#include "kvstation/hives/FolderEntries.h"

#include <algorithm>
#include <string>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

using Path = std::filesystem::path;

Path withoutEnd(const Path& path) {
    const Path normal = path.lexically_normal();
    return normal.has_filename() || !normal.has_parent_path() ? normal : normal.parent_path();
}

bool isSameName(std::string_view left, std::string_view right) {
    return simwin::equalNoCaseInUtf8(left, right);
}

std::vector<Path> entriesOf(const Path& folder) {
    std::vector<Path> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    if (error)
        throw Failure(folder.string() + " cannot be read: " + error.message());
    std::ranges::sort(entries);
    return entries;
}

std::optional<Path> findEntry(const Path& folder, std::string_view name) {
    std::optional<Path> found;
    for (const Path& entry : entriesOf(folder)) {
        if (!isSameName(entry.filename().string(), name))
            continue;
        if (found)
            throw Failure(folder.string() + " holds both " + found->filename().string() + " and " +
                          entry.filename().string() + "; leave one of them there");
        found = entry;
    }
    return found;
}

std::optional<Path> findPath(const Path& folder, const FolderNames& names) {
    std::optional<Path> place = folder;
    for (const std::string_view name : names) {
        if (!isFolder(place->string()))
            return std::nullopt;
        place = findEntry(*place, name);
        if (!place)
            return std::nullopt;
    }
    return place;
}

std::string fileNamedIn(const Path& folder, std::string_view name) {
    const std::optional<Path> file = findEntry(folder, name);
    return file ? file->string() : std::string();
}

}  // namespace kvstation
