// Where the module runs for the tool's verbs: natively the module that is part of the tool, on Windows the real library
// with its imports redirected.
#pragma once

#include <string>

#include "kvstation/Record.h"
#include "simwin/Machine.h"

namespace kvstation {

// Throws Failure, with file, line and what is wrong when the folder describes no station.
simwin::Station readStationFolder(const std::string& folder);

// One collection whose calls the machine answers, or passes on.
RecordBytes collectOn(simwin::Machine& machine);

// One collection on this computer, whose calls the observer is told. Needs Windows and throws Failure elsewhere.
RecordBytes collectHereObserved(simwin::CallObserver& observer);

}  // namespace kvstation
