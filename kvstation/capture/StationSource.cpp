#include "kvstation/capture/StationSource.h"

#include "kvstation/capture/LiveStation.h"
#include "kvstation/collect/Stage.h"

namespace kvstation {

simwin::Station stationFrom(const std::string& folder) {
    return folder.empty() ? captureHere() : readStationFolder(folder);
}

simwin::Station stationFrom(const std::string& folder, const WhatIf& whatIf) {
    simwin::Station station = stationFrom(folder);
    apply(whatIf, station);
    return station;
}

}  // namespace kvstation
