// The first block of a hive of Windows NT and of its logs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvstation {

// The bins, to which all places in a hive are counted, begin behind it.
inline constexpr std::size_t kBaseBlock = 4096;
// A log keeps the first sector of it.
inline constexpr std::size_t kSector = 512;
// Bins are a multiple of this long.
inline constexpr std::size_t kPage = 4096;

class BaseBlock {
  public:
    // Of a file's bytes. All but hasSignature() wants kSector of them at least.
    explicit BaseBlock(std::string_view file) : m_file(file) {}

    bool hasSignature() const;
    bool hasRightSum() const;
    // Windows raises the first number when it begins to write the file and the second when it has ended.
    std::uint32_t firstSequence() const;
    std::uint32_t secondSequence() const;
    std::uint64_t lastWritten() const;
    std::uint32_t fileType() const;
    std::uint32_t root() const;
    std::uint32_t binsSize() const;

  private:
    std::string_view m_file;
};

// Set in the bytes of a hive, with the sum over it but for the signature.
void putSignature(std::string& hive);
void putSequences(std::string& hive, std::uint32_t sequence);
void putBinsSize(std::string& hive, std::uint32_t size);
void putRightSum(std::string& hive);
// Another file's first sector in place of the hive's own, as that of a hive.
void putBaseBlock(std::string& hive, std::string_view other);

}  // namespace kvstation
