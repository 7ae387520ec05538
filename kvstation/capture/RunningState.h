// The registry, variables and files of the running Windows.
#pragma once

#include <memory>

#include "kvstation/capture/LocalState.h"

namespace kvstation {

// Asks Windows itself by its narrow calls, as the module does; the variables are those of this moment, to be taken
// before a collection publishes its own. Throws Failure where this is no Windows, or one whose ANSI code page is none
// of the known.
std::unique_ptr<LocalState> runningState();

}  // namespace kvstation
