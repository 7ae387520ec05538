// Where the time of a collection went.
#pragma once

#include <string>
#include <vector>

#include "kvstation/collect/CallLog.h"

namespace kvstation {

// For people: the milliseconds of the questions that each field hangs on, those of each call, and the slowest calls.
// `fields` are the fields of each call, in the calls' order.
std::string timesText(const std::vector<TimedCall>& calls, const std::vector<std::vector<std::string>>& fields);

}  // namespace kvstation
