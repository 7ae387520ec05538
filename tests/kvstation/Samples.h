// Records for the tests.
#pragma once

#include <cstring>
#include <string_view>

#include "kvstation/report/JsonView.h"

namespace kvstation {

inline void put(RecordBytes& bytes, std::size_t offset, std::string_view text) {
    std::memcpy(bytes.data() + offset, text.data(), text.size());
}

// Offsets are written out here, independent of the table.
inline RecordBytes sampleBytes() {
    RecordBytes bytes{};
    put(bytes, 0, "PC-LAB3");
    put(bytes, 51, "jdoe");
    put(bytes, 364, {"\x52\x03\x00\x00", 4});
    put(bytes, 1831, "C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) ");
    put(bytes, 3325, "10.0.0.5");
    put(bytes, 3600, "Windows NT 10.0 (Build 22621)");
    put(bytes, 4868, {"\xFE\xFF\xFF\xFF", 4});
    return bytes;
}

// Of a record of which no more is known.
inline std::string jsonOf(const Record& record) {
    Report report;
    report.record = record;
    return jsonView(report);
}

}  // namespace kvstation
