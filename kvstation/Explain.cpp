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
#include "kvstation/VisibleText.h"
#include "kvstation/cause/CauseJson.h"
#include "kvstation/cause/CauseText.h"
#include "kvstation/cause/StationSource.h"
#include "kvstation/cause/UnknownText.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/Pattern.h"

namespace kvstation {
namespace {

struct ExplainOptions {
    std::string field;
    Places places;
    JobOptions jobs;
    WhatIf whatIf;
    bool json = false;
    bool ndjson = false;
    TimeLimit limit;
};

// "explain STATION...": every field of them.
void takeStationWithoutField(ExplainOptions& options) {
    if (options.field.empty() || findField(options.field) != fields().size())
        return;
    if (!isFolder(options.field) && !isPattern(options.field))
        throw WrongUse("the record has no field '" + options.field + "'" +
                       describeSimilar(similarFields(options.field)) + "; 'kvstation layout' lists them");
    options.places.given.insert(options.places.given.begin(), std::exchange(options.field, {}));
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

FieldCauses explainField(const ExplainOptions& options, const simwin::Station& station) {
    World world(station);
    const Progress progress("looking for causes");
    const ExperimentOptions experiments{.progress = [&](double done) { progress.tell(done); }};
    const Collector collector;
    return causesOfOne(world, collector, experiments, findField(options.field));
}

struct Explanation {
    nlohmann::ordered_json json;  // of one field, or a list of all
    std::string text;
};

Explanation explainStation(const ExplainOptions& options, const simwin::Station& station, bool colours) {
    if (!options.field.empty()) {
        const FieldCauses causes = explainField(options, station);
        return {causesJson(causes), causesText(causes, colours)};
    }
    Explanation all{nlohmann::ordered_json::array(), {}};
    for (const FieldCauses& causes : allCauses(station)) {
        all.json.push_back(causesJson(causes));
        all.text += causesLine(causes, colours);
    }
    return all;
}

int explainOne(const ExplainOptions& options) {
    const std::string folder = options.places.given.empty() ? std::string() : options.places.given.front();
    const simwin::Station station = stationFrom(folder, options.whatIf);
    const Explanation found = explainStation(options, station, standardOutput().hasColours);
    writeResult(options.json ? printed(found.json) : found.text + unknownText(station));
    return kExitSuccess;
}

int explainSet(const ExplainOptions& options) {
    if (options.json)
        throw WrongUse("--json prints the causes of one station; --ndjson prints those of one a line");
    const Perform perform = [&](const Source& source) {
        const simwin::Station station = stationFrom(source.path, options.whatIf);
        const Explanation found = explainStation(options, station, false);
        if (!options.ndjson)
            return visible(source.name) + ":\n" + found.text + unknownText(station) + "\n";
        return printedLine({{"name", source.name}, {"source", source.path}, {"causes", found.json}});
    };
    return printAll(options.places, SourceKind::Stations, "looking for causes", perform, options.jobs);
}

int explain(ExplainOptions options) {
    takeStationWithoutField(options);
    const CollectionGuard guard(options.limit.duration());
    const bool isHere = options.places.isEmpty() && !options.ndjson;
    return isHere || (isOne(options.places) && !options.ndjson) ? explainOne(options) : explainSet(options);
}

}  // namespace

Verb addExplain(CLI::App& tool) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App* command =
        tool.add_subcommand("explain", "Show what gives a field its value and what decides it, found by changing it");
    command->add_option("FIELD", options->field, "The field, such as szMACAddress; without it all fields, a line each")
        ->type_name("");
    command
        ->add_option("STATION", options->places.given,
                     "Described stations' folders, folders of them, or patterns; without one this computer (Windows)")
        ->type_name("...")
        ->check(checkFileName);
    addPlaces(*command, options->places);
    addJobs(*command, options->jobs);
    CLI::Option* json = command->add_flag("--json", options->json, "Print the causes as JSON");
    command->add_flag("--ndjson", options->ndjson, "Print the causes as a JSON object a line for each station")
        ->excludes(json);
    addWhatIf(*command, options->whatIf);
    addTimeLimit(*command, options->limit);
    return {command, "kvstation explain szMACAddress stations/metaframe-session",
            [options] { return explain(*options); }};
}

}  // namespace kvstation
