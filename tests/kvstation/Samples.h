// Records for the tests, and what is told of them by lines.
#pragma once

#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/report/JsonView.h"
#include "tests/stations/RecordPlace.h"

namespace kvstation {

inline void put(RecordBytes& bytes, std::size_t offset, std::string_view text) {
    std::memcpy(bytes.data() + offset, text.data(), text.size());
}

// Into a member of the header, independent of the table.
template <class Member>
void put(RecordBytes& bytes, Member STATIONDATA::*member, std::string_view text) {
    put(bytes, kvtest::RecordPlace(member).offset, text);
}

inline RecordBytes sampleBytes() {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szStation, "PC-LAB3");
    put(bytes, &STATIONDATA::szUserName, "jdoe");
    put(bytes, &STATIONDATA::dwOEMCodePage, {"\x52\x03\x00\x00", 4});
    put(bytes, &STATIONDATA::szFixedDrives, "C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) ");
    put(bytes, &STATIONDATA::szIPAddress, "10.0.0.5");
    put(bytes, &STATIONDATA::szOS, "Windows NT 10.0 (Build 22621)");
    put(bytes, &STATIONDATA::dwSessionId, {"\xFE\xFF\xFF\xFF", 4});
    return bytes;
}

// Of a record of which no more is known.
inline std::string jsonOf(const Record& record) {
    Report report;
    report.record = record;
    return jsonView(report);
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace kvstation
