// A station's calls with the fields that hang on each.
#pragma once

#include <string>
#include <vector>

#include "kvstation/collect/CallLog.h"
#include "kvstation/record/Record.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct TracedStation {
    RecordBytes record{};
    simwin::Station station;                       // what answered: of this computer, as it was captured
    std::vector<TimedCall> calls;                  // of the collection, in its order
    std::vector<std::vector<std::string>> fields;  // of each call: the names of fields and published variables
};

// Of the described station.
TracedStation traceStation(const simwin::Station& station);

// Of this computer: what it answers is collected once, and what hangs on its answers found in a replay. Needs Windows
// and throws Failure elsewhere.
TracedStation traceHere();

}  // namespace kvstation
