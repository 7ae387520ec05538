// One collection by the real library that a parent process can tell of, however it ends. Windows only.
#pragma once

#include "kvstation/Record.h"
#include "kvstation/SharedCollection.h"
#include "simwin/CallObserver.h"

namespace kvstation {

// Loads the library, collects and unloads it, with each step and platform call noted before it is made. `observer` is
// told of the calls too; null: nobody. Throws Failure.
RecordBytes collectNoted(SharedCollection& shared, simwin::CallObserver* observer);

}  // namespace kvstation
