#include "kvstation/commandline/WrongOption.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <span>

#include "kvstation/commandline/VerbName.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/Similar.h"

namespace kvstation {
namespace {

// "-" alone is standard input or output.
bool looksLikeOption(const std::string& argument) {
    return argument.size() > 1 && argument.starts_with('-');
}

// "--field" of "--field=szOS".
std::string nameOf(const std::string& argument) {
    return argument.substr(0, argument.find('='));
}

const CLI::Option* optionCalled(const CLI::App& command, const std::string& argument) {
    return looksLikeOption(argument) ? command.get_option_no_throw(nameOf(argument)) : nullptr;
}

// "; close to it: --field", whatever dashes were typed.
std::string closeOptions(const CLI::App& command, const std::string& typed) {
    const std::size_t begin = typed.find_first_not_of('-');
    if (begin == std::string::npos)
        return {};
    std::vector<std::string> all;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            all.push_back("--" + name);
    const std::vector<std::string_view> names(all.begin(), all.end());
    return describeSimilar(similarWords("--" + typed.substr(begin), names));
}

// ", but of show, simulate": the verbs that have the option.
std::string otherVerbs(const CLI::App& tool, const std::string& name) {
    std::vector<std::string> verbs;
    for (const CLI::App* verb : tool.get_subcommands({}))
        if (verb->get_option_no_throw(name) != nullptr)
            verbs.push_back(verb->get_name());
    return verbs.empty() ? "" : ", but of " + joinWords(verbs, ", ");
}

[[noreturn]] void failAsNoOption(const CLI::App& tool, const CLI::App& command, const std::string& argument) {
    const std::string name = nameOf(argument);
    const std::string others = otherVerbs(tool, name);
    throw WrongUse("'" + name + "' is no option of " + command.get_name() +
                   (others.empty() ? closeOptions(command, name) : others) + "; " + helpHint(command));
}

// How many words behind an option are its value, whatever they look like.
std::size_t valuesBehind(const CLI::Option& option, const std::string& argument) {
    const bool holdsValue = argument.find('=') != std::string::npos;
    return holdsValue ? 0 : static_cast<std::size_t>(std::max(0, option.get_items_expected_min()));
}

void checkOptions(const CLI::App& tool, const CLI::App& command, std::span<const std::string> arguments) {
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        if (!looksLikeOption(arguments[i]))
            continue;
        const CLI::Option* option = optionCalled(command, arguments[i]);
        if (option == nullptr)
            failAsNoOption(tool, command, arguments[i]);
        for (std::size_t values = valuesBehind(*option, arguments[i]); values > 0 && i + 1 < arguments.size(); --values)
            if (optionCalled(command, arguments[++i]) != nullptr)
                throw WrongUse(option->get_name() + " needs a value, and '" + arguments[i] + "' is an option; " +
                               helpHint(command));
    }
}

}  // namespace

void refuseWrongOptions(const CLI::App& tool, const std::vector<std::string>& arguments) {
    std::size_t verb = 0;  // the tool's own options have no values
    while (verb < arguments.size() && looksLikeOption(arguments[verb]))
        ++verb;
    const std::span all(arguments);
    checkOptions(tool, tool, all.first(verb));
    if (verb < arguments.size())
        checkOptions(tool, verbCalled(tool, arguments[verb]), all.subspan(verb + 1));
}

}  // namespace kvstation
