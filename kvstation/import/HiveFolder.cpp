#include "kvstation/import/HiveFolder.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "kvstation/hives/FolderEntries.h"
#include "kvstation/import/Installations.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

using Path = std::filesystem::path;

constexpr const char* kUserHive = "NTUSER.DAT";
constexpr const char* kUserClassesHive = "UsrClass.dat";
constexpr const char* kOldUserHive = "USER.DAT";
constexpr const char* kOldDefaultUser = ".DEFAULT";

struct Profile {
    std::string name;
    Path hive;
};

// Profiles that are nobody's: the template of new ones, and those of services.
bool isForPeople(std::string_view name) {
    static constexpr const char* kOthers[] = {"Default", "Default User", "LocalService", "NetworkService"};
    return std::ranges::none_of(kOthers, [&](const char* other) { return isSameName(name, other); });
}

bool isAnybody(std::string_view) {
    return true;
}

bool isKnown(const std::vector<Profile>& profiles, const Path& hive) {
    return std::ranges::any_of(profiles, [&](const Profile& profile) {
        std::error_code ignored;
        return std::filesystem::equivalent(profile.hive, hive, ignored);
    });
}

struct ProfilePlace {
    std::optional<Path> folder;
    const char* hive;
};

// Below the disk that holds Windows, in Windows itself, or in the folder where the files lie.
std::vector<ProfilePlace> profilePlaces(const Installation& installation) {
    if (installation.isOld)
        return {{findPath(installation.hives, {"Profiles"}), kOldUserHive}};
    const Path windows = installation.windows.value_or(installation.hives);
    const Path disk = installation.windows ? windows.parent_path() : windows;
    return {{findPath(disk, {"Users"}), kUserHive},
            {findPath(disk, {"Documents and Settings"}), kUserHive},
            {findPath(windows, {"Profiles"}), kUserHive}};
}

// Only the folders that are wanted are looked into: on a mounted disk others may be closed to us. A newer Windows has
// the older ones' folder too, as a link to its own.
template <class IsWanted>
std::vector<Profile> profilesOf(const Installation& installation, IsWanted isWanted) {
    std::vector<Profile> profiles;
    for (const ProfilePlace& place : profilePlaces(installation)) {
        if (!place.folder || !isFolder(place.folder->string()))
            continue;
        for (const Path& entry : entriesOf(*place.folder)) {
            const std::string name = entry.filename().string();
            const auto hive = isWanted(name) && isFolder(entry.string()) ? findEntry(entry, place.hive) : std::nullopt;
            if (hive && !isKnown(profiles, *hive))
                profiles.push_back({name, *hive});
        }
    }
    return profiles;
}

std::string joinNames(const std::vector<Profile>& profiles) {
    return joinWords(profiles, ", ", &Profile::name);
}

Profile profileNamed(const Installation& installation, const std::string& disk, const std::string& userName) {
    const std::vector<Profile> profiles =
        profilesOf(installation, [&](std::string_view name) { return isSameName(name, userName); });
    if (!profiles.empty())
        return profiles.front();
    const std::string names = joinNames(profilesOf(installation, isAnybody));
    throw Failure(disk + " holds no profile of " + userName + (names.empty() ? "" : "; there are " + names));
}

// Windows 9x has a user's hive without any profile.
Profile onlyProfile(const Installation& installation, const std::string& disk, const std::string& defaultUser) {
    std::vector<Profile> profiles = profilesOf(installation, isForPeople);
    if (profiles.empty())
        return {"", defaultUser};
    if (!defaultUser.empty())
        profiles.push_back({kOldDefaultUser, defaultUser});
    if (profiles.size() > 1)
        throw Failure(disk + " holds several profiles; choose one with --user NAME: " + joinNames(profiles));
    return profiles.front();
}

std::string userClassesOf(const Path& userHive) {
    const Path profile = userHive.parent_path();
    std::string beside = fileNamedIn(profile, kUserClassesHive);
    if (!beside.empty())
        return beside;
    for (const FolderNames& names :
         {FolderNames{"AppData", "Local", "Microsoft", "Windows", kUserClassesHive},
          FolderNames{"Local Settings", "Application Data", "Microsoft", "Windows", kUserClassesHive}})
        if (const std::optional<Path> found = findPath(profile, names))
            return found->string();
    return {};
}

// `oldUser` is the USER.DAT that Windows 9x has for all.
void findUser(const Installation& installation, const std::string& disk, const std::string& userName,
              const std::string& oldUser, HiveFolder& found) {
    if (userName == kNoUser)
        return;
    const std::string beside = fileNamedIn(installation.hives, kUserHive);
    Profile profile;
    if (!userName.empty() && !oldUser.empty() && isSameName(userName, kOldDefaultUser))
        profile.hive = oldUser;
    else if (!userName.empty())
        profile = profileNamed(installation, disk, userName);
    else if (!beside.empty())
        profile.hive = beside;
    else
        profile = onlyProfile(installation, disk, oldUser);
    found.user = profile.hive.string();
    found.userName = profile.hive == oldUser ? "" : profile.name;
    if (!found.user.empty() && oldUser.empty())
        found.userClasses = userClassesOf(profile.hive);
}

}  // namespace

HiveFolder findHives(const std::string& place, const std::string& userName) {
    std::error_code ignored;
    HiveFolder found;
    found.isUserLeftOut = userName == kNoUser;
    if (!isFolder(place) && std::filesystem::exists(place, ignored)) {
        if (!userName.empty() && userName != kNoUser)
            throw Failure(place + " is one file and holds no profile of " + userName);
        found.system = place;
        return found;
    }
    if (!isFolder(place))
        throw Failure(place +
                      " is neither a folder nor a file; name the folder with the hive files, the root of a "
                      "Windows disk, or a SYSTEM hive");
    const Installation installation = findInstallation(withoutEnd(place));
    const Path& hives = installation.hives;
    found.system = systemFileIn(hives);
    found.software = fileNamedIn(hives, "SOFTWARE");
    found.classes = fileNamedIn(hives, "CLASSES.DAT");
    const std::string oldUser = fileNamedIn(hives, kOldUserHive);
    found.defaultUser = oldUser.empty() ? fileNamedIn(hives, "DEFAULT") : oldUser;
    found.remarks = installation.remarks;
    findUser(installation, place, userName, oldUser, found);
    return found;
}

}  // namespace kvstation
