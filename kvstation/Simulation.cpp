#include "kvstation/Simulation.h"
#include "kvstation/ProductName.h"
#include "kvstation/Stage.h"

namespace kvstation {
namespace {

std::string productOf(const simwin::Station& station) {
    if (!station.version)
        return {};
    return productName({.platform = station.version->platformId,
                        .major = station.version->major,
                        .minor = station.version->minor,
                        .build = station.version->build & 0xFFFF,
                        .isServer = false});
}

}  // namespace

Report simulateStation(const std::string& folder, simwin::CallObserver* observer) {
    simwin::Machine machine(readStationFolder(folder));
    machine.observe(observer);
    const RecordBytes bytes = collectOn(machine);
    return {.record = Record(bytes), .bytes = bytes, .product = productOf(machine.station()), .origin = folder};
}

}  // namespace kvstation
