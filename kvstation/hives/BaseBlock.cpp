#include "kvstation/hives/BaseBlock.h"

#include "kvstation/hives/LittleEndian.h"

namespace kvstation {
namespace {

constexpr std::string_view kHiveSignature = "regf";
constexpr std::size_t kFirstSequence = 4;
constexpr std::size_t kSecondSequence = 8;
constexpr std::size_t kLastWritten = 12;
constexpr std::size_t kFileType = 28;
constexpr std::size_t kRootKey = 36;
constexpr std::size_t kBinsSize = 40;
constexpr std::size_t kSum = 508;

constexpr std::uint32_t kHiveType = 0;

// Neither nought nor all ones is a sum.
std::uint32_t sumOf(std::string_view file) {
    std::uint32_t sum = 0;
    for (std::size_t place = 0; place < kSum; place += sizeof sum)
        sum ^= numberAt(file, place);
    return sum == 0 ? 1 : sum == 0xFFFFFFFF ? 0xFFFFFFFE : sum;
}

}  // namespace

bool BaseBlock::hasSignature() const {
    return m_file.starts_with(kHiveSignature);
}
bool BaseBlock::hasRightSum() const {
    return numberAt(m_file, kSum) == sumOf(m_file);
}
std::uint32_t BaseBlock::firstSequence() const {
    return numberAt(m_file, kFirstSequence);
}
std::uint32_t BaseBlock::secondSequence() const {
    return numberAt(m_file, kSecondSequence);
}
std::uint64_t BaseBlock::lastWritten() const {
    return numberAt<std::uint64_t>(m_file, kLastWritten);
}
std::uint32_t BaseBlock::fileType() const {
    return numberAt(m_file, kFileType);
}
std::uint32_t BaseBlock::root() const {
    return numberAt(m_file, kRootKey);
}
std::uint32_t BaseBlock::binsSize() const {
    return numberAt(m_file, kBinsSize);
}

void putSignature(std::string& hive) {
    hive.replace(0, kHiveSignature.size(), kHiveSignature);
}

void putSequences(std::string& hive, std::uint32_t sequence) {
    putNumber(hive, kFirstSequence, sequence);
    putNumber(hive, kSecondSequence, sequence);
    putRightSum(hive);
}

void putBinsSize(std::string& hive, std::uint32_t size) {
    putNumber(hive, kBinsSize, size);
    putRightSum(hive);
}

void putRightSum(std::string& hive) {
    putNumber(hive, kSum, sumOf(hive));
}

void putBaseBlock(std::string& hive, std::string_view other) {
    hive.replace(0, kSector, other.substr(0, kSector));
    putNumber(hive, kFileType, kHiveType);
    putRightSum(hive);
}

}  // namespace kvstation
