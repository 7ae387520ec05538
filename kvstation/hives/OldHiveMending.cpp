#include "kvstation/hives/OldHiveMending.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

#include "kvstation/hives/LittleEndian.h"

namespace kvstation {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

// The file: a head, the tree of keys, blocks with names and values.
constexpr std::size_t kBlocks = 8;
constexpr std::size_t kBlockCount = 16;
constexpr std::size_t kTree = 32;

// The tree; places in it are counted from its begin.
constexpr std::size_t kTreeSize = 4;
constexpr std::uint32_t kRoot = 32;
constexpr std::size_t kKey = 28;
constexpr std::size_t kFirstSubKey = 16;
constexpr std::size_t kNext = 20;
constexpr std::size_t kEntryNumber = 24;  // behind it that of the block

// A block.
constexpr std::string_view kBlockSignature = "RGDB";
constexpr std::size_t kBlockHead = 32;
constexpr std::size_t kBlockSize = 4;
constexpr std::size_t kMostEntries = 512;  // twice what Windows makes

// An entry in a block.
constexpr std::size_t kEntryHead = 20;
constexpr std::size_t kNumber = 4;
constexpr std::size_t kUsedSize = 8;
constexpr std::size_t kNameSize = 12;
constexpr std::size_t kEntryValueCount = 14;
constexpr std::uint16_t kFreed = 0xFFFF;

// A value in an entry.
constexpr std::size_t kValueHead = 12;
constexpr std::size_t kValueNameSize = 8;
constexpr std::size_t kValueDataSize = 10;

std::uint16_t halfAt(std::string_view bytes, std::size_t place) {
    return numberAt<std::uint16_t>(bytes, place);
}

void putHalf(std::string& bytes, std::size_t place, std::uint16_t number) {
    bytes[place] = static_cast<char>(number & 0xFF);
    bytes[place + 1] = static_cast<char>(number >> 8);
}

// How many values lie within the entry, of those that it tells.
std::uint16_t valuesWithin(std::string_view entry, std::size_t end) {
    const std::uint16_t told = halfAt(entry, kEntryValueCount);
    std::size_t place = kEntryHead + halfAt(entry, kNameSize);
    for (std::uint16_t count = 0; count < told; ++count) {
        const std::size_t size =
            kValueHead + halfAt(entry, place + kValueNameSize) + halfAt(entry, place + kValueDataSize);
        if (end - place < kValueHead || end - place < size)
            return count;
        place += size;
    }
    return told;
}

}  // namespace

OldHiveMending::OldHiveMending(std::string& file) : m_file(file), m_treeEnd(0) {
    if (file.size() < kTree + kRoot + kKey)
        return;
    mendBlocks();
    m_treeEnd = std::min<std::size_t>(numberAt(m_file, kTree + kTreeSize), m_file.size() - kTree);
    // The library takes the tree's head off its size twice.
    putNumber(m_file, kTree + kTreeSize, static_cast<std::uint32_t>(m_treeEnd + kTree));
    mendTree();
}

void OldHiveMending::mendBlocks() {
    std::size_t place = numberAt(m_file, kBlocks);
    std::uint16_t count = 0;
    while (const std::size_t size = mendBlock(place, count)) {
        place += size;
        ++count;
    }
    m_file.resize(std::min(m_file.size(), std::max(place, kTree + kRoot + kKey)));
    m_blocks = count;
    m_blocksTold = halfAt(m_file, kBlockCount);
    putHalf(m_file, kBlockCount, count);
}

// Gives the block's size; 0 where no block stands.
std::size_t OldHiveMending::mendBlock(std::size_t place, std::uint16_t number) {
    const std::string_view rest = std::string_view(m_file).substr(std::min(place, m_file.size()));
    const std::size_t size = numberAt(rest, kBlockSize);
    if (number == kFreed || !rest.starts_with(kBlockSignature) || size < kBlockHead || size > rest.size())
        return 0;
    const std::size_t end = place + size;
    std::size_t entry = place + kBlockHead;
    for (std::size_t count = 0; end - entry >= kEntryHead; ++count) {
        std::size_t length = numberAt(m_file, entry);
        if (length < kEntryHead || length > end - entry || count == kMostEntries) {
            length = end - entry;
            putNumber(m_file, entry, static_cast<std::uint32_t>(length));
            putHalf(m_file, entry + kNumber, kFreed);
        }
        mendEntry(entry, length, number);
        entry += length;
    }
    return size;
}

void OldHiveMending::mendEntry(std::size_t place, std::size_t size, std::uint16_t block) {
    const std::string_view entry = std::string_view(m_file).substr(place, size);
    const std::size_t used = numberAt(entry, kUsedSize);
    const std::uint16_t number = halfAt(entry, kNumber);
    if (number == kFreed || used < kEntryHead + halfAt(entry, kNameSize) || used > size) {
        putHalf(m_file, place + kNumber, kFreed);
        putNumber(m_file, place + kUsedSize, kEntryHead);
        putHalf(m_file, place + kNameSize, 0);
        putHalf(m_file, place + kEntryValueCount, 0);
        return;
    }
    const std::uint16_t within = valuesWithin(entry, used);
    if (within == halfAt(entry, kEntryValueCount))
        return;
    putHalf(m_file, place + kEntryValueCount, within);
    m_withoutValues.insert(std::uint32_t{block} << 16 | number);
}

// Each key stands below one other, once, and by itself: to cut a link of one must not make one of another.
void OldHiveMending::mendTree() {
    if (!canStand(kRoot))
        return;
    std::set<std::uint32_t> seen = {kRoot};
    const auto isApart = [&](std::uint32_t key) {
        const auto next = seen.upper_bound(key);
        return (next == seen.end() || *next - key >= kKey) && key - *std::prev(next) >= kKey;
    };
    putNumber(m_file, root() + kNext, kNone);
    for (std::vector<Key> parents = {root()}; !parents.empty();) {
        const Key parent = parents.back();
        parents.pop_back();
        for (std::size_t link = parent + kFirstSubKey; numberAt(m_file, link) != kNone;) {
            const std::uint32_t key = numberAt(m_file, link);
            if (!canStand(key) || !isApart(key)) {
                cut(link, parent);
                break;
            }
            seen.insert(key);
            parents.push_back(kTree + key);
            link = kTree + key + kNext;
        }
    }
}

bool OldHiveMending::canStand(std::uint32_t link) const {
    return link >= kRoot && link <= m_treeEnd && m_treeEnd - link >= kKey;
}

void OldHiveMending::cut(std::size_t link, Key parent) {
    putNumber(m_file, link, kNone);
    m_withoutSubKeys.insert(parent);
}

OldHiveMending::Key OldHiveMending::root() {
    return kTree + kRoot;
}

std::vector<OldHiveMending::Key> OldHiveMending::subKeys(Key key) const {
    std::vector<Key> all;
    for (std::uint32_t link = numberAt(m_file, key + kFirstSubKey); link != kNone && canStand(link);
         link = numberAt(m_file, all.back() + kNext))
        all.push_back(kTree + link);
    return all;
}

std::uint32_t OldHiveMending::entryOf(Key key) const {
    return std::uint32_t{halfAt(m_file, key + kEntryNumber + 2)} << 16 | halfAt(m_file, key + kEntryNumber);
}

}  // namespace kvstation
