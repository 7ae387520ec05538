// A described station, collected without Windows.
#pragma once

#include <string>

#include "kvstation/collect/Stage.h"
#include "kvstation/report/Report.h"
#include "simwin/station/Station.h"

namespace kvstation {

// Runs the module on the station. `origin` is where it comes from, for people.
Report simulateStation(const simwin::Station& station, const std::string& origin);
// By a module that is there already.
Report simulateStation(const simwin::Station& station, const std::string& origin, const Collector& collector);

}  // namespace kvstation
