// A registry file of Windows 95, 98 or Me, read through the libcreg library.
#pragma once

#include <libcreg.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "kvstation/hives/Hive.h"
#include "kvstation/hives/MemoryFile.h"
#include "kvstation/hives/OldHiveMending.h"

namespace kvstation {

// Texts are bytes of the machine's ANSI code page in the file too, a single one without the terminator that Windows
// puts behind it when it is asked.
class OldHive : public Hive {
  public:
    // Of a file's bytes. Throws Failure, which names the file, when it has no tree of keys.
    OldHive(std::string bytes, const std::string& path);

    Node root() const override { return 0; }
    const SubKeys& subKeys(Node key) override;
    Values values(Node key) override;

    // What of the file is missing; empty where nothing is.
    std::string loss() const;
    bool isWithoutNames() const { return m_mending.blocks() == 0 && m_mending.blocksTold() != 0; }

  private:
    // The library's types are all one.
    struct FreeFile {
        void operator()(libcreg_file_t* file) const;
    };
    struct FreeKey {
        void operator()(libcreg_key_t* key) const;
    };
    struct Key {
        std::unique_ptr<libcreg_key_t, FreeKey> handle;
        OldHiveMending::Key place;
    };

    SubKeys readSubKeys(Node key);

    std::string m_bytes;
    OldHiveMending m_mending;
    MemoryFile m_file;
    std::unique_ptr<libcreg_file_t, FreeFile> m_library;
    std::vector<Key> m_keys;  // by node
    std::unordered_map<Node, SubKeys> m_subKeys;
};

}  // namespace kvstation
