// The verb "diff": two records, field by field.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CodePageOption.h"
#include "kvstation/Differences.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/Output.h"
#include "kvstation/RecordFile.h"
#include "kvstation/Simulation.h"
#include "kvstation/Verb.h"
#include "kvstation/cause/StationSource.h"

namespace kvstation {
namespace {

struct DiffOptions {
    std::string left;
    std::string right;
    WhatIf whatIf;
    CodePageOption codePage;
};

// A record that was collected stays as it is, whatever is asked of a station. A station tells its code page itself.
Record load(const std::string& path, const WhatIf& whatIf, unsigned codePage) {
    const simwin::CodePageScope scope(codePage);
    return (isFolder(path) ? simulateStation(stationFrom(path, whatIf), path) : readRecordFile(path)).record;
}

int diff(const DiffOptions& options) {
    if (!options.whatIf.isEmpty() && !isFolder(options.left) && !isFolder(options.right))
        throw WrongUse("neither is a described station, whose answers could be different");
    const Record left = load(options.left, options.whatIf, options.codePage.of(0));
    const Record right = load(options.right, options.whatIf, options.codePage.of(1));
    const std::vector<std::size_t> differing = differingFields(left, right);
    writeResult(differencesView(left, right, differing, standardOutput().hasColours));
    return differing.empty() ? kExitSuccess : kExitFailure;
}

}  // namespace

Verb addDiff(CLI::App& tool) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* command = tool.add_subcommand("diff", "Compare two records, each a file or a described station");
    command->add_option("A", options->left, "A record's file or a station's folder")
        ->type_name("")
        ->required()
        ->check(checkFileName);
    command->add_option("B", options->right, "The other one")->type_name("")->required()->check(checkFileName);
    addCodePage(*command, options->codePage, 2);
    addWhatIf(*command, options->whatIf);
    return {command, "kvstation diff yesterday.json today.bin", [options] { return diff(*options); }};
}

}  // namespace kvstation
