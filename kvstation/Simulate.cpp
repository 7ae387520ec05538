// The verb "simulate": the record of a described station.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/Errors.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/Simulation.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct SimulateOptions {
    ResultOptions result;
    std::string station;
};

int simulate(const SimulateOptions& options) {
    giveOut(simulateStation(options.station), options.result);
    return kExitSuccess;
}

}  // namespace

Verb addSimulate(CLI::App& tool) {
    const auto options = std::make_shared<SimulateOptions>();
    CLI::App* command = tool.add_subcommand("simulate", "Collect the record of a described station and show it");
    command->add_option("STATION", options->station, "The folder with registry.reg and station.json")
        ->type_name("")
        ->required();
    addResultOptions(*command, options->result);
    return {command, "kvstation simulate stations/metaframe-session --html page.html",
            [options] { return simulate(*options); }};
}

}  // namespace kvstation
