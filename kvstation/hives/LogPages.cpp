#include "kvstation/hives/LogPages.h"

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "kvstation/hives/BaseBlock.h"

namespace kvstation {
namespace {

constexpr std::size_t kLogPage = 512;
constexpr std::size_t kBitsOfByte = 8;
constexpr std::string_view kSignature = "DIRT";

bool isLogOfPages(const LogFile& log) {
    const std::uint32_t type = BaseBlock(log.bytes).fileType();
    return (type == 1 || type == 2) && std::string_view(log.bytes).substr(kSector).starts_with(kSignature);
}

std::size_t roundedUp(std::size_t size) {
    return (size + kSector - 1) / kSector * kSector;
}

struct DirtyPages {
    std::vector<std::size_t> places;  // in the bins
    std::string_view bytes;           // of all of them
};

// The pages that the log's map names; none when the log ends before they do.
DirtyPages dirtyPagesOf(std::string_view log) {
    const std::size_t bits = BaseBlock(log).binsSize() / kLogPage;
    const std::string_view map = log.substr(kSector + kSignature.size());
    const std::size_t begin = roundedUp(kSector + kSignature.size() + bits / kBitsOfByte);
    if (map.size() < bits / kBitsOfByte || log.size() < begin)
        return {};
    DirtyPages pages;
    for (std::size_t bit = 0; bit < bits; ++bit)
        if ((static_cast<unsigned char>(map[bit / kBitsOfByte]) >> bit % kBitsOfByte & 1) != 0)
            pages.places.push_back(bit * kLogPage);
    pages.bytes = log.substr(begin);
    return pages.bytes.size() / kLogPage >= pages.places.size() ? pages : DirtyPages();
}

void apply(std::string& hive, const LogFile& log, const DirtyPages& pages) {
    if (!BaseBlock(hive).hasRightSum())
        putBaseBlock(hive, log.bytes);
    const std::uint32_t size = BaseBlock(log.bytes).binsSize();
    if (hive.size() < kBaseBlock + size)
        hive.resize(kBaseBlock + size);
    for (std::size_t i = 0; i < pages.places.size(); ++i)
        hive.replace(kBaseBlock + pages.places[i], kLogPage, pages.bytes.substr(i * kLogPage, kLogPage));
    putBinsSize(hive, size);
    putSequences(hive, BaseBlock(hive).firstSequence());
}

}  // namespace

std::vector<std::string> applyLogPages(std::string& hive, const std::vector<const LogFile*>& logs) {
    const BaseBlock block(hive);
    for (const LogFile* log : logs) {
        const bool isOfSameTime = !block.hasRightSum() || BaseBlock(log->bytes).lastWritten() == block.lastWritten();
        const DirtyPages pages = isLogOfPages(*log) && isOfSameTime ? dirtyPagesOf(log->bytes) : DirtyPages();
        if (pages.places.empty())
            continue;
        apply(hive, *log, pages);
        return {std::to_string(pages.places.size()) + (pages.places.size() == 1 ? " page" : " pages") +
                " of 512 bytes of " + std::filesystem::path(log->path).filename().string()};
    }
    return {};
}

}  // namespace kvstation
