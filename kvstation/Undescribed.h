// What a collection asked that a station does not describe.
#pragma once

#include <string>
#include <vector>

#include "kvstation/Questions.h"
#include "simwin/Station.h"

namespace kvstation {

// One line for each: the member of station.json, or the key, and what is not known. `missingRoots` are keys for which
// there is no hive.
std::vector<std::string> undescribed(const simwin::Station& station, const Questions& questions,
                                     const std::vector<std::string>& missingRoots);

}  // namespace kvstation
