// The verb "show": this station's record, collected now.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CallLog.h"
#include "kvstation/CallTimes.h"
#include "kvstation/CollectionGuard.h"
#include "kvstation/Errors.h"
#include "kvstation/Output.h"
#include "kvstation/ProductName.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/RunningSystem.h"
#include "kvstation/Stage.h"
#include "kvstation/TimeLimit.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct ShowOptions {
    ResultOptions result;
    TimeLimit limit;
    bool times = false;
};

int show(const ShowOptions& options) {
    const CollectionGuard guard(options.limit.duration());
    CallLog calls;
    simwin::CallObserver nobody;
    const RecordBytes bytes = collectHereObserved(options.times ? calls : nobody);
    giveOut(
        {.record = Record(bytes), .bytes = bytes, .product = productName(runningSystem()), .origin = "this station"},
        options.result);
    if (options.times)
        writeResult("\n" + timesText(calls.calls()));
    return kExitSuccess;
}

}  // namespace

Verb addShow(CLI::App& tool) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App* command = tool.add_subcommand("show", "Collect this station's record and show it (Windows)");
    addResultOptions(*command, options->result);
    command->add_flag("--times", options->times, "The milliseconds of each step and the slowest platform calls too")
        ->excludes(command->get_option("--json"))
        ->excludes(command->get_option("--field"));
    addTimeLimit(*command, options->limit);
    return {command, "kvstation show --field szIPAddress     # 10.0.0.5", [options] { return show(*options); }};
}

}  // namespace kvstation
