// The verb "whatif": what would change in a station's record.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CollectionGuard.h"
#include "kvstation/Differences.h"
#include "kvstation/Errors.h"
#include "kvstation/Output.h"
#include "kvstation/TimeLimit.h"
#include "kvstation/Verb.h"
#include "kvstation/VisibleText.h"
#include "kvstation/cause/StationSource.h"
#include "kvstation/cause/UnansweredText.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

struct WhatIfOptions {
    std::string station;
    WhatIf whatIf;
    TimeLimit limit;
};

struct Run {
    Outcome outcome;
    std::vector<AskedCall> calls;
};

Run runOf(const Collector& collector, const simwin::Station& station) {
    simwin::Machine machine(station);
    Run run;
    run.outcome = runOn(collector, machine, run.calls);
    return run;
}

std::string variableLine(const char* sign, const simwin::Variable& variable) {
    return std::string("  ") + sign + " \"" + visible(simwin::toUtf8(variable.value)) + "\"\n";
}

// Published variables, which other programs read.
std::string publishedView(const Outcome& before, const Outcome& after) {
    std::string text;
    for (const simwin::Variable& old : before.published)
        for (const simwin::Variable& made : after.published)
            if (old.name == made.name && old.value != made.value)
                text += "variable " + old.name + "\n" + variableLine("-", old) + variableLine("+", made);
    for (const simwin::Variable& made : after.published)
        if (std::ranges::find(before.published, made.name, &simwin::Variable::name) == before.published.end())
            text += "variable " + made.name + "\n" + variableLine("+", made);
    for (const simwin::Variable& old : before.published)
        if (std::ranges::find(after.published, old.name, &simwin::Variable::name) == after.published.end())
            text += "variable " + old.name + "\n" + variableLine("-", old);
    return text;
}

int whatIf(const WhatIfOptions& options) {
    if (options.whatIf.isEmpty())
        throw WrongUse("what is to be different? --set, --unset, --value, --fail or --version says it");
    const CollectionGuard guard(options.limit.duration());
    const simwin::Station station = stationFrom(options.station);
    simwin::Station changed = station;
    apply(options.whatIf, changed);
    std::string text;
    {
        const Collector collector;
        const Run before = runOf(collector, station);
        const Run after = runOf(collector, changed);
        const Record left(before.outcome.record);
        const Record right(after.outcome.record);
        text = differencesView(left, right, differingFields(left, right), standardOutput().hasColours) +
               publishedView(before.outcome, after.outcome);
        if (text.empty())
            text = "nothing would change\n";
        text += unansweredText(World(changed), after.calls);
    }
    writeResult(text);
    return kExitSuccess;
}

}  // namespace

Verb addWhatIfVerb(CLI::App& tool) {
    const auto options = std::make_shared<WhatIfOptions>();
    CLI::App* command =
        tool.add_subcommand("whatif", "Show what would change in the record if something were different");
    command->add_option("STATION", options->station, "A described station's folder; without it this computer (Windows)")
        ->type_name("");
    addWhatIf(*command, options->whatIf);
    addTimeLimit(*command, options->limit);
    return {command, "kvstation whatif stations/metaframe-session --set KVStationType=1",
            [options] { return whatIf(*options); }};
}

}  // namespace kvstation
