// What the sources of a field told in one run.
#pragma once

#include "kvstation/Explanation.h"

namespace kvstation {

Finding findingOf(const Source& source, const WatchedRun& run);

// True when the source asked for is one that the call is.
bool isAsked(const StepCall& call, std::string_view step, std::string_view name, std::string_view argument);

}  // namespace kvstation
