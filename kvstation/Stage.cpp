#include "kvstation/Stage.h"

#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "simwin/StationReader.h"

namespace kvstation {

simwin::Station readStationFolder(const std::string& folder) {
    if (!isFolder(folder))
        throw Failure(folder + " is no folder; a station is a folder with registry.reg and station.json");
    return simwin::readStation(pathOf(folder));
}

RecordBytes collectOn(simwin::Machine& machine) {
    return Collector().collect(machine);
}

}  // namespace kvstation
