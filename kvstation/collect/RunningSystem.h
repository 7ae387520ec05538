// The Windows that the tool runs on.
#pragma once

#include "kvstation/record/ProductName.h"

namespace kvstation {

// Its true version, whatever compatibility mode the tool was started in. Not known where there is no Windows.
SystemVersion runningSystem();

// Whether that Windows tells a program without a manifest another version than its own (kToldWithoutManifest).
bool hidesItsVersion(const SystemVersion& system);

}  // namespace kvstation
