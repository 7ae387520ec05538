// The Windows that the tool runs on.
#pragma once

#include "kvstation/record/ProductName.h"

namespace kvstation {

// Its true version, whatever compatibility mode the tool was started in. Not known where there is no Windows.
SystemVersion runningSystem();

}  // namespace kvstation
