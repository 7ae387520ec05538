// The verb "show": this station's record, collected now.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/Collection.h"
#include "kvstation/Errors.h"
#include "kvstation/Output.h"
#include "kvstation/ProductName.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/RunningSystem.h"
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
    std::string times;
    const RecordBytes bytes = collectHere(options.limit.duration(), options.times ? &times : nullptr);
    giveOut(
        {.record = Record(bytes), .bytes = bytes, .product = productName(runningSystem()), .origin = "this station"},
        options.result);
    if (options.times)
        writeResult("\n" + times);
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
