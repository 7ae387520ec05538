#include "simwin/answers/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace simwin {
namespace {

struct Found {
    std::string_view name;  // in its real letter case
    bool isFolder;
};

bool isDriveRoot(std::string_view path) {
    return path.size() >= 2 && path.size() <= 3 && path[1] == ':' && (path.size() == 2 || path[2] == '\\');
}

// A file, or a folder that some file lies in; never a drive's root, which has no name.
std::optional<Found> findPath(const Station& station, std::string_view path) {
    if (path.size() <= 3)
        return std::nullopt;
    for (const File& file : station.files) {
        if (file.path.size() < path.size() || !equalNoCase(std::string_view(file.path).substr(0, path.size()), path))
            continue;
        const bool isWhole = file.path.size() == path.size();
        if (!isWhole && file.path[path.size()] != '\\')
            continue;
        const std::string_view realPath = std::string_view(file.path).substr(0, path.size());
        return Found{realPath.substr(findLastCharacter(realPath, '\\') + 1), !isWhole};
    }
    return std::nullopt;
}

bool hasDrive(const Station& station, std::string_view path) {
    if (station.drives.contains(upperAscii(path[0])))
        return true;
    return std::any_of(station.files.begin(), station.files.end(), [path](const File& file) {
        return equalNoCase(std::string_view(file.path).substr(0, 2), path.substr(0, 2));
    });
}

bool isThere(const Station& station, std::string_view path) {
    if (isDriveRoot(path))
        return hasDrive(station, path);
    if (endsWithCharacter(path, '\\')) {
        const std::optional<Found> found = findPath(station, path.substr(0, path.size() - 1));
        return found && found->isFolder;
    }
    return findPath(station, path).has_value();
}

// What no name may hold; patterns are not simulated, and count as names that are not there.
bool isName(std::string_view path) {
    return path.find_first_of("\"<>|") == std::string_view::npos;
}

// The path up to its last backslash, or none.
std::optional<std::string_view> parentOf(std::string_view path) {
    const std::size_t end = findLastCharacter(path, '\\');
    return end != std::string_view::npos ? std::optional(path.substr(0, end)) : std::nullopt;
}

DWORD missingPathError(const Station& station, std::string_view path) {
    if (!isName(path))
        return ERROR_INVALID_NAME;
    const std::optional<std::string_view> parent = parentOf(path);
    return parent && findFile(station, *parent) != nullptr ? ERROR_DIRECTORY : missingFileError(station, path);
}

HANDLE findFirst(Machine& machine, const char* path, WIN32_FIND_DATAA* data) {
    const std::string_view wanted = path != nullptr ? path : "";
    const std::optional<Found> found = data != nullptr ? findPath(machine.station(), wanted) : std::nullopt;
    if (!found) {
        machine.setLastError(missingPathError(machine.station(), wanted));
        return INVALID_HANDLE_VALUE;
    }
    std::memset(data, 0, sizeof *data);
    data->dwFileAttributes = found->isFolder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    std::copy_n(found->name.begin(), std::min(found->name.size(), sizeof data->cFileName - 1), data->cFileName);
    return asPointer<HANDLE>(machine.state().finds.open(std::string(wanted)));
}

BOOL closeFind(Machine& machine, HANDLE find) {
    if (machine.state().finds.close(asNumber(find)))
        return TRUE;
    if (find != INVALID_HANDLE_VALUE && find != nullptr)
        machine.reportMisuse("FindClose", asNumber(find), "is no open search");
    machine.setLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}

}  // namespace

const File* findFile(const Station& station, std::string_view path) {
    for (const File& file : station.files)
        if (equalNoCase(file.path, path))
            return &file;
    return nullptr;
}

std::uint32_t missingFileError(const Station& station, std::string_view path) {
    const std::optional<std::string_view> parent = parentOf(path);
    const bool hasFolder = parent && isThere(station, *parent) && findFile(station, *parent) == nullptr;
    return hasFolder ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

}  // namespace simwin

HANDLE WINAPI sim_FindFirstFileA(LPCSTR path, LPWIN32_FIND_DATAA data) {
    return makeCall<sim_FindFirstFileA>(
        "FindFirstFileA", failsWithMinusOne(ERROR_ACCESS_DENIED),
        [&](Machine& machine) { return findFirst(machine, path, data); }, Text{path}, Structure{data});
}

BOOL WINAPI sim_FindClose(HANDLE find) {
    return makeCall<sim_FindClose>(
        "FindClose", kNeverFails, [&](Machine& machine) { return closeFind(machine, find); }, Handle{find});
}

int sim__access(const char* path, int mode) {
    return makeCall<sim__access>(
        "_access", failsWithMinusOne(ERROR_ACCESS_DENIED),
        [&](Machine& machine) -> int {
            if (path != nullptr && isThere(machine.station(), path))
                return 0;
            errno = path != nullptr && isName(path) ? ENOENT : EINVAL;
            return -1;
        },
        Text{path}, Value{mode});
}
