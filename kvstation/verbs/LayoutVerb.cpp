// The verb "layout": where each field of the record stands and what it means, and what the other formats hold.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/cause/FieldSources.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/report/LayoutTable.h"
#include "kvstation/rows/RowSchema.h"
#include "kvstation/verbs/Verb.h"
#include "simwin/station/StationPage.h"

namespace kvstation {
namespace {

struct LayoutOptions {
    bool json = false;
    bool markdown = false;
    bool schema = false;
    bool station = false;
    std::vector<std::string> over;
};

int layout(const LayoutOptions& options) {
    if (options.schema) {
        writeResult(rowSchema());
        return kExitSuccess;
    }
    if (options.station) {
        writeResult(simwin::stationMembersPage());
        return kExitSuccess;
    }
    const FieldSources sources = options.over.empty() ? FieldSources() : sourcesIn(causesOver(options.over));
    writeResult(options.json ? layoutJson(sources) : options.markdown ? layoutMarkdown(sources) : layoutText(sources));
    return kExitSuccess;
}

}  // namespace

Verb addLayout(CLI::App& tool) {
    const auto options = std::make_shared<LayoutOptions>();
    CLI::App* command = tool.add_subcommand("layout", "Show offset, width, limit and meaning of every field");
    CLI::Option* json = command->add_flag("--json", options->json, "Print a JSON array with an object for each field");
    CLI::Option* markdown =
        command->add_flag("--markdown", options->markdown, "Print the record's document")->excludes(json);
    CLI::Option* over =
        command
            ->add_option("--over", options->over, "Where each field comes from too, found on these described stations")
            ->type_name("STATION...");
    CLI::Option* schema =
        command->add_flag("--schema", options->schema, "Print the JSON Schema of a row, a line of 'simulate --ndjson'")
            ->excludes(json)
            ->excludes(markdown)
            ->excludes(over);
    command->add_flag("--station", options->station, "Print the members of station.json as tables in Markdown")
        ->excludes(json)
        ->excludes(markdown)
        ->excludes(over)
        ->excludes(schema);
    return {command, "kvstation layout", [options] { return layout(*options); }};
}

}  // namespace kvstation
