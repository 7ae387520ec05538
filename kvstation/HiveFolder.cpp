#include "kvstation/HiveFolder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using Path = std::filesystem::path;
using Names = std::vector<std::string_view>;

constexpr const char* kUserHive = "NTUSER.DAT";

bool isSame(std::string_view left, std::string_view right) {
    return simwin::equalNoCase(simwin::fromUtf8Leniently(left), simwin::fromUtf8Leniently(right));
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

// A disk of Windows has no two names that differ in letter case alone; a folder here can.
std::optional<Path> findEntry(const Path& folder, std::string_view name) {
    std::optional<Path> found;
    for (const Path& entry : entriesOf(folder)) {
        if (!isSame(entry.filename().string(), name))
            continue;
        if (found)
            throw Failure(folder.string() + " holds both " + found->filename().string() + " and " +
                          entry.filename().string() + "; leave one of them there");
        found = entry;
    }
    return found;
}

std::optional<Path> findPath(const Path& folder, const Names& names) {
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

// The folder with SYSTEM: the one named, or that of the Windows on the disk whose root it is.
Path findSystemFolder(const Path& folder) {
    const std::string beside = fileNamedIn(folder, "SYSTEM");
    if (!beside.empty() && !isFolder(beside))
        return folder;
    std::optional<Path> found;
    for (const std::string_view windows : {"Windows", "WINNT"}) {
        const std::optional<Path> config = findPath(folder, {windows, "System32", "config"});
        if (!config || !findPath(*config, {"SYSTEM"}))
            continue;
        if (found)
            throw Failure(folder.string() + " holds two installations, " + found->string() + " and " +
                          config->string() + "; name one of these folders");
        found = config;
    }
    if (!found)
        throw Failure(folder.string() + " holds no SYSTEM hive, neither itself nor in Windows/System32/config");
    return *found;
}

struct Profile {
    std::string name;
    Path hive;
};

// Profiles that are nobody's: the template of new ones, and those of services.
bool isForPeople(std::string_view name) {
    constexpr std::array kOthers = {"Default", "Default User", "LocalService", "NetworkService"};
    return std::ranges::none_of(kOthers, [&](const char* other) { return isSame(name, other); });
}

bool isKnown(const std::vector<Profile>& profiles, const Path& hive) {
    return std::ranges::any_of(profiles, [&](const Profile& profile) {
        std::error_code ignored;
        return std::filesystem::equivalent(profile.hive, hive, ignored);
    });
}

bool isAnybody(std::string_view) {
    return true;
}

// Only the folders that are wanted are looked into: on a mounted disk others may be closed to us. A newer Windows has
// the older ones' folder too, as a link to its own.
template <class IsWanted>
std::vector<Profile> profilesOf(const Path& disk, IsWanted isWanted) {
    std::vector<Profile> profiles;
    for (const Names& place :
         {Names{"Users"}, Names{"Documents and Settings"}, Names{"WINNT", "Profiles"}, Names{"Windows", "Profiles"}}) {
        const std::optional<Path> folder = findPath(disk, place);
        if (!folder || !isFolder(folder->string()))
            continue;
        for (const Path& entry : entriesOf(*folder)) {
            const std::string name = entry.filename().string();
            const auto hive = isWanted(name) && isFolder(entry.string()) ? findEntry(entry, kUserHive) : std::nullopt;
            if (hive && !isKnown(profiles, *hive))
                profiles.push_back({name, *hive});
        }
    }
    return profiles;
}

std::string joinNames(const std::vector<Profile>& profiles) {
    std::string names;
    for (const Profile& profile : profiles)
        names += (names.empty() ? "" : ", ") + profile.name;
    return names;
}

std::string hiveOf(const std::string& disk, const std::string& userName) {
    const std::vector<Profile> profiles =
        profilesOf(disk, [&](std::string_view name) { return isSame(name, userName); });
    if (!profiles.empty())
        return profiles.front().hive.string();
    const std::string names = joinNames(profilesOf(disk, isAnybody));
    throw Failure(disk + " holds no profile of " + userName + (names.empty() ? "" : "; there are " + names));
}

std::string hiveOfTheOnlyUser(const std::string& disk) {
    const std::vector<Profile> profiles = profilesOf(disk, isForPeople);
    if (profiles.size() > 1)
        throw Failure(disk + " holds several profiles; choose one with --user NAME: " + joinNames(profiles));
    return profiles.empty() ? std::string() : profiles.front().hive.string();
}

std::string findUserHive(const std::string& folder, const std::string& userName) {
    if (!userName.empty())
        return hiveOf(folder, userName);
    const std::string beside = fileNamedIn(folder, kUserHive);
    return beside.empty() ? hiveOfTheOnlyUser(folder) : beside;
}

}  // namespace

HiveFolder findHives(const std::string& folder, const std::string& userName) {
    if (!isFolder(folder))
        throw Failure(folder + " is no folder; name the folder with the hive files or the root of a Windows disk");
    const Path system = findSystemFolder(folder);
    return {fileNamedIn(system, "SYSTEM"), fileNamedIn(system, "SOFTWARE"), fileNamedIn(system, "DEFAULT"),
            findUserHive(folder, userName)};
}

}  // namespace kvstation
