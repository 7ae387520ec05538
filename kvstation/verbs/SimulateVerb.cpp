// The verb "simulate": the records of described stations.
#include <CLI/App.hpp>
#include <memory>
#include <optional>

#include "kvstation/capture/StationSource.h"
#include "kvstation/capture/TracedStation.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/report/CallTimes.h"
#include "kvstation/report/Simulation.h"
#include "kvstation/verbs/ResultOptions.h"
#include "kvstation/verbs/RowOptions.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct SimulateOptions {
    ResultOptions result;
    SetOptions set;
    WhatIf whatIf;
    bool times = false;
};

constexpr const char* kCaption =
    "The simulated Windows answered: the times below are its own, not the described station's.\n";

int simulateOne(const SimulateOptions& options) {
    const std::string& folder = options.set.places.given.front();
    const simwin::Station station = stationFrom(folder, options.whatIf);
    Report report = simulateStation(station, folder);
    if (!options.result.html.empty())
        report.causes = allCauses(station);
    giveOut(report, options.result);
    if (options.times) {
        const TracedStation traced = traceStation(station);
        writeResult("\n" + std::string(kCaption) + timesText(traced.calls, traced.fields));
    }
    return kExitSuccess;
}

int simulateSet(const SimulateOptions& options) {
    if (options.times)
        throw WrongUse("--times are those of one station");
    std::optional<Collector> collector;
    const auto rowOf = [&](const Source& source) {
        const simwin::Station station = stationFrom(source.path, options.whatIf);
        if (!collector)
            collector.emplace();
        return StationRow{source.name, source.path, station.codePages.ansi,
                          simulateStation(station, source.name, *collector)};
    };
    return giveOutRows(options.set, options.result, SourceKind::Stations, "simulating", rowOf);
}

int simulate(const SimulateOptions& options) {
    if (options.set.places.isEmpty())
        throw WrongUse("STATION or --from is required; 'kvstation simulate --help' tells more");
    return options.set.isSet() ? simulateSet(options) : simulateOne(options);
}

}  // namespace

Verb addSimulate(CLI::App& tool) {
    const auto options = std::make_shared<SimulateOptions>();
    CLI::App* command = tool.add_subcommand("simulate", "Collect the records of described stations and show them");
    command
        ->add_option("STATION", options->set.places.given,
                     "Folders with registry.reg and station.json, folders of them, or patterns")
        ->type_name("")
        ->check(checkFileName);
    addResultOptions(*command, options->result);
    addSetOptions(*command, options->set);
    addWhatIf(*command, options->whatIf);
    command
        ->add_flag("--times", options->times,
                   "The milliseconds of each field and platform call too; these are the simulation's own")
        ->excludes(command->get_option("--json"))
        ->excludes(command->get_option("--field"));
    return {command, "kvstation simulate stations/metaframe-session --html page.html",
            [options] { return simulate(*options); }};
}

}  // namespace kvstation
