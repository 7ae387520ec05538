// What is told of a collection that takes place now.
#pragma once

#include "simwin/station/Station.h"

namespace kvstation {

// The time, and the versions of the library that collects for this tool and of the tool itself.
simwin::Collected collectedNow();

}  // namespace kvstation
