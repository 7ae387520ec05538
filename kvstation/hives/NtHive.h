// A registry hive of Windows NT, read through the hivex library.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "kvstation/hives/Hive.h"
#include "kvstation/hives/MemoryFile.h"

struct hive_h;

namespace kvstation {

// Damaged hives are read as far as they can be. What hivex leaves out without a word is found by the numbers of
// sub-keys and values that each key tells of itself.
class NtHive : public Hive {
  public:
    // Of a file's bytes, whose first block is whole. Throws Failure, which names the file, when it has no root key.
    NtHive(std::string bytes, const std::string& path);

    Node root() const override { return m_root; }
    const SubKeys& subKeys(Node key) override;
    Values values(Node key) override;

  private:
    struct Close {
        void operator()(hive_h* hive) const;
    };

    std::uint32_t numberOf(Node key, std::size_t place) const;
    bool hasNestedList(Node key) const;
    SubKeys readSubKeys(Node key) const;

    std::string m_bytes;
    MemoryFile m_file;
    std::unique_ptr<hive_h, Close> m_hive;
    Node m_root = 0;
    std::unordered_map<Node, SubKeys> m_subKeys;  // of the keys that were asked for
};

}  // namespace kvstation
