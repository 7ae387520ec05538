#include "kvstation/collect/Stage.h"

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "simwin/station/StationReader.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

simwin::Station readStationFolder(const std::string& folder) {
    if (!isFolder(folder))
        throw Failure(folder + " is no folder; a station is a folder with registry.reg and station.json");
    simwin::Station station = simwin::readStation(pathOf(folder));
    simwin::useCodePage(station.codePages.ansi);
    return station;
}

RecordBytes collectOn(simwin::Machine& machine) {
    return Collector().collect(machine);
}

}  // namespace kvstation
