// A station as the files that StationReader reads back.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "simwin/station/Station.h"

namespace simwin {

// station.json, in UTF-8: members in the order of docs/stations.md, what is not described left out.
std::string writeStation(const Station& station);

// The same before it is laid out.
nlohmann::ordered_json stationJson(const Station& station);

}  // namespace simwin
