// Where the hive files of a Windows lie.
#pragma once

#include <string>

namespace kvstation {

// Paths of the files; empty for one that is not there.
struct HiveFolder {
    std::string system;
    std::string software;
    std::string defaultUser;
    std::string user;
};

// Looks for SYSTEM, SOFTWARE, DEFAULT and NTUSER.DAT in any letter case: in the folder itself, or, where it is the root
// of a disk, in the places that Windows has for them. `userName` names the profile whose NTUSER.DAT is taken; empty:
// the only one. Throws Failure when there is no SYSTEM, or the choice is not clear.
HiveFolder findHives(const std::string& folder, const std::string& userName);

}  // namespace kvstation
