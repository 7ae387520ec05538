// The verb "explain": the sources of one field, what each gave, and which was taken.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CollectionGuard.h"
#include "kvstation/Errors.h"
#include "kvstation/Explanation.h"
#include "kvstation/FieldTable.h"
#include "kvstation/Output.h"
#include "kvstation/Similar.h"
#include "kvstation/TimeLimit.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct ExplainOptions {
    std::string field;
    std::string station;
    TimeLimit limit;
};

int explainField(const ExplainOptions& options) {
    if (findField(options.field) == fields().size())
        throw WrongUse("the record has no field '" + options.field + "'" +
                       describeSimilar(similarFields(options.field)) + "; 'kvstation layout' lists them");
    const CollectionGuard guard(options.limit.duration());
    const WatchedRun run = watchRun(options.station);
    writeResult(explanationText(options.field, run, standardOutput().hasColours));
    return kExitSuccess;
}

}  // namespace

Verb addExplain(CLI::App& tool) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App* command = tool.add_subcommand("explain", "Show a field's sources, what each gave and which was taken");
    command->add_option("FIELD", options->field, "The field, such as szMACAddress")->type_name("")->required();
    command->add_option("STATION", options->station, "A described station's folder; without it this computer (Windows)")
        ->type_name("");
    addTimeLimit(*command, options->limit);
    return {command, "kvstation explain szMACAddress stations/metaframe-session",
            [options] { return explainField(*options); }};
}

}  // namespace kvstation
