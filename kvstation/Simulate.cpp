// The verb "simulate": the record of a described station.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CallTimes.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/Output.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/Simulation.h"
#include "kvstation/TracedStation.h"
#include "kvstation/Verb.h"
#include "kvstation/cause/StationSource.h"

namespace kvstation {
namespace {

struct SimulateOptions {
    ResultOptions result;
    std::string station;
    WhatIf whatIf;
    bool times = false;
};

constexpr const char* kCaption =
    "The simulated Windows answered: the times below are its own, not the described station's.\n";

int simulate(const SimulateOptions& options) {
    const simwin::Station station = stationFrom(options.station, options.whatIf);
    Report report = simulateStation(station, options.station);
    if (!options.result.html.empty())
        report.causes = allCauses(station);
    giveOut(report, options.result);
    if (options.times) {
        const TracedStation traced = traceStation(station);
        writeResult("\n" + std::string(kCaption) + timesText(traced.calls, traced.fields));
    }
    return kExitSuccess;
}

}  // namespace

Verb addSimulate(CLI::App& tool) {
    const auto options = std::make_shared<SimulateOptions>();
    CLI::App* command = tool.add_subcommand("simulate", "Collect the record of a described station and show it");
    command->add_option("STATION", options->station, "The folder with registry.reg and station.json")
        ->type_name("")
        ->required()
        ->check(checkFileName);
    addResultOptions(*command, options->result);
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
