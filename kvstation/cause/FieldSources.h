// Where the fields of the record come from on many stations.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

// For each field in the order of fields(): what gives it or a part of it on one of the stations, by the short names of
// the questions, then what decides it. Throws Failure for a folder that describes no station.
std::vector<std::string> sourcesOver(const std::vector<std::string>& folders);

}  // namespace kvstation
