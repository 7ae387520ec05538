// This computer as a described station.
#pragma once

#include "kvstation/record/Record.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct LiveStation {
    RecordBytes record{};
    simwin::Station station;  // with what the other branches of a collection would ask of the machine itself
};

// Collects once; `observer` is told the calls. Needs Windows and throws Failure elsewhere.
LiveStation captureHere(simwin::CallObserver& observer);

// The same where nobody needs to be told.
simwin::Station captureHere();

}  // namespace kvstation
