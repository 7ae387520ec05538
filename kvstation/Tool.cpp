#include "kvstation/Tool.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>

#include "kvstation/commandline/VerbName.h"
#include "kvstation/commandline/WrongOption.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

std::vector<Verb> addVerbs(CLI::App& tool) {
    return {
#define KV_VERB(add) add(tool),
#include "kvstation/verbs/Verbs.inc"
    };
}

void addExamples(CLI::App& tool, const std::vector<Verb>& verbs) {
    std::string examples = "Examples:";
    for (const Verb& verb : verbs) {
        examples += "\n  " + verb.example;
        verb.command->footer("Example:\n  " + verb.example);
    }
    tool.footer(
        examples +
        "\n\nExit status: 0 success, 1 it did not work, 2 wrong use; of diff 0 the same, 1 different, 2 not compared.");
}

void parse(CLI::App& tool, std::vector<std::string> arguments) {
    std::ranges::reverse(arguments);  // as the library takes them
    tool.parse(std::move(arguments));
}

int runVerb(const std::vector<Verb>& verbs) {
    for (const Verb& verb : verbs)
        if (verb.command->parsed())
            return verb.run();
    throw WrongUse("which verb? 'kvstation --help' lists them");
}

int runGuarded(CLI::App& tool, const std::vector<Verb>& verbs, const std::vector<std::string>& arguments) {
    try {
        refuseWrongOptions(tool, arguments);
        parse(tool, arguments);
        return runVerb(verbs);
    } catch (const CLI::CallForHelp&) {
        writeResult(tool.help());
        return kExitSuccess;
    } catch (const CLI::CallForVersion& version) {
        writeResult(std::string(version.what()) + "\n");
        return kExitSuccess;
    } catch (const CLI::ParseError& error) {
        const std::vector<CLI::App*> parsed = tool.get_subcommands();
        throw WrongUse(std::string(error.what()) + "; " + helpHint(parsed.empty() ? tool : *parsed.front()));
    }
}

}  // namespace

int runTool(const std::vector<std::string>& arguments) {
    try {
        CLI::App tool(
            "Sees, explains and compares what the workstation-inventory module kvcstat64.dll tells of a station.",
            "kvstation");
        tool.allow_windows_style_options(false);  // "/mnt/station" is a path under Wine
        tool.set_version_flag("-V,--version", "kvstation " KVSTATION_VERSION);
        tool.ignore_case();             // of the verbs
        tool.require_subcommand(0, 1);  // behind a verb the name of another one is a file's or folder's
        tool.set_help_flag("-h,--help", "Print this help");
        const std::vector<Verb> verbs = addVerbs(tool);
        addExamples(tool, verbs);
        return runGuarded(tool, verbs, arguments);
    } catch (const WrongUse& error) {
        reportError(error.what());
        return kExitWrongUse;
    } catch (const std::exception& error) {
        reportError(error.what());
        return kExitFailure;
    }
}

}  // namespace kvstation
