// The station that a verb is asked about: a described one, or this computer.
#pragma once

#include <string>

#include "kvstation/cause/WhatIf.h"
#include "simwin/station/Station.h"

namespace kvstation {

// The station that the folder describes; this computer as a described station when it is empty (Windows). Throws
// Failure.
simwin::Station stationFrom(const std::string& folder);

// With what the options change; throws WrongUse for what none can.
simwin::Station stationFrom(const std::string& folder, const WhatIf& whatIf);

}  // namespace kvstation
