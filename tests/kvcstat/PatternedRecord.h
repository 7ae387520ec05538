// A record with a pattern in every byte, and room behind it that must keep the pattern.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "include/kvcstat.h"
#include "tests/stations/RecordPlace.h"

namespace kvtest {

class PatternedRecord {
  public:
    PatternedRecord() { bytes.fill(kPattern); }

    static std::string Pattern(std::size_t count) { return std::string(count, kPattern); }

    char* data() { return bytes.data(); }
    void Clear() { std::memset(bytes.data(), 0, KVCSTAT_RECORD_SIZE); }

    std::string At(std::size_t offset, std::size_t count) const { return {bytes.data() + offset, count}; }
    // All bytes of a member.
    std::string At(RecordPlace place) const { return At(place.offset, place.width); }
    // Text of a field up to its first zero.
    std::string Text(RecordPlace place) const {
        const std::string field = At(place);
        return field.substr(0, field.find('\0'));
    }
    std::uint32_t Number(RecordPlace place) const {
        std::uint32_t number = 0;
        std::memcpy(&number, bytes.data() + place.offset, sizeof number);
        return number;
    }

    bool IsUntouched(RecordPlace place) const { return At(place) == Pattern(place.width); }
    bool IsUntouchedBehindTheRecord() const { return At(KVCSTAT_RECORD_SIZE, kBehind) == Pattern(kBehind); }

  private:
    static constexpr char kPattern = '\xA5';
    static constexpr std::size_t kBehind = 4096;

    std::array<char, KVCSTAT_RECORD_SIZE + kBehind> bytes;
};

}  // namespace kvtest
