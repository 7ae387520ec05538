// The registry of a described station: a plain value that can be copied; machines share it and never change it.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/Hives.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/SortedBlocks.h"

namespace simwin {

// Numbers of Windows' value types.
enum class RegistryType : std::uint32_t {
    None = 0,
    Text = 1,
    ExpandText = 2,
    Binary = 3,
    DWord = 4,
    MultiText = 7,
    QWord = 11,
};

// The bytes are those that the narrow calls answer: text in the ANSI code page, with its terminators where it has
// them.
struct RegistryValue {
    std::string name;  // empty: the key's default value
    std::uint32_t type = 0;
    std::string bytes;
};

// One text, with or without variables to expand, or several.
bool isText(const RegistryValue& value);
// Of 32 or 64 bits.
bool isNumber(const RegistryValue& value);

// Values to describe a station with, as Windows' own programs write them.
RegistryValue textValue(std::string_view name, std::string_view text);
RegistryValue multiTextValue(std::string_view name, const std::vector<std::string>& items);
RegistryValue dwordValue(std::string_view name, std::uint32_t number);
RegistryValue binaryValue(std::string_view name, std::string_view bytes);

// The values of one key, no two of one name.
struct ListedValues {
    std::vector<RegistryValue> inOrder;
    SortedBlocks<std::uint32_t> byName;  // indices into `inOrder`, without regard to case

    ListedValues() = default;
    ListedValues(std::vector<RegistryValue> values);  // any list of values is one

    // Replaces the value of that name, or is one longer.
    void set(RegistryValue value);
    const RegistryValue* find(std::string_view name) const;

  private:
    // Whether the value of an index belongs in front of the name.
    auto namedBefore(std::string_view name) const {
        return [this, name](std::uint32_t index) { return compareNoCase(inOrder[index].name, name) < 0; };
    }
    std::optional<std::uint32_t> indexOf(std::string_view name) const;
};

// The number of a key; never changes while the tree lives, and is the same in a copy.
enum class KeyId : std::uint32_t {};

// Keys and values in the order in which they were first described. Names compare without regard to case and keep the
// letter case of their first mention. HKEY_CLASSES_ROOT is HKEY_LOCAL_MACHINE\SOFTWARE\Classes.
class RegistryTree {
  public:
    RegistryTree();

    // The key of a full path such as "HKEY_LOCAL_MACHINE\SOFTWARE", made with its parents when it is not there.
    // None when the path names no hive (by its full name, in any letter case) or holds an empty piece.
    std::optional<KeyId> create(std::string_view fullPath);
    // Replaces a value of the same name.
    void set(KeyId key, RegistryValue value);
    // Both in one; false when the path is none.
    bool set(std::string_view fullPath, RegistryValue value);

    KeyId root(Hive hive) const;
    // The key at a path below `from`; an empty path is `from` itself. As in Windows several backslashes are one, and
    // those at the end count for nothing. None when there is no such key.
    std::optional<KeyId> find(KeyId from, std::string_view path) const;
    std::optional<KeyId> find(std::string_view fullPath) const;

    // The index-th sub-key or value in the order of their first mention, or null.
    const std::string* subKeyName(KeyId key, std::size_t index) const;
    const RegistryValue* value(KeyId key, std::size_t index) const;
    const RegistryValue* findValue(KeyId key, std::string_view name) const;

    // A key's whole lists, in their order.
    const std::vector<RegistryValue>& values(KeyId key) const { return at(key).values.inOrder; }
    const ListedValues& listedValues(KeyId key) const { return at(key).values; }
    const std::vector<KeyId>& subKeys(KeyId key) const { return at(key).subKeys; }
    const std::string& name(KeyId key) const { return at(key).name; }
    KeyId parent(KeyId key) const { return at(key).parent; }  // a hive's own for its root key

    // For experiments: put something in the place of what a key holds and leave that in `values`, `subKeys` or `name`,
    // so that the same call puts it back. Numbers of keys stay, also of those that no key lists meanwhile. No two
    // values or sub-keys may have one name, and the sub-keys must have been made below this key.
    void exchangeValues(KeyId key, ListedValues& values);
    void exchangeSubKeys(KeyId key, std::vector<KeyId>& subKeys);
    void exchangeName(KeyId key, std::string& name);

    // "HKEY_LOCAL_MACHINE\SOFTWARE", in the letter case of the tree.
    std::string path(KeyId key) const;

    std::size_t size() const { return m_keys.size(); }

  private:
    struct Key {
        std::string name;
        KeyId parent{};
        std::vector<KeyId> subKeys;
        SortedBlocks<KeyId> subKeysByName;
        ListedValues values;
    };

    const Key& at(KeyId key) const { return m_keys[static_cast<std::size_t>(key)]; }
    Key& at(KeyId key) { return m_keys[static_cast<std::size_t>(key)]; }
    auto namedBefore(std::string_view name) const {
        return [this, name](KeyId key) { return compareNoCase(at(key).name, name) < 0; };
    }
    std::optional<KeyId> findSubKey(KeyId key, std::string_view name) const;
    KeyId createSubKey(KeyId key, std::string_view name);
    std::optional<KeyId> createPath(KeyId from, std::string_view path);
    void sortSubKeys(Key& key);

    std::deque<Key> m_keys;
};

// A full path's hive and the rest behind the first backslash ("" when there is none).
struct HivePath {
    Hive hive;
    std::string_view rest;
};
std::optional<HivePath> splitHive(std::string_view fullPath);

// The last name of a path, and what stands before it and its backslash: the path itself and "" where it has but one.
std::string_view lastPiece(std::string_view path);
std::string_view withoutLastPiece(std::string_view path);
// Two backslashes side by side, or one at an end.
bool holdsEmptyPiece(std::string_view path);

// The path of the same key below HKEY_LOCAL_MACHINE, of one below HKEY_CLASSES_ROOT; any other path as it is.
std::string withClassesInPlace(std::string_view fullPath);

// What stands behind `root` and a backslash in the path of a key that is `root` or lies below it, without regard to
// letter case; none of any other key.
std::optional<std::string_view> restBelow(std::string_view path, std::string_view root);

}  // namespace simwin
