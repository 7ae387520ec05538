#include "kvstation/hives/LogEntries.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/LittleEndian.h"
#include "kvstation/hives/MarvinHash.h"

namespace kvstation {
namespace {

constexpr std::uint32_t kLogOfEntries = 6;
constexpr std::uint64_t kSeed = 0x82EF4D887A4E55C5;

constexpr std::size_t kHead = 40;      // of an entry, before its list of pages
constexpr std::size_t kReference = 8;  // to a page: place and size
constexpr std::size_t kHashedHead = 32;

struct Entry {
    std::string_view bytes;

    std::uint32_t sequence() const { return numberAt(bytes, 12); }
    std::uint32_t binsSize() const { return numberAt(bytes, 16); }
    std::uint32_t pageCount() const { return numberAt(bytes, 20); }
    std::uint64_t hashOfPages() const { return numberAt<std::uint64_t>(bytes, 24); }
    std::uint64_t hashOfHead() const { return numberAt<std::uint64_t>(bytes, 32); }
};

bool fitsItsHive(const Entry& entry) {
    if (entry.binsSize() % kPage != 0 || entry.binsSize() > kLongestHive ||
        entry.pageCount() > (entry.bytes.size() - kHead) / kReference)
        return false;
    std::uint64_t length = kHead + std::uint64_t{entry.pageCount()} * kReference;
    for (std::size_t i = 0; i < entry.pageCount(); ++i) {
        const std::uint64_t place = numberAt(entry.bytes, kHead + i * kReference);
        const std::uint64_t size = numberAt(entry.bytes, kHead + i * kReference + 4);
        length += size;
        if (place + size > entry.binsSize())
            return false;
    }
    return length <= entry.bytes.size();
}

std::optional<Entry> entryAt(std::string_view log, std::size_t place) {
    const std::string_view rest = log.substr(std::min(place, log.size()));
    const std::uint32_t size = numberAt(rest, 4);
    if (!rest.starts_with("HvLE") || size < kHead || size > rest.size() || size % kSector != 0)
        return std::nullopt;
    const Entry entry{rest.substr(0, size)};
    const bool isAsWritten = marvinHash(entry.bytes.substr(kHead), kSeed) == entry.hashOfPages() &&
                             marvinHash(entry.bytes.substr(0, kHashedHead), kSeed) == entry.hashOfHead();
    return isAsWritten && fitsItsHive(entry) ? std::optional(entry) : std::nullopt;
}

// Behind those that follow each other stand older ones that were not written over yet.
std::vector<Entry> logEntriesOf(const LogFile& log) {
    std::vector<Entry> entries;
    std::uint32_t expected = BaseBlock(log.bytes).firstSequence();
    for (std::size_t place = kSector; const std::optional<Entry> entry = entryAt(log.bytes, place);
         place += entry->bytes.size(), ++expected) {
        if (entry->sequence() != expected)
            break;
        entries.push_back(*entry);
    }
    return entries;
}

void apply(std::string& hive, const Entry& entry) {
    if (hive.size() < kBaseBlock + entry.binsSize())
        hive.resize(kBaseBlock + entry.binsSize());
    std::size_t page = kHead + entry.pageCount() * kReference;
    for (std::size_t i = 0; i < entry.pageCount(); ++i) {
        const std::size_t place = numberAt(entry.bytes, kHead + i * kReference);
        const std::size_t size = numberAt(entry.bytes, kHead + i * kReference + 4);
        hive.replace(kBaseBlock + place, size, entry.bytes.substr(page, size));
        page += size;
    }
    putBinsSize(hive, entry.binsSize());
    putSequences(hive, entry.sequence());
}

struct Log {
    const LogFile* file;
    std::vector<Entry> entries;
};

std::string told(const Log& log, std::uint32_t first, std::uint32_t last) {
    const std::string numbers = first == last ? "entry " + std::to_string(first)
                                              : "entries " + std::to_string(first) + " to " + std::to_string(last);
    return numbers + " of " + std::filesystem::path(log.file->path).filename().string();
}

}  // namespace

std::vector<std::string> applyLogEntries(std::string& hive, const std::vector<const LogFile*>& files) {
    std::vector<Log> logs;
    for (const LogFile* file : files)
        if (BaseBlock(file->bytes).fileType() == kLogOfEntries)
            logs.push_back({file, logEntriesOf(*file)});
    std::erase_if(logs, [](const Log& log) { return log.entries.empty(); });
    std::ranges::stable_sort(logs, {}, [](const Log& log) { return log.entries.front().sequence(); });
    if (logs.empty())
        return {};
    if (!BaseBlock(hive).hasRightSum())
        putBaseBlock(hive, logs.front().file->bytes);
    const std::uint32_t had = BaseBlock(hive).secondSequence();
    std::optional<std::uint32_t> last;
    std::vector<std::string> applied;
    for (const Log& log : logs) {
        std::optional<std::uint32_t> first;
        for (const Entry& entry : log.entries) {
            if (entry.sequence() < had || (last && entry.sequence() != *last + 1))
                continue;
            apply(hive, entry);
            last = entry.sequence();
            first = first.value_or(*last);
        }
        if (first)
            applied.push_back(told(log, *first, *last));
    }
    return applied;
}

}  // namespace kvstation
