// Registry hive files for tests.
#pragma once

#include <string>
#include <string_view>

#include "simwin/station/RegistryTree.h"

namespace kvstation {

// The bytes of a hive with nothing but its root key.
std::string emptyHive();

// Writes the tree below the key `root` as a hive file: names and texts wide, as Windows keeps them. In a SYSTEM hive
// CurrentControlSet becomes ControlSet001, in the place of one that is there: the running Windows alone has that name.
void writeHive(const std::string& path, const simwin::RegistryTree& tree, std::string_view root);

// The hives of a Windows whose registry is the tree, as files of the folder: SYSTEM with Select, SOFTWARE, DEFAULT,
// NTUSER.DAT and UsrClass.dat. HARDWARE is in none.
void writeHives(const std::string& folder, simwin::RegistryTree tree);

// Sets a REG_SZ value of a key below the root to bytes that need be no proper text.
void setWideText(const std::string& path, const std::string& key, const std::string& name, std::string bytes);

// Puts other bytes of the same length in the place of the only ones that are like this.
void replaceInFile(const std::string& path, std::string_view old, std::string_view bytes);

}  // namespace kvstation
