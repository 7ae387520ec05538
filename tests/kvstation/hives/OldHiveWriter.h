// Registry files of Windows 9x for tests.
#pragma once

#include <string>
#include <string_view>

#include "simwin/station/RegistryTree.h"

namespace kvstation {

// The bytes of a file with the tree below the key `root`, single texts without their terminators, as Windows keeps
// them.
std::string oldHive(const simwin::RegistryTree& tree, std::string_view root);

// SYSTEM.DAT with what is below HKEY_LOCAL_MACHINE, and USER.DAT with what is below HKEY_USERS.
void writeOldHives(const std::string& folder, const simwin::RegistryTree& tree);

}  // namespace kvstation
