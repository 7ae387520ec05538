// The verb "explain": what gives a field its value and what decides it, proven by changing it.
#include <CLI/App.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "kvstation/capture/StationSource.h"
#include "kvstation/cause/CauseJson.h"
#include "kvstation/cause/CauseText.h"
#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/Progress.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/text/VisibleText.h"
#include "kvstation/verbs/LiveOptions.h"
#include "kvstation/verbs/Verb.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

struct ExplainOptions {
    std::string field;
    Places places;
    JobOptions jobs;
    WhatIf whatIf;
    bool json = false;
    bool ndjson = false;
    LiveOptions live;
};

// The field that is asked for; none is every field, as in "explain STATION...".
std::optional<std::size_t> takeField(ExplainOptions& options) {
    const bool isField = findTypedField(options.field) != fields().size();
    const bool isPath = isFolder(options.field) || options.field.find_first_of("*?/\\") != std::string::npos;
    if (!isField && isPath)
        options.places.given.insert(options.places.given.begin(), std::exchange(options.field, {}));
    return options.field.empty() ? std::nullopt : std::optional(requireTypedField(options.field));
}

FieldCauses causesOfOne(World& world, const Collector& collector, ExperimentOptions options, std::size_t field) {
    options.outputs = Outputs();
    options.outputs.set(field);
    const simwin::Station station = *world.station();
    const Experiments experiments(world, collector, options);
    std::vector<FieldCauses> one = {causesOf(world, collector, experiments, field)};
    addUnknownSources(station, collector, one);
    one.front().next = nextValues(station, collector, one.front());
    return std::move(one.front());
}

FieldCauses explainField(const simwin::Station& station, std::size_t field) {
    World world(station);
    const Progress progress("looking for causes");
    const ExperimentOptions experiments{.progress = [&](double done) { progress.tell(done); }};
    const Collector collector;
    return causesOfOne(world, collector, experiments, field);
}

// What nobody knows of the machine, behind a result.
std::string unknownText(const simwin::Station& station) {
    if (station.unknown.empty())
        return {};
    std::string text = "\nNot written down in this station, and therefore as if not there:\n";
    for (const std::string& one : station.unknown)
        text += "  " + visible(simwin::toUtf8(one)) + "\n";
    return text;
}

struct Explanation {
    nlohmann::ordered_json json;  // of one field, or a list of all
    std::string text;
};

Explanation explainStation(const simwin::Station& station, std::optional<std::size_t> field, bool colours) {
    if (field) {
        const FieldCauses causes = explainField(station, *field);
        return {causesJson(causes), causesText(causes, colours)};
    }
    Explanation all{nlohmann::ordered_json::array(), {}};
    for (const FieldCauses& causes : allCauses(station)) {
        all.json.push_back(causesJson(causes));
        all.text += causesLine(causes, colours);
    }
    return all;
}

int explainOne(const ExplainOptions& options, std::optional<std::size_t> field) {
    const std::string folder = options.places.given.empty() ? std::string() : options.places.given.front();
    const simwin::Station station = stationFrom(folder, options.whatIf);
    const Explanation found = explainStation(station, field, standardOutput().hasColours);
    writeResult(options.json ? printed(found.json) : found.text + unknownText(station));
    return kExitSuccess;
}

int explainSet(const ExplainOptions& options, std::optional<std::size_t> field) {
    if (options.json)
        throw WrongUse("--json prints the causes of one station; --ndjson prints those of one a line");
    const Perform perform = [&](const Source& source) {
        const simwin::Station station = stationFrom(source.path, options.whatIf);
        const Explanation found = explainStation(station, field, false);
        if (!options.ndjson)
            return visible(source.name) + ":\n" + found.text + unknownText(station) + "\n";
        return printedLine({{"name", source.name}, {"source", source.path}, {"causes", found.json}});
    };
    return printAll(options.places, SourceKind::Stations, "looking for causes", perform, options.jobs);
}

int explain(ExplainOptions options) {
    const std::optional<std::size_t> field = takeField(options);
    if (!options.places.isEmpty())
        refuseForDescribed(options.live);
    const CollectionGuard guard(options.live.terms());
    const bool isOneStation = options.places.isEmpty() || isOne(options.places);
    return isOneStation && !options.ndjson ? explainOne(options, field) : explainSet(options, field);
}

}  // namespace

Verb addExplain(CLI::App& tool) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App* command =
        tool.add_subcommand("explain", "Show what gives a field its value and what decides it, found by changing it");
    command->add_option("FIELD", options->field, "The field, such as szMACAddress; without it all fields, a line each")
        ->type_name("");
    addStationPlaces(*command, options->places);
    addJobs(*command, options->jobs);
    CLI::Option* json = command->add_flag("--json", options->json, "Print the causes as JSON");
    command->add_flag("--ndjson", options->ndjson, "Print the causes as a JSON object a line for each station")
        ->excludes(json);
    addWhatIf(*command, options->whatIf);
    addLiveOptions(*command, options->live);
    return {command, "kvstation explain szMACAddress stations/metaframe-session",
            [options] { return explain(*options); }};
}

}  // namespace kvstation
