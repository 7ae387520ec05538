// The verb "show": this station's record, collected now.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/capture/TracedStation.h"
#include "kvstation/collect/CollectedNow.h"
#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/collect/RunningSystem.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/record/ProductName.h"
#include "kvstation/report/CallTimes.h"
#include "kvstation/verbs/LiveOptions.h"
#include "kvstation/verbs/ResultOptions.h"
#include "kvstation/verbs/RowOptions.h"
#include "kvstation/verbs/Verb.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

struct ShowOptions {
    ResultOptions result;
    RowOptions rows;
    LiveOptions live;
    bool times = false;
};

Report reportOf(const RecordBytes& bytes) {
    return {.record = Record(bytes),
            .bytes = bytes,
            .product = productName(runningSystem()),
            .origin = "this station",
            .unknown = {},
            .collected = collectedNow()};
}

int showQuickly(const ShowOptions& options) {
    simwin::CallObserver nobody;
    const Report report = reportOf(collectHereObserved(nobody));
    if (options.rows.isEmpty())
        giveOut(report, options.result);
    else  // named as it registers
        giveOutRow({report.record.at("szStation").text, report.origin, simwin::codePageInForce(), report}, options.rows,
                   options.result);
    return kExitSuccess;
}

// A page tells the causes too, and times are told by the fields that hang on the questions.
int showWithCauses(const ShowOptions& options) {
    const TracedStation traced = traceHere();
    Report report = reportOf(traced.record);
    if (!options.result.html.empty())
        report.causes = allCauses(traced.station);
    giveOut(report, options.result);
    if (options.times)
        writeResult("\n" + timesText(traced.calls, traced.fields));
    return kExitSuccess;
}

int show(const ShowOptions& options) {
    if (!options.rows.isEmpty())
        refuseWishesOfOne(options.result);
    const CollectionGuard guard(options.live.terms());
    return options.times || !options.result.html.empty() ? showWithCauses(options) : showQuickly(options);
}

}  // namespace

Verb addShow(CLI::App& tool) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App* command = tool.add_subcommand("show", "Collect this station's record and show it (Windows)");
    addResultOptions(*command, options->result);
    CLI::Option* times =
        command->add_flag("--times", options->times, "The milliseconds of each field and platform call too")
            ->excludes(command->get_option("--json"))
            ->excludes(command->get_option("--field"));
    for (CLI::Option* row : addRowOptions(*command, options->rows))
        times->excludes(row);
    addLiveOptions(*command, options->live);
    return {command, "kvstation show --field szIPAddress     # 10.0.0.5", [options] { return show(*options); }};
}

}  // namespace kvstation
