// The registry of a Windows that does not run, out of its hive files.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/HiveFile.h"
#include "kvstation/HiveFolder.h"
#include "simwin/RegistryTree.h"

namespace kvstation {

class HiveRegistry {
  public:
    // Throws Failure when a file is no hive, or SYSTEM tells no current control set.
    explicit HiveRegistry(const HiveFolder& files);

    // Copies a key's values and the names of its sub-keys, by the key's full path in the running Windows: below
    // HKEY_LOCAL_MACHINE\SYSTEM, CurrentControlSet is the set that was the current one. False when no hive holds it.
    bool copyKey(std::string_view fullPath, simwin::RegistryTree& tree);

    // The keys for which there is no file, such as HKEY_CURRENT_USER.
    std::vector<std::string> missingRoots() const;
    // The files that Windows had not written to their end.
    std::vector<std::string> dirtyFiles() const;

  private:
    struct Mount {
        std::string root;                // where the hive's root key stands
        std::unique_ptr<HiveFile> file;  // null: there is none
    };

    struct Place {
        HiveFile* file;
        HiveFile::Node key;
        std::string path;  // in the letter case of the hive
    };

    void readCurrentControlSet();
    std::optional<Place> find(std::string_view path);
    // To a sub-key; false when there is none of that name.
    bool goDown(Place& place, std::string_view name) const;

    std::vector<Mount> m_mounts;
    std::string m_controlSet;  // the name of the current one, such as ControlSet001
};

}  // namespace kvstation
