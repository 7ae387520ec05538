// Where the hive files of a Windows lie.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

// The name that takes no user's hives.
inline constexpr const char* kNoUser = "none";

// Paths of the files; empty for one that is not there. Of Windows 9x: SYSTEM.DAT, no SOFTWARE, USER.DAT for the default
// user, and the user's own or the same.
struct HiveFolder {
    std::string system;
    std::string software;
    std::string classes;  // CLASSES.DAT of Windows Me
    std::string defaultUser;
    std::string user;
    std::string userName;  // of the profile; empty where the file lay by itself
    std::string userClasses;
    bool isUserLeftOut = false;        // nobody's hives were wanted
    std::vector<std::string> remarks;  // a line for each other place that could be taken
};

// Looks in any letter case for SYSTEM, SOFTWARE, DEFAULT, NTUSER.DAT and UsrClass.dat, or SYSTEM.DAT, USER.DAT and
// CLASSES.DAT: in the folder itself, or in the places that Windows has for them, seen from the root of a disk, Windows,
// System32, config or RegBack. A file is a SYSTEM by itself. `userName` names the profile that is taken; empty: the
// only one. Throws Failure when there is no SYSTEM, or the choice is not clear.
HiveFolder findHives(const std::string& place, const std::string& userName);

}  // namespace kvstation
