// A registry hive file of Windows NT, read through the hivex library.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "simwin/RegistryTree.h"

struct hive_h;

namespace kvstation {

// Names and texts are those that the narrow registry calls answer: bytes of the ANSI code page, "?" for characters that
// it does not have. Every operation throws Failure, which names the file and the key, where the file is damaged.
class HiveFile {
  public:
    // A key by its place in the file.
    using Node = std::size_t;
    struct SubKey {
        std::string name;
        Node node;
    };

    explicit HiveFile(std::string path);

    const std::string& path() const { return m_path; }
    // Windows had begun to write the file and had not ended: what is missing stands in the log beside it.
    bool isDirty() const { return m_isDirty; }

    Node root() const { return m_root; }
    // In the order of the file, which is the order in which Windows enumerates. Left out are names that are no text and
    // names that no path can hold.
    const std::vector<SubKey>& subKeys(Node key);
    std::vector<simwin::RegistryValue> values(Node key) const;

  private:
    struct Close {
        void operator()(hive_h* hive) const;
    };

    [[noreturn]] void fail(Node key, int error) const;
    bool takeName(Node key, std::string& name) const;
    bool takeValueName(Node key, std::size_t value, std::string& name) const;

    std::string m_path;
    bool m_isDirty;
    std::unique_ptr<hive_h, Close> m_hive;
    Node m_root = 0;
    std::unordered_map<Node, std::vector<SubKey>> m_subKeys;  // of the keys that were asked for
};

}  // namespace kvstation
