// The verb "simulate": the record of a described station.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CallLog.h"
#include "kvstation/CallTimes.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/Output.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/Simulation.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct SimulateOptions {
    ResultOptions result;
    std::string station;
    bool times = false;
};

constexpr const char* kCaption =
    "The simulated Windows answered: the times below are its own, not the described station's.\n";

int simulate(const SimulateOptions& options) {
    CallLog log;
    giveOut(simulateStation(options.station, options.times ? &log : nullptr), options.result);
    if (options.times)
        writeResult("\n" + std::string(kCaption) + timesText(log.calls()));
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
    command
        ->add_flag("--times", options->times,
                   "The milliseconds of each step and the slowest platform calls too; these are the simulation's own")
        ->excludes(command->get_option("--json"))
        ->excludes(command->get_option("--field"));
    return {command, "kvstation simulate stations/metaframe-session --html page.html",
            [options] { return simulate(*options); }};
}

}  // namespace kvstation
