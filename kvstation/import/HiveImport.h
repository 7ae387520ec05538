// A described station out of the hives of a Windows that does not run.
#pragma once

#include <string>
#include <vector>

#include "kvstation/capture/Completion.h"
#include "kvstation/cause/WhatIf.h"
#include "kvstation/import/HiveRegistry.h"
#include "kvstation/record/Record.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct ImportedStation {
    simwin::Station station;               // no more than the module asks for, now or with something changed
    RecordBytes record{};                  // what the module makes of it
    std::vector<std::string> undescribed;  // a line for each entry of the station's list of what is unknown
    std::vector<std::string> warnings;     // a line for each thing that the hives may tell wrongly
};

// Runs the module on what the hives tell and writes down what it asks, and what it would ask if something were
// different: another version of Windows, a session, other settings. A key is copied out of its hive when it is first
// asked for, and then the module runs again, until it asks for nothing new: a hive of some hundred thousand keys costs
// no more than the few hundred that matter. `whatIf` says what is known beside the hives, and holds for the station.
// What damage took of what is asked for is listed as unknown, as is what no hive holds.
ImportedStation importStation(HiveRegistry& registry, const WhatIf& whatIf = {}, Reach reach = Reach::AllBranches);

}  // namespace kvstation
