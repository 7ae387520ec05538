// A described station, collected without Windows.
#pragma once

#include <string>

#include "kvstation/Report.h"

namespace kvstation {

// Runs the module on the station that the folder describes. Throws Failure, with file, line and what is wrong when the
// folder describes none.
Report simulateStation(const std::string& folder);

}  // namespace kvstation
