// A described station, collected without Windows.
#pragma once

#include <string>

#include "kvstation/Report.h"
#include "simwin/Station.h"

namespace kvstation {

// Runs the module on the station. `origin` is where it comes from, for people.
Report simulateStation(const simwin::Station& station, const std::string& origin);

}  // namespace kvstation
