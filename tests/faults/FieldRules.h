// What a field of the record may hold when a platform call has failed.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/StationTexts.h"
#include "tests/stations/ExpectedStation.h"

namespace kvtest {

struct Explanation {
    // One line for each field that holds neither what it must hold undisturbed, nor nothing (an empty text, 0), nor
    // what is documented for a failure of its sources.
    std::vector<std::string> unexplainedFields;
    Texts neededRules;  // without which there were more of them
};

Explanation explain(const StationTexts& texts, const Fields& expected, const Fields& found);

// The names of all rules that there are.
Texts allRules();

}  // namespace kvtest
