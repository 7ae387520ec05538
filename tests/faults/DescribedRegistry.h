// The registry of a described station, asked for what stands at a place, as the module reads it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/RegistryTree.h"

namespace kvtest {

std::string upperCase(std::string text);
std::string lowerCase(std::string text);

// Pieces between any of the delimiters; empty ones are left out.
std::vector<std::string> split(const std::string& text, std::string_view delimiters);

class DescribedRegistry {
  public:
    using KeyId = simwin::KeyId;
    using Keys = std::vector<KeyId>;

    explicit DescribedRegistry(const simwin::RegistryTree& tree) : m_tree(tree) {}  // which must outlive it

    // The keys at a path below HKEY_LOCAL_MACHINE in which "*" is each sub-key, such as "Enum\Root\*\*".
    Keys keysAt(std::string_view pattern) const;
    // Those among them whose "Class" is this one, in any letter case.
    Keys devicesAt(std::string_view pattern, std::string_view deviceClass) const;

    // A value of a key as text: its first text, the items of a list joined with "//", or UTF-16 text in a binary value.
    // None when the key has no such value, or one of another type.
    std::optional<std::string> text(KeyId key, std::string_view value) const;
    std::optional<std::string> text(std::string_view path, std::string_view value) const;
    // The items of a list.
    std::vector<std::string> list(std::string_view path, std::string_view value) const;

    std::vector<std::string> subKeyNames(std::string_view path) const;
    std::vector<std::string> valueNames(simwin::Hive hive, std::string_view path) const;

  private:
    const simwin::RegistryTree& m_tree;
};

}  // namespace kvtest
