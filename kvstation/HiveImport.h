// A described station out of the hives of a Windows that does not run.
#pragma once

#include <string>
#include <vector>

#include "kvstation/HiveRegistry.h"
#include "kvstation/Record.h"
#include "simwin/Station.h"

namespace kvstation {

struct ImportedStation {
    simwin::Station station;               // no more than the module asks for
    RecordBytes record{};                  // what the module makes of it
    std::vector<std::string> undescribed;  // a line for each thing that the module asked and no hive tells
    std::vector<std::string> warnings;     // a line for each thing that the hives may tell wrongly
};

// Runs the module on what the hives tell and writes down what it asked. A key is copied out of its hive when the module
// first asks for it, and then the module runs again, until it asks for nothing new: a hive of some hundred thousand
// keys costs no more than the few hundred that matter. Throws Failure where a hive is damaged.
ImportedStation importStation(HiveRegistry& registry);

}  // namespace kvstation
