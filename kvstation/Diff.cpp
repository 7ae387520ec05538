// The verb "diff": two records, field by field.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/Differences.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/Output.h"
#include "kvstation/RecordFile.h"
#include "kvstation/Simulation.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct DiffOptions {
    std::string left;
    std::string right;
};

Record load(const std::string& path) {
    return (isFolder(path) ? simulateStation(path) : readRecordFile(path)).record;
}

int diff(const DiffOptions& options) {
    const Record left = load(options.left);
    const Record right = load(options.right);
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
    return {command, "kvstation diff yesterday.json today.bin", [options] { return diff(*options); }};
}

}  // namespace kvstation
