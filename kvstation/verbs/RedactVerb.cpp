// The verb "redact": a described station without what tells whose it is.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/verbs/RedactOption.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct RedactOptions {
    std::string station;
    std::string out;
    bool all = false;
};

int redact(const RedactOptions& options) {
    writeRedacted(readStationFolder(options.station), options.out,
                  options.all ? Redacting::Everything : Redacting::Names);
    writeResult(options.out + "\n");
    return kExitSuccess;
}

}  // namespace

Verb addRedact(CLI::App& tool) {
    const auto options = std::make_shared<RedactOptions>();
    CLI::App* command =
        tool.add_subcommand("redact", "Put stand-ins into a described station for what tells whose it is");
    command->add_option("STATION", options->station, "The folder with registry.reg and station.json")
        ->type_name("")
        ->required()
        ->check(checkFileName);
    command->add_option("OUT", options->out, "The folder to write the two files into, as the tool writes them")
        ->type_name("")
        ->required();
    command->add_flag("--all", options->all, "Stand-ins for every text that is no word of Windows");
    return {command, "kvstation redact station out        # then send the folder out",
            [options] { return redact(*options); }};
}

}  // namespace kvstation
