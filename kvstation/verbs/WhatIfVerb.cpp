// The verb "whatif": what would change in a station's record.
#include <CLI/App.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "kvstation/capture/StationSource.h"
#include "kvstation/cause/UnansweredText.h"
#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/report/Differences.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/rows/Frames.h"
#include "kvstation/sets/Collisions.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/ResultBuffer.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"
#include "kvstation/verbs/LiveOptions.h"
#include "kvstation/verbs/Verb.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

struct WhatIfOptions {
    Places places;
    JobOptions jobs;
    WhatIf whatIf;
    LiveOptions live;
    bool ndjson = false;
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

// A variable that other programs read, and that would be another one. Nothing: it is not set.
struct PublishedChange {
    std::string name;
    std::optional<std::string> before;
    std::optional<std::string> after;
};

std::optional<std::string> publishedValue(const Outcome& outcome, const std::string& name) {
    const auto found = std::ranges::find(outcome.published, name, &simwin::Variable::name);
    return found == outcome.published.end() ? std::nullopt : std::optional(simwin::toUtf8(found->value));
}

// Those that are other ones, those that come, those that go.
std::vector<PublishedChange> publishedChanges(const Outcome& before, const Outcome& after) {
    std::vector<PublishedChange> others;
    std::vector<PublishedChange> gone;
    std::vector<PublishedChange> come;
    for (const simwin::Variable& old : before.published) {
        const std::string value = simwin::toUtf8(old.value);
        const auto now = publishedValue(after, old.name);
        if (now != value)
            (now ? others : gone).push_back({old.name, value, now});
    }
    for (const simwin::Variable& made : after.published)
        if (!publishedValue(before, made.name))
            come.push_back({made.name, std::nullopt, simwin::toUtf8(made.value)});
    std::ranges::move(come, std::back_inserter(others));
    std::ranges::move(gone, std::back_inserter(others));
    return others;
}

// What would be different on one station.
struct StationChange {
    Record before;
    Record after;
    std::vector<std::size_t> fields;
    std::vector<PublishedChange> published;
    std::string unanswered;  // for people: what it hangs on that nobody wrote down

    bool isEmpty() const { return fields.empty() && published.empty(); }
};

StationChange changeOf(const WhatIf& whatIf, const std::string& folder) {
    const simwin::Station station = stationFrom(folder);
    simwin::Station changed = station;
    apply(whatIf, changed);
    const Collector collector;
    const Run before = runOf(collector, station);
    const Run after = runOf(collector, changed);
    StationChange change{.before = Record(before.outcome.record),
                         .after = Record(after.outcome.record),
                         .fields = {},
                         .published = publishedChanges(before.outcome, after.outcome),
                         .unanswered = unansweredText(World(changed), after.calls)};
    change.fields = differingFields(change.before, change.after);
    return change;
}

std::string variableLine(const char* sign, const std::optional<std::string>& value) {
    return value ? std::string("  ") + sign + " \"" + visible(*value) + "\"\n" : std::string();
}

std::string changeText(const StationChange& change, bool colours) {
    std::string text = differencesView(change.before, change.after, change.fields, colours);
    for (const PublishedChange& variable : change.published)
        text +=
            "variable " + variable.name + "\n" + variableLine("-", variable.before) + variableLine("+", variable.after);
    return (text.empty() ? "nothing would change\n" : text) + change.unanswered;
}

nlohmann::ordered_json orNull(const std::optional<std::string>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}

std::string changeJson(const Source& source, const StationChange& change) {
    nlohmann::ordered_json line = {{"name", source.name},
                                   {"source", source.path},
                                   {"fields", nlohmann::ordered_json::object()},
                                   {"variables", nlohmann::ordered_json::object()}};
    for (const std::size_t field : change.fields)
        line["fields"][std::string(fields()[field].name)] = {{"before", valueJson(change.before, field)},
                                                             {"after", valueJson(change.after, field)}};
    for (const PublishedChange& variable : change.published)
        line["variables"][variable.name] = {{"before", orNull(variable.before)}, {"after", orNull(variable.after)}};
    return printedLine(line);
}

int whatIfOne(const WhatIfOptions& options) {
    const std::string folder = options.places.given.empty() ? std::string() : options.places.given.front();
    writeResult(changeText(changeOf(options.whatIf, folder), standardOutput().hasColours));
    return kExitSuccess;
}

// What the processes tell of one station: its szStation before and after, whether anything changes, and its text.
std::string performOne(const WhatIfOptions& options, const Source& source) {
    const StationChange change = changeOf(options.whatIf, source.path);
    std::string told;
    appendFrame(told, change.before.at("szStation").text);
    appendFrame(told, change.after.at("szStation").text);
    appendFrame(told, change.isEmpty() ? "" : "changed");
    if (options.ndjson)
        appendFrame(told, changeJson(source, change));
    else
        appendFrame(told, change.isEmpty() ? "" : visible(source.name) + ":\n" + changeText(change, false) + "\n");
    return told;
}

std::string collisionsText(const std::vector<Collisions::Collision>& collisions) {
    std::string text = collisions.empty() ? "" : "One szStation for several:\n";
    for (const Collisions::Collision& collision : collisions) {
        text += "  \"" + visible(collision.station) + "\": " + joinWords(collision.names, ", ", visible);
        text += collision.isNew ? "\n" : " (as now)\n";
    }
    return text;
}

std::string collisionsJson(const std::vector<Collisions::Collision>& collisions) {
    std::string lines;
    for (const Collisions::Collision& collision : collisions)
        lines +=
            printedLine({{"szStation", collision.station}, {"stations", collision.names}, {"isNew", collision.isNew}});
    return lines;
}

int whatIfSet(const WhatIfOptions& options) {
    const Perform perform = [&](const Source& source) { return performOne(options, source); };
    if (isPart())
        return servePart(perform);
    std::vector<Source> sources = sourcesOf(options.places, SourceKind::Stations);
    refuseDoubles(sources);
    ResultBuffer output;
    Collisions collisions;
    std::size_t changed = 0;
    const auto take = [&](const Source& source, std::string_view told) {
        const std::vector<std::string_view> frames = framesIn(told);
        collisions.add(source.name, frames[0], frames[1]);
        changed += frames[2].empty() ? 0 : 1;
        output.add(frames[3]);
    };
    const Tally tally = performAll(sources, {.what = "asking what if", .perform = perform, .take = take}, options.jobs);
    if (options.ndjson)
        output.add(collisionsJson(collisions.found()));
    else
        output.add(std::to_string(changed) + " of " + std::to_string(tally.done - tally.failed) + " would change\n" +
                   collisionsText(collisions.found()));
    output.flush();
    return statusOf(tally);
}

int whatIf(const WhatIfOptions& options) {
    if (options.whatIf.isEmpty())
        throw WrongUse("what is to be different? --set, --unset, --value, --fail or --version says it");
    if (!options.places.isEmpty())
        refuseForDescribed(options.live);
    const CollectionGuard guard(options.live.terms());
    const bool isOneStation = options.places.isEmpty() || isOne(options.places);
    return isOneStation && !options.ndjson ? whatIfOne(options) : whatIfSet(options);
}

}  // namespace

Verb addWhatIfVerb(CLI::App& tool) {
    const auto options = std::make_shared<WhatIfOptions>();
    CLI::App* command =
        tool.add_subcommand("whatif", "Show what would change in the record if something were different");
    addStationPlaces(*command, options->places);
    addJobs(*command, options->jobs);
    command->add_flag(
        "--ndjson", options->ndjson,
        "Print the changes as a JSON object a line for each station, then one for each szStation of several");
    addWhatIf(*command, options->whatIf);
    addLiveOptions(*command, options->live);
    return {command, "kvstation whatif stations/metaframe-session --set KVStationType=1",
            [options] { return whatIf(*options); }};
}

}  // namespace kvstation
