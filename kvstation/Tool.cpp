#include "kvstation/Tool.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>

#include "kvstation/Errors.h"
#include "kvstation/Output.h"
#include "kvstation/Similar.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

std::vector<Verb> addVerbs(CLI::App& tool) {
    return {
        addShow(tool),   addSimulate(tool), addDecode(tool),     addDiff(tool),    addLayout(tool),
        addTrace(tool),  addExplain(tool),  addWhatIfVerb(tool), addCapture(tool), addRedact(tool),
#ifndef _WIN32
        addImport(tool),
#endif
    };
}

void addExamples(CLI::App& tool, const std::vector<Verb>& verbs) {
    std::string examples = "Examples:";
    for (const Verb& verb : verbs) {
        examples += "\n  " + verb.example;
        verb.command->footer("Example:\n  " + verb.example);
    }
    tool.footer(examples + "\n\nExit status: 0 success, 1 it did not work or records differ, 2 wrong use.");
}

std::string helpHint(const CLI::App& tool) {
    const auto parsed = tool.get_subcommands();
    return "'kvstation " + (parsed.empty() ? "" : parsed.front()->get_name() + " ") + "--help' tells more";
}

// The library's own message for a mistyped verb names no verb.
void refuseUnknownVerb(const std::vector<std::string>& arguments, const std::vector<Verb>& verbs) {
    if (arguments.empty() || arguments.front().starts_with('-'))
        return;
    const std::string& typed = arguments.front();
    if (std::ranges::any_of(verbs, [&](const Verb& verb) { return verb.command->get_name() == typed; }))
        return;
    if (typed == "import")  // Windows: natively it is a verb
        throw Failure("import needs the native (Linux) tool; 'kvstation simulate STATION' takes here what it wrote");
    std::vector<std::string_view> names;
    names.reserve(verbs.size());
    for (const Verb& verb : verbs)
        names.push_back(verb.command->get_name());
    throw WrongUse("'" + typed + "' is no verb" + describeSimilar(similarWords(typed, names)) +
                   "; 'kvstation --help' lists the verbs");
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
        refuseUnknownVerb(arguments, verbs);
        parse(tool, arguments);
        return runVerb(verbs);
    } catch (const CLI::CallForHelp&) {
        writeResult(tool.help());
        return kExitSuccess;
    } catch (const CLI::CallForVersion& version) {
        writeResult(std::string(version.what()) + "\n");
        return kExitSuccess;
    } catch (const CLI::ParseError& error) {
        throw WrongUse(std::string(error.what()) + "; " + helpHint(tool));
    }
}

}  // namespace

int runTool(const std::vector<std::string>& arguments) {
    try {
        CLI::App tool(
            "Sees, explains and compares what the workstation-inventory module kvcstat64.dll tells of a station.",
            "kvstation");
        tool.allow_windows_style_options(false);  // "/mnt/station" is a path under Wine
        tool.set_version_flag("--version", "kvstation " KVSTATION_VERSION);
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
