// The reader of station.json, and the writer: what was read is written and read again as it was.
#include <cstdint>
#include <string_view>

#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "tests/fuzz/ReadOrTell.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    simwin::Station station;
    if (!kvfuzz::readOrTell("station.json", [&] { station = simwin::parseStation(content, "station.json"); }))
        return 0;
    const std::string written = simwin::writeStation(station);
    const simwin::Station again = simwin::parseStation(written, "written");
    kvfuzz::check(simwin::writeStation(again) == written, "a station reads back as it was written");
    return 0;
}
