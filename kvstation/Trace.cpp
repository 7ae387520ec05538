// The verb "trace": every question that the module asks, with its answer.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CollectionGuard.h"
#include "kvstation/Errors.h"
#include "kvstation/Output.h"
#include "kvstation/TimeLimit.h"
#include "kvstation/TraceView.h"
#include "kvstation/Verb.h"
#include "kvstation/WatchedRun.h"

namespace kvstation {
namespace {

struct TraceVerbOptions {
    std::string station;
    bool all = false;
    TimeLimit limit;
};

int trace(const TraceVerbOptions& options) {
    const CollectionGuard guard(options.limit.duration());
    const WatchedRun run = watchRun(options.station);
    writeResult(traceView(run.calls, {.all = options.all, .colours = standardOutput().hasColours}));
    return kExitSuccess;
}

}  // namespace

Verb addTrace(CLI::App& tool) {
    const auto options = std::make_shared<TraceVerbOptions>();
    CLI::App* command =
        tool.add_subcommand("trace", "Show every question that a collection asks, in its order, and the answers");
    command->add_option("STATION", options->station, "A described station's folder; without it this computer (Windows)")
        ->type_name("");
    command->add_flag("--all", options->all, "The module's own work too: memory, texts, closing what it opened");
    addTimeLimit(*command, options->limit);
    return {command, "kvstation trace stations/metaframe-session", [options] { return trace(*options); }};
}

}  // namespace kvstation
