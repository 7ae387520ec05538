// Collections on the described stations, by name.
#pragma once

#include <string>

#include "kvstation/Stage.h"
#include "kvstation/WatchedRun.h"
#include "tests/stations/ExpectedStation.h"

namespace kvtest {

inline std::string stationFolder(const std::string& name) {
    return std::string(KV_STATIONS) + "/" + name;
}

inline kvstation::WatchedRun runOf(const std::string& name) {
    return kvstation::watchRun(stationFolder(name));
}

}  // namespace kvtest
