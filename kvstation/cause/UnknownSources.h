// What of the things that nobody knows of a station its fields would hang on.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "kvstation/collect/Stage.h"
#include "simwin/station/Station.h"

namespace kvstation {

// For each of the fields, entries of the station's list of what is unknown: found by supposing answers to what the
// module asks of them, and of what else it asks then. None where nothing of that changes the field.
std::vector<std::vector<std::string>> unknownSources(const simwin::Station& station, const Collector& collector,
                                                     std::span<const std::size_t> fieldNumbers);

}  // namespace kvstation
