// What a field of the record may hold when a platform call has failed.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/StationTexts.h"
#include "tests/stations/ExpectedStation.h"

namespace kvtest {

// One line for each field that holds neither what it must hold undisturbed, nor nothing (an empty text, 0), nor what is
// documented for a failure of its sources.
std::vector<std::string> unexplainedFields(const StationTexts& texts, const Fields& expected, const Fields& found);

}  // namespace kvtest
