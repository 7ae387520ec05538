// The verb "help": what the options of the same name tell, for those who type a word.
#include <CLI/App.hpp>
#include <CLI/Formatter.hpp>
#include <memory>

#include "kvstation/commandline/VerbName.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

// The tool's own help() would tell of the verb that runs.
std::string helpOf(const CLI::App& tool, const std::string& verb) {
    if (verb.empty())
        return tool.get_formatter()->make_help(&tool, tool.get_name(), CLI::AppFormatMode::Normal);
    const CLI::App& command = verbCalled(tool, verb);
    return command.get_formatter()->make_help(&command, tool.get_name() + " " + command.get_name(),
                                              CLI::AppFormatMode::Normal);
}

}  // namespace

Verb addHelp(CLI::App& tool) {
    const auto verb = std::make_shared<std::string>();
    CLI::App* command = tool.add_subcommand("help", "Print the help of the tool or of a verb");
    command->add_option("VERB", *verb, "The verb; without it the tool")->type_name("");
    return {command, "kvstation help simulate", [&tool, verb] {
                writeResult(helpOf(tool, *verb));
                return kExitSuccess;
            }};
}

}  // namespace kvstation
