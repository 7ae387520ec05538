// The platform calls of a collection, each with the fields that hang on it.
#pragma once

#include <string>
#include <vector>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct TracedCall {
    simwin::ObservedCall call;
    std::vector<std::string> fields;  // names of fields and published variables
};

struct TraceOptions {
    bool all = false;  // the module's own work too: memory, texts, closing what it opened
    bool colours = false;
    std::string field{};  // no more than the questions on which this one hangs; empty: all
};

// For people: a line for each question, with the trace lines among them.
std::string traceView(const std::vector<TracedCall>& calls, const TraceOptions& options);

// [{"call", "arguments", "answer", "error", "fields"}, {"trace", "level"}, ...].
std::string traceJson(const std::vector<TracedCall>& calls, const TraceOptions& options);

}  // namespace kvstation
