// The verbs "completion" and "man": what is made of the command line itself.
#include <CLI/App.hpp>
#include <algorithm>
#include <memory>

#include "kvstation/commandline/ManPage.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

std::string checkShell(const std::string& name) {
    const std::vector<std::string> names = shellNames();
    return std::ranges::find(names, name) != names.end()
               ? ""
               : "'" + name + "' is none of the shells " + joinWords(names, ", ");
}

int printCompletion(const CLI::App& tool, const std::string& name) {
    const auto* shell = std::ranges::find_if(kShells, [&](const Shell& one) { return one.name == name; });
    writeResult(shell->completion(readCommandLine(tool)));
    return kExitSuccess;
}

int printManPage(const CLI::App& tool) {
    writeResult(manPage(readCommandLine(tool)));
    return kExitSuccess;
}

}  // namespace

std::vector<std::string> shellNames() {
    std::vector<std::string> names;
    for (const Shell& shell : kShells)
        names.emplace_back(shell.name);
    return names;
}

Verb addCompletion(CLI::App& tool) {
    const auto name = std::make_shared<std::string>();
    CLI::App* command =
        tool.add_subcommand("completion", "Print the script that completes this command line in a shell");
    command->add_option("SHELL", *name, "The shell: " + joinWords(shellNames(), ", "))
        ->type_name("")
        ->required()
        ->check(checkShell);
    return {command, "kvstation completion bash > kvstation.bash    # then: source kvstation.bash",
            [&tool, name] { return printCompletion(tool, *name); }};
}

Verb addMan(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand("man", "Print the manual page of this command line");
    return {command, "kvstation man > kvstation.1    # then: man ./kvstation.1",
            [&tool] { return printManPage(tool); }};
}

}  // namespace kvstation
