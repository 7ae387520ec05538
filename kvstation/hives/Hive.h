// A registry hive file, whatever its form.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "simwin/station/RegistryTree.h"

namespace kvstation {

// Names and texts are those that the narrow registry calls answer: bytes of the ANSI code page.
class Hive {
  public:
    // A key of the hive.
    using Node = std::size_t;
    struct SubKey {
        std::string name;
        Node node;
    };
    // What of a key can be read. Not whole: the file is damaged there, and had more.
    struct SubKeys {
        std::vector<SubKey> all;
        bool isWhole = true;
    };
    struct Values {
        std::vector<simwin::RegistryValue> all;
        bool isWhole = true;
    };

    Hive() = default;
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;
    virtual ~Hive() = default;

    virtual Node root() const = 0;
    // In the order of the file, which is the order in which Windows enumerates. Left out are names that are no text and
    // names that no path can hold.
    virtual const SubKeys& subKeys(Node key) = 0;
    virtual Values values(Node key) = 0;
};

// A path could not tell such a name from two keys, and no registry file could hold it.
bool fitsPath(std::string_view keyName);

}  // namespace kvstation
