// The verb "explain": what gives a field its value and what decides it, proven by changing it.
#include <CLI/App.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "kvstation/CollectionGuard.h"
#include "kvstation/Errors.h"
#include "kvstation/FieldTable.h"
#include "kvstation/Files.h"
#include "kvstation/JsonView.h"
#include "kvstation/Output.h"
#include "kvstation/Progress.h"
#include "kvstation/Similar.h"
#include "kvstation/TimeLimit.h"
#include "kvstation/Verb.h"
#include "kvstation/cause/CauseJson.h"
#include "kvstation/cause/CauseText.h"
#include "kvstation/cause/StationSource.h"
#include "kvstation/cause/UnknownText.h"

namespace kvstation {
namespace {

struct ExplainOptions {
    std::string field;
    std::string station;
    WhatIf whatIf;
    bool json = false;
    TimeLimit limit;
};

// "explain STATION": every field of it.
void takeStationWithoutField(ExplainOptions& options) {
    if (options.field.empty() || findField(options.field) != fields().size())
        return;
    if (!options.station.empty() || !isFolder(options.field))
        throw WrongUse("the record has no field '" + options.field + "'" +
                       describeSimilar(similarFields(options.field)) + "; 'kvstation layout' lists them");
    options.station = std::exchange(options.field, {});
}

FieldCauses causesOfOne(World& world, const Collector& collector, ExperimentOptions options, std::size_t field) {
    options.outputs = Outputs();
    options.outputs.set(field);
    const simwin::Station station = *world.station();
    const Experiments experiments(world, collector, options);
    FieldCauses causes = causesOf(world, collector, experiments, field);
    causes.next = nextValues(station, collector, causes);
    return causes;
}

std::string explainOne(const ExplainOptions& options, const simwin::Station& station) {
    World world(station);
    const Progress progress("looking for causes");
    const ExperimentOptions experiments{.progress = [&](double done) { progress.tell(done); }};
    const Collector collector;
    const FieldCauses causes = causesOfOne(world, collector, experiments, findField(options.field));
    return options.json ? printed(causesJson(causes)) : causesText(causes, standardOutput().hasColours);
}

std::string explainAll(const ExplainOptions& options, const simwin::Station& station) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    std::string text;
    for (const FieldCauses& causes : allCauses(station)) {
        list.push_back(causesJson(causes));
        text += causesLine(causes, standardOutput().hasColours);
    }
    return options.json ? printed(list) : text;
}

int explain(ExplainOptions options) {
    takeStationWithoutField(options);
    const CollectionGuard guard(options.limit.duration());
    const simwin::Station station = stationFrom(options.station, options.whatIf);
    const std::string result = options.field.empty() ? explainAll(options, station) : explainOne(options, station);
    writeResult(options.json ? result : result + unknownText(station));
    return kExitSuccess;
}

}  // namespace

Verb addExplain(CLI::App& tool) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App* command =
        tool.add_subcommand("explain", "Show what gives a field its value and what decides it, found by changing it");
    command->add_option("FIELD", options->field, "The field, such as szMACAddress; without it all fields, a line each")
        ->type_name("");
    command->add_option("STATION", options->station, "A described station's folder; without it this computer (Windows)")
        ->type_name("");
    command->add_flag("--json", options->json, "Print the causes as JSON");
    addWhatIf(*command, options->whatIf);
    addTimeLimit(*command, options->limit);
    return {command, "kvstation explain szMACAddress stations/metaframe-session",
            [options] { return explain(*options); }};
}

}  // namespace kvstation
