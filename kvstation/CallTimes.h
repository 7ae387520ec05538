// Where the time of a collection went.
#pragma once

#include <string>
#include <vector>

#include "kvstation/CallLog.h"

namespace kvstation {

// For people: the milliseconds of each step's calls in the order of the collection, then the slowest calls.
std::string timesText(const std::vector<StepCall>& calls);

}  // namespace kvstation
