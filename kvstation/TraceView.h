// The platform calls of a collection for people: under their steps, with the trace lines among them.
#pragma once

#include <string>
#include <vector>

#include "kvstation/CallLog.h"

namespace kvstation {

struct TraceOptions {
    bool all = false;  // the module's own work too: memory, texts, closing what it opened
    bool colours = false;
};

std::string traceView(const std::vector<StepCall>& calls, const TraceOptions& options);

}  // namespace kvstation
