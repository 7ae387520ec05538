#include "tests/kvstation/hives/OldHiveWriter.h"

#include <cstdint>

#include "kvstation/platform/Files.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryTree;
using simwin::RegistryValue;

constexpr std::size_t kHead = 32;  // of the file, the tree and each block
constexpr std::uint16_t kKeysInBlock = 200;
constexpr std::uint32_t kNoKey = 0xFFFFFFFF;

void add(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(number >> 8 * i));
}

void put(std::string& bytes, std::size_t place, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[place + i] = static_cast<char>(number >> 8 * i);
}

std::string valueEntry(const RegistryValue& value) {
    std::string data = value.bytes;
    if (static_cast<simwin::RegistryType>(value.type) == simwin::RegistryType::Text && data.ends_with('\0'))
        data.pop_back();
    std::string bytes;
    add(bytes, value.type, 4);
    add(bytes, 0, 4);
    add(bytes, value.name.size(), 2);
    add(bytes, data.size(), 2);
    return bytes + value.name + data;
}

class Writer {
  public:
    explicit Writer(const RegistryTree& tree) : m_tree(tree) {}

    std::string write(KeyId root) {
        addKey(kNoKey, nullptr, root);
        addSubKeys(kHead, root);
        endBlock();
        std::string navigation = "RGKN";
        add(navigation, kHead + m_keys.size(), 4);
        add(navigation, kHead, 4);
        navigation.resize(kHead);
        navigation += m_keys;
        std::string file = "CREG";
        add(file, 0x10000, 4);
        add(file, kHead + navigation.size(), 4);
        add(file, 0, 4);
        add(file, m_blockCount, 2);
        file.resize(kHead);
        return file + navigation + m_blocks;
    }

  private:
    // Gives the key's place in the tree. The root has neither name nor values.
    std::uint32_t addKey(std::uint32_t parent, const std::string* name, KeyId key) {
        const auto place = static_cast<std::uint32_t>(kHead + m_keys.size());
        add(m_keys, 0, 4);
        add(m_keys, 0, 4);
        add(m_keys, kNoKey, 4);
        add(m_keys, parent, 4);
        add(m_keys, kNoKey, 4);
        add(m_keys, kNoKey, 4);
        add(m_keys, name != nullptr ? m_keyInBlock : 0xFFFF, 2);
        add(m_keys, name != nullptr ? m_blockCount : 0xFFFF, 2);
        if (name != nullptr)
            addEntry(*name, key);
        return place;
    }

    void addEntry(const std::string& name, KeyId key) {
        std::string content = name;
        for (const RegistryValue& value : m_tree.values(key))
            content += valueEntry(value);
        add(m_block, 20 + content.size(), 4);
        add(m_block, m_keyInBlock, 2);
        add(m_block, 0, 2);
        add(m_block, 20 + content.size(), 4);
        add(m_block, name.size(), 2);
        add(m_block, m_tree.values(key).size(), 2);
        add(m_block, 0, 4);
        m_block += content;
        if (++m_keyInBlock == kKeysInBlock)
            endBlock();
    }

    void addSubKeys(std::uint32_t place, KeyId key) {
        std::size_t link = place - kHead + 16;
        for (const KeyId subKey : m_tree.subKeys(key)) {
            const std::uint32_t next = addKey(place, &m_tree.name(subKey), subKey);
            put(m_keys, link, next);
            link = next - kHead + 20;
            addSubKeys(next, subKey);
        }
    }

    void endBlock() {
        std::string head = "RGDB";
        add(head, kHead + m_block.size(), 4);
        head.resize(kHead);
        m_blocks += head + m_block;
        m_block.clear();
        m_keyInBlock = 0;
        ++m_blockCount;
    }

    const RegistryTree& m_tree;
    std::string m_keys;
    std::string m_blocks;
    std::string m_block;
    std::uint16_t m_keyInBlock = 0;
    std::uint16_t m_blockCount = 0;
};

}  // namespace

std::string oldHive(const RegistryTree& tree, std::string_view root) {
    return Writer(tree).write(*tree.find(root));
}

void writeOldHives(const std::string& folder, const RegistryTree& tree) {
    writeFile(folder + "/SYSTEM.DAT", oldHive(tree, "HKEY_LOCAL_MACHINE"));
    writeFile(folder + "/USER.DAT", oldHive(tree, "HKEY_USERS"));
}

}  // namespace kvstation
