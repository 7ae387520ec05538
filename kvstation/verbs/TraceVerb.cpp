// The verb "trace": every question that the module asks, with its answer and what hangs on it.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/capture/StationSource.h"
#include "kvstation/capture/TracedStation.h"
#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/report/TraceView.h"
#include "kvstation/verbs/LiveOptions.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct TraceVerbOptions {
    std::string station;
    WhatIf whatIf;
    std::string field;
    bool all = false;
    bool json = false;
    LiveOptions live;
};

int trace(const TraceVerbOptions& options) {
    const std::string field = options.field.empty() ? "" : std::string(fields()[requireTypedField(options.field)].name);
    if (!options.station.empty())
        refuseForDescribed(options.live);
    const CollectionGuard guard(options.live.terms());
    const bool isHere = options.station.empty() && options.whatIf.isEmpty();
    const TracedStation traced = isHere ? traceHere() : traceStation(stationFrom(options.station, options.whatIf));
    std::vector<TracedCall> calls;
    for (std::size_t i = 0; i < traced.calls.size(); ++i)
        calls.push_back({traced.calls[i].call, traced.fields[i]});
    const TraceOptions shown{
        .all = options.all, .colours = standardOutput().hasColours && !options.json, .field = field};
    writeResult(options.json ? traceJson(calls, shown) : traceView(calls, shown));
    return kExitSuccess;
}

}  // namespace

Verb addTrace(CLI::App& tool) {
    const auto options = std::make_shared<TraceVerbOptions>();
    CLI::App* command = tool.add_subcommand(
        "trace",
        "Show every question that a collection asks, in its order, the answers and the fields that hang on them");
    command->add_option("STATION", options->station, "A described station's folder; without it this computer (Windows)")
        ->type_name("");
    command->add_option("--field", options->field, "Only the questions that this field hangs on")->type_name("FIELD");
    command->add_flag("--all", options->all, "The module's own work too: memory, texts, closing what it opened");
    command->add_flag("--json", options->json, "Print a JSON list");
    addWhatIf(*command, options->whatIf);
    addLiveOptions(*command, options->live);
    return {command, "kvstation trace stations/metaframe-session --field szStation",
            [options] { return trace(*options); }};
}

}  // namespace kvstation
