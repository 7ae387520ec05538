// A redaction of whatever two files describe: the same each time, as long, readable, and with nothing left where that
// was asked. The input is a station.json, a NUL and a registry.reg.
#include <cstdint>
#include <string_view>

#include "kvstation/redact/LeftTexts.h"
#include "kvstation/redact/Redaction.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "simwin/text/CodePage.h"
#include "tests/fuzz/ReadOrTell.h"

namespace {

using kvstation::Redacting;
using simwin::Station;

std::string contentOf(const Station& station) {
    return simwin::writeStation(station) + simwin::writeRegistry(station.registry);
}

void checkRedaction(const Station& station, Redacting extent) {
    const Station made = kvstation::redacted(station, extent);
    const std::string content = contentOf(made);
    kvfuzz::check(contentOf(kvstation::redacted(station, extent)) == content, "a redaction is the same every time");
    kvfuzz::check(made.registry.size() == station.registry.size(), "no two keys become one");
    simwin::readRegistry(simwin::writeRegistry(made.registry), "written");
    simwin::parseStation(simwin::writeStation(made), "written");
    const std::vector<kvstation::LeftText> left = kvstation::leftTexts(station, made);
    kvfuzz::check(extent == Redacting::Names || left.empty(), "nothing is left where all was to be replaced");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\0');
    kvfuzz::wasRefused = end == std::string_view::npos;
    if (kvfuzz::wasRefused)
        return 0;
    Station station;
    if (!kvfuzz::readOrTell("station.json",
                            [&] { station = simwin::parseStation(input.substr(0, end), "station.json"); }))
        return 0;
    const simwin::CodePageScope scope(station.codePages.ansi);
    const std::string_view registry = input.substr(end + 1);
    if (!kvfuzz::readOrTell("registry.reg", [&] { station.registry = simwin::readRegistry(registry, "registry.reg"); }))
        return 0;
    checkRedaction(station, Redacting::Names);
    checkRedaction(station, Redacting::Everything);
    return 0;
}
