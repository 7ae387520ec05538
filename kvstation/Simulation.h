// A described station, collected without Windows.
#pragma once

#include <string>

#include "kvstation/Report.h"
#include "simwin/CallObserver.h"

namespace kvstation {

// Runs the module on the station that the folder describes. Throws Failure, with file, line and what is wrong when the
// folder describes none. The observer, if there is one, is told the module's calls.
Report simulateStation(const std::string& folder, simwin::CallObserver* observer = nullptr);

}  // namespace kvstation
