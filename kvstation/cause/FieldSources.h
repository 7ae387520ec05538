// Where the fields of the record come from on many stations.
#pragma once

#include <string>
#include <vector>

#include "kvstation/cause/Causes.h"

namespace kvstation {

// The causes of every field on each of the stations. Throws Failure for a folder that describes no station.
std::vector<std::vector<FieldCauses>> causesOver(const std::vector<std::string>& folders);

// For each field in the order of fields(): what gives it or a part of it on one of the stations, by the short names of
// the questions, then what decides it.
std::vector<std::string> sourcesIn(const std::vector<std::vector<FieldCauses>>& stations);

}  // namespace kvstation
