// What the parser of Windows 9x's registry files takes on trust, checked and mended before it sees a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace kvstation {

class OldHiveMending {
  public:
    // A key by its place in the file.
    using Key = std::size_t;

    // Mends the bytes of a file: links that make the tree of keys none are cut; entries that do not hold what they
    // tell, and those that Windows has freed, in which anything may stand, are emptied; a block without a head ends the
    // file.
    explicit OldHiveMending(std::string& file);

    static Key root();
    // In the order of the file.
    std::vector<Key> subKeys(Key key) const;
    // True where something was cut off.
    bool hasLostSubKeys(Key key) const { return m_withoutSubKeys.contains(key); }
    bool hasLostValues(Key key) const { return m_withoutValues.contains(entryOf(key)); }
    // Blocks with names and values: those that can be read, and how many the file tells.
    std::size_t blocks() const { return m_blocks; }
    std::size_t blocksTold() const { return m_blocksTold; }

  private:
    void mendBlocks();
    std::size_t mendBlock(std::size_t place, std::uint16_t number);
    void mendEntry(std::size_t place, std::size_t size, std::uint16_t block);
    void mendTree();
    bool canStand(std::uint32_t link) const;
    void cut(std::size_t link, Key parent);
    std::uint32_t entryOf(Key key) const;

    std::string& m_file;
    std::size_t m_treeEnd;
    std::size_t m_blocks = 0;
    std::size_t m_blocksTold = 0;
    std::unordered_set<Key> m_withoutSubKeys;
    std::unordered_set<std::uint32_t> m_withoutValues;  // by block and number of the entry
};

}  // namespace kvstation
