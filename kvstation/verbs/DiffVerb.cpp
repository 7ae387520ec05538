// The verb "diff": two records field by field, two sets of them, or what two libraries make of the same stations.
#include <CLI/App.hpp>
#include <array>
#include <bitset>
#include <memory>
#include <nlohmann/json.hpp>

#include "kvstation/capture/StationSource.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/report/Differences.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/report/RecordFile.h"
#include "kvstation/report/Simulation.h"
#include "kvstation/rows/Frames.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/RecordSet.h"
#include "kvstation/sets/SetDifferences.h"
#include "kvstation/sets/Unsteady.h"
#include "kvstation/text/VisibleText.h"
#include "kvstation/verbs/CodePageOption.h"
#include "kvstation/verbs/ResultOptions.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct DiffOptions {
    std::string first;
    Places places;                       // with the first once the verb runs
    std::vector<std::string> libraries;  // none, or the old and the new one
    WhatIf whatIf;
    CodePageOption codePage;
    JobOptions jobs;
    std::vector<std::string> ignored;  // names of fields
    bool all = false;                  // of sets what differs by the moment too
    bool json = false;
    std::string html;
};

// What differs between two records, as far as it was asked for.
class Comparison {
  public:
    Comparison(const std::vector<std::string>& ignored, bool heedsMoments) : m_heedsMoments(heedsMoments) {
        for (const std::string& name : ignored)
            m_ignored.push_back(requireTypedField(name));
    }

    std::vector<std::size_t> differing(const Record& left, const Record& right) const {
        std::vector<std::size_t> found = differingFields(left, right);
        std::erase_if(found, [&](std::size_t field) {
            return std::ranges::find(m_ignored, field) != m_ignored.end() ||
                   (!m_heedsMoments && differsByTheMoment(left, right, field));
        });
        return found;
    }

  private:
    std::vector<std::size_t> m_ignored;
    bool m_heedsMoments;
};

void refuseWhatIfOfRecords(const DiffOptions& options) {
    if (!options.whatIf.isEmpty() && std::ranges::none_of(options.places.given, isFolder))
        throw WrongUse("neither is a described station, whose answers could be different");
}

// A record that was collected stays as it is, whatever is asked of a station. A station tells its code page itself.
Record load(const std::string& path, const DiffOptions& options, std::size_t side) {
    const simwin::CodePageScope scope(options.codePage.of(side));
    return (isFolder(path) ? simulateStation(stationFrom(path, options.whatIf), path) : readRecordFile(path)).record;
}

// As the result was asked for.
void giveOut(const SetDifferences& differences, const DiffOptions& options, const std::string& text) {
    std::vector<NewFile> results;
    if (!options.html.empty())
        results.push_back({options.html, differencesPage(differences)});
    if (options.json)
        results.push_back({kStandardOutputName, differencesJson(differences)});
    else if (options.html.empty())
        results.push_back({kStandardOutputName, text});
    writeResults(std::move(results));
}

FieldChange changeOf(const std::string& name, const Record& left, const Record& right, std::size_t field) {
    const auto json = [&](const Record& record) {
        std::string line = printedLine(valueJson(record, field));
        line.pop_back();
        return line;
    };
    return {name, json(left), json(right)};
}

int diffRecords(const DiffOptions& options) {
    const std::string& first = options.places.given[0];
    const std::string& second = options.places.given[1];
    refuseWhatIfOfRecords(options);
    const Comparison comparison(options.ignored, true);
    const Record left = load(first, options, 0);
    const Record right = load(second, options, 1);
    const std::vector<std::size_t> differing = comparison.differing(left, right);
    SetDifferences differences{.left = first, .right = second, .compared = 1, .differing = differing.empty() ? 0u : 1u};
    for (const std::size_t field : differing)
        differences.fields[field].push_back(changeOf(first, left, right, field));
    const std::string sides = differing.empty() ? "" : "- " + visible(first) + "\n+ " + visible(second) + "\n\n";
    giveOut(differences, options, sides + differencesView(left, right, differing, standardOutput().hasColours));
    return differing.empty() ? kExitSuccess : kExitFailure;
}

struct Sides {
    std::unique_ptr<RecordSet> left;
    std::unique_ptr<RecordSet> right;
};

bool has(const RecordSet& set, const std::string& name) {
    return std::ranges::binary_search(set.names(), name);
}

// What a process tells of one pair: for each field that differs its number and the two values. What is on one side
// alone is read too: something that is no record has neither gone nor come.
std::string compareOne(const Sides& sides, const Comparison& comparison, const std::string& name) {
    const Record left = has(*sides.left, name) ? sides.left->record(name) : Record();
    const Record right = has(*sides.right, name) ? sides.right->record(name) : Record();
    std::string told;
    if (!has(*sides.left, name) || !has(*sides.right, name))
        return told;
    for (const std::size_t field : comparison.differing(left, right)) {
        const FieldChange change = changeOf(name, left, right, field);
        appendFrame(told, std::to_string(field));
        appendFrame(told, change.left);
        appendFrame(told, change.right);
    }
    return told;
}

void addDifferences(SetDifferences& differences, const Sides& sides, const std::string& name, std::string_view told) {
    if (!has(*sides.left, name) || !has(*sides.right, name)) {
        (has(*sides.left, name) ? differences.went : differences.came).push_back(name);
        return;
    }
    const std::vector<std::string_view> frames = framesIn(told);
    for (std::size_t i = 0; i + 2 < frames.size(); i += 3)
        differences.fields[std::stoul(std::string(frames[i]))].push_back(
            {name, std::string(frames[i + 1]), std::string(frames[i + 2])});
    ++differences.compared;
    differences.differing += frames.empty() ? 0 : 1;
}

// The names of either side as sources.
std::vector<Source> allNames(const Sides& sides) {
    std::vector<std::string> names;
    std::ranges::set_union(sides.left->names(), sides.right->names(), std::back_inserter(names));
    std::vector<Source> sources;
    sources.reserve(names.size());
    for (const std::string& name : names)
        sources.push_back({name, name, {}});
    return sources;
}

std::size_t tellWrong(const Sides& sides) {
    for (const RecordSet* set : {sides.left.get(), sides.right.get()})
        for (const std::string& line : set->wrong())
            reportError(line);
    return sides.left->wrong().size() + sides.right->wrong().size();
}

int diffSets(const DiffOptions& options, const Sides& sides, SetDifferences differences) {
    const Comparison comparison(options.ignored, options.all);
    const Perform perform = [&](const Source& source) { return compareOne(sides, comparison, source.name); };
    if (isPart())
        return servePart(perform);
    const std::size_t wrong = tellWrong(sides);
    const auto take = [&](const Source& source, std::string_view told) {
        addDifferences(differences, sides, source.name, told);
    };
    const Tally tally = performAll(
        allNames(sides), {.what = "comparing", .perform = perform, .take = take, .prints = false}, options.jobs);
    giveOut(differences, options, differencesText(differences));
    if (wrong + tally.failed > 0)
        return kExitNotCompared;
    return differences.isEmpty() ? kExitSuccess : kExitFailure;
}

SourceReading readingOf(const DiffOptions& options, std::size_t side) {
    const auto read = [&options, side](const Source& source) { return load(source.path, options, side); };
    return {.station = read, .record = read};
}

// Of what is no set. What is no record either is told for what it is. A file without a line is a set of none.
void refuseOneRecord(const std::string& path, const DiffOptions& options, std::size_t side) {
    std::error_code error;
    if (std::filesystem::file_size(pathOf(path), error) == 0)
        return;
    load(path, options, side);
    throw WrongUse(path + " is one record, and the other is a set of them");
}

int diffTwoSets(const DiffOptions& options) {
    const std::string& first = options.places.given[0];
    const std::string& second = options.places.given[1];
    return diffSets(options,
                    {openRecordSet(first, readingOf(options, 0)), openRecordSet(second, readingOf(options, 1))},
                    {.left = first, .right = second});
}

// Each library is loaded when its first station comes: the process that people started may not need it.
std::function<Record(const Source&)> byLibrary(const DiffOptions& options, const std::string& library) {
    auto collector = std::make_shared<std::unique_ptr<Collector>>();
    return [&options, library, collector](const Source& source) {
        const simwin::Station station = stationFrom(source.path, options.whatIf);
        if (!*collector)
            *collector = std::make_unique<Collector>(library);
        return simulateStation(station, source.name, **collector).record;
    };
}

int diffLibraries(const DiffOptions& options) {
    const std::string& old = options.libraries[0];
    const std::string& made = options.libraries[1];
    return diffSets(
        options,
        {stationSet(options.places, byLibrary(options, old)), stationSet(options.places, byLibrary(options, made))},
        {.left = old, .right = made});
}

int diff(const DiffOptions& options) {
    if (!options.libraries.empty())
        return diffLibraries(options);
    if (options.places.given.size() != 2)
        throw WrongUse("diff compares two, A and B; 'kvstation diff --help' tells more");
    const std::array<bool, 2> areSets = {isRecordSet(options.places.given[0]), isRecordSet(options.places.given[1])};
    if (areSets == std::array{false, false})
        return diffRecords(options);
    refuseWhatIfOfRecords(options);
    for (std::size_t side = 0; side < areSets.size(); ++side)
        if (!areSets[side])
            refuseOneRecord(options.places.given[side], options, side);
    return diffTwoSets(options);
}

// Status 1 says that something differs.
int runDiff(DiffOptions options) {
    options.places.given.insert(options.places.given.begin(), options.first);
    try {
        return diff(options);
    } catch (const Failure& error) {
        reportError(error.what());
        return kExitNotCompared;
    }
}

}  // namespace

Verb addDiff(CLI::App& tool) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* command = tool.add_subcommand("diff", "Compare two records, or two sets of them by their names");
    command
        ->add_option("A", options->first,
                     "A record's file or a station's folder; or a folder of them, a file of --ndjson or of --sqlite")
        ->type_name("")
        ->required()
        ->check(checkFileName);
    command->add_option("B", options->places.given, "What it is compared with; with --library more stations")
        ->type_name("")
        ->check(checkFileName);
    command
        ->add_option("--library", options->libraries,
                     "Compare what two kvcstat64.dll make of the stations that follow (Windows)")
        ->type_name("OLD NEW")
        ->expected(2)
        ->allow_extra_args(false)
        ->check(checkFileName);
    command->add_option("--ignore", options->ignored, "Do not compare this field; may be repeated")
        ->type_name("FIELD")
        ->allow_extra_args(false)
        ->check(checkFieldName);
    command->add_flag("--all", options->all,
                      "In sets, compare what every look finds changed too: the drives' free space, the clock");
    command->add_flag("--json", options->json, "Print the differences as JSON");
    command->add_option("--html", options->html, "Write a page to FILE, - for standard output")
        ->type_name("FILE")
        ->check(checkFileName);
    addJobs(*command, options->jobs);
    addCodePage(*command, options->codePage, 2);
    addWhatIf(*command, options->whatIf);
    return {command, "kvstation diff yesterday.json today.bin", [options] { return runDiff(*options); }};
}

}  // namespace kvstation
