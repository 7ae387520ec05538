// The verb "layout": where each field of the record stands and what it means.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/Errors.h"
#include "kvstation/LayoutTable.h"
#include "kvstation/Output.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct LayoutOptions {
    bool json = false;
    bool markdown = false;
};

int layout(const LayoutOptions& options) {
    writeResult(options.json ? layoutJson() : options.markdown ? layoutMarkdown() : layoutText());
    return kExitSuccess;
}

}  // namespace

Verb addLayout(CLI::App& tool) {
    const auto options = std::make_shared<LayoutOptions>();
    CLI::App* command = tool.add_subcommand("layout", "Show offset, width, limit and meaning of every field");
    CLI::Option* json = command->add_flag("--json", options->json, "Print a JSON array with an object for each field");
    command->add_flag("--markdown", options->markdown, "Print the record's document")->excludes(json);
    return {command, "kvstation layout", [options] { return layout(*options); }};
}

}  // namespace kvstation
