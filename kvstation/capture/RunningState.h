// The registry, variables and files of the running Windows.
#pragma once

#include <memory>

#include "kvstation/capture/LocalState.h"

namespace kvstation {

// Asks Windows itself by its narrow calls, as the module does. Needs Windows and throws Failure elsewhere.
std::unique_ptr<LocalState> runningState();

}  // namespace kvstation
