#include "kvstation/report/Simulation.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/record/ProductName.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

std::vector<std::string> unknownOf(const simwin::Station& station) {
    std::vector<std::string> unknown;
    for (const std::string& one : station.unknown)
        unknown.push_back(simwin::toUtf8(one));
    return unknown;
}

std::string productOf(const simwin::Station& station) {
    if (!station.version)
        return {};
    return productNameOfTold({.platform = station.version->platformId,
                              .major = station.version->major,
                              .minor = station.version->minor,
                              .build = station.version->build & 0xFFFF,
                              .isServer = false});
}

}  // namespace

Report simulateStation(const simwin::Station& station, const std::string& origin) {
    return simulateStation(station, origin, Collector());
}

Report simulateStation(const simwin::Station& station, const std::string& origin, const Collector& collector) {
    simwin::Machine machine(station);
    const RecordBytes bytes = collector.collect(machine);
    const simwin::CodePageScope scope(station.codePages.ansi);
    return {.record = Record(bytes),
            .bytes = bytes,
            .product = productOf(station),
            .origin = origin,
            .description = station.description,
            .unknown = unknownOf(station),
            .collected = station.collected};
}

}  // namespace kvstation
