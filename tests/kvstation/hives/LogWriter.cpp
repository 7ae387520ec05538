#include "tests/kvstation/hives/LogWriter.h"

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/LittleEndian.h"
#include "kvstation/hives/MarvinHash.h"

namespace kvstation {
namespace {

constexpr std::size_t kFileType = 28;
constexpr std::uint64_t kSeed = 0x82EF4D887A4E55C5;

void putWide(std::string& bytes, std::size_t place, std::uint64_t number) {
    putNumber(bytes, place, static_cast<std::uint32_t>(number));
    putNumber(bytes, place + 4, static_cast<std::uint32_t>(number >> 32));
}

std::string firstSector(const std::string& hive, std::uint32_t type, std::uint32_t sequence) {
    std::string block = hive.substr(0, kSector);
    putNumber(block, kFileType, type);
    putSequences(block, sequence);
    return block;
}

std::string entryBytes(const LogEntry& entry, std::uint32_t binsSize) {
    std::string bytes(40 + 8 * entry.pages.size(), '\0');
    for (std::size_t i = 0; i < entry.pages.size(); ++i) {
        putNumber(bytes, 40 + 8 * i, static_cast<std::uint32_t>(entry.pages[i].place));
        putNumber(bytes, 44 + 8 * i, static_cast<std::uint32_t>(entry.pages[i].bytes.size()));
    }
    for (const LogPage& page : entry.pages)
        bytes += page.bytes;
    bytes.resize((bytes.size() + kSector - 1) / kSector * kSector);
    bytes.replace(0, 4, "HvLE");
    putNumber(bytes, 4, static_cast<std::uint32_t>(bytes.size()));
    putNumber(bytes, 12, entry.sequence);
    putNumber(bytes, 16, binsSize);
    putNumber(bytes, 20, static_cast<std::uint32_t>(entry.pages.size()));
    putWide(bytes, 24, marvinHash(std::string_view(bytes).substr(40), kSeed));
    putWide(bytes, 32, marvinHash(std::string_view(bytes).substr(0, 32), kSeed));
    return bytes;
}

}  // namespace

std::string logOfEntries(const std::string& hive, const std::vector<LogEntry>& entries) {
    std::string log = firstSector(hive, 6, entries.front().sequence);
    for (const LogEntry& entry : entries)
        log += entryBytes(entry, BaseBlock(hive).binsSize());
    return log;
}

std::string logOfPages(const std::string& hive, const std::vector<LogPage>& pages) {
    std::string map(BaseBlock(hive).binsSize() / 512 / 8, '\0');
    std::string content;
    for (const LogPage& page : pages) {
        const std::size_t bit = page.place / 512;
        map[bit / 8] = static_cast<char>(static_cast<unsigned char>(map[bit / 8]) | 1U << bit % 8);
        content += page.bytes;
    }
    std::string log = firstSector(hive, 1, 7) + "DIRT" + map;
    log.resize((log.size() + kSector - 1) / kSector * kSector);
    return log + content;
}

std::string unfinished(std::string hive) {
    putNumber(hive, 4, BaseBlock(hive).secondSequence() + 1);
    putRightSum(hive);
    return hive;
}

}  // namespace kvstation
