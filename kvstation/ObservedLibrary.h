// The real library with its imports watched. Windows only.
#pragma once

#include "kvstation/Library.h"
#include "kvstation/Record.h"
#include "simwin/CallObserver.h"

namespace kvstation {

// One collection on this computer, whose calls the observer is told.
RecordBytes collectObserved(const Library& library, simwin::CallObserver& observer);

}  // namespace kvstation
