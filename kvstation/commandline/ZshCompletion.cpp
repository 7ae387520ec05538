// Completion for zsh: entries for its own _arguments.
#include "kvstation/commandline/ShellText.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

// A text inside of an entry, which stands in single quotes.
std::string zshText(std::string text) {
    for (const char* special : {"\\", "[", "]", ":"})
        text = withEach(std::move(text), special, std::string("\\") + special);
    return withEach(std::move(text), "'", "'\\''");
}

std::string zshAction(const Argument& argument) {
    switch (argument.takes) {
        case Takes::Path:
            return "_files";
        case Takes::Folder:
            return "_files -/";
        case Takes::Word:
            return "_kvstation_" + argument.placeholder;
        case Takes::Text:
            break;
    }
    return " ";  // shows the message alone
}

std::string zshValue(const Argument& argument) {
    return ":" + zshText(argument.placeholder) + ":" + zshAction(argument);
}

std::string zshEntry(const OptionLine& option) {
    const std::string rest =
        "[" + zshText(option.description) + "]" + (option.argument ? zshValue(*option.argument) : "");
    const std::string name = "--" + option.longName + (option.argument ? "=" : "");
    if (option.shortName.empty())
        return std::string("'") + (option.repeats ? "*" : "") + name + rest + "'";
    const std::string other = "(-" + option.shortName + " --" + option.longName + ")";
    return "'" + other + "-" + option.shortName + rest + "' '" + other + name + rest + "'";
}

std::string zshPlaceFunction(const VerbLine& verb, std::size_t place) {
    return "_kvstation_" + verb.name + "_" + std::to_string(place);
}

// _arguments has one action for a place, so that what may be one of several gets a function.
std::string zshAlternatives(const VerbLine& verb) {
    std::string functions;
    for (std::size_t place = 0; place < verb.places.size(); ++place) {
        const std::vector<Argument> arguments = argumentsAt(verb, place);
        if (arguments.size() < 2)
            continue;
        std::string entries;
        for (const Argument& argument : arguments)
            entries += " '" + argument.placeholder + zshValue(argument) + "'";
        functions += zshPlaceFunction(verb, place) + "() { _alternative" + entries + " }\n";
    }
    return functions;
}

std::string zshPlace(const VerbLine& verb, std::size_t place) {
    const PlaceLine& line = verb.places[place];
    const std::string start = line.repeats ? "*" : std::to_string(place + 1);
    const std::string action =
        argumentsAt(verb, place).size() > 1 ? zshPlaceFunction(verb, place) : zshAction(line.argument);
    return "'" + start + ":" + zshText(line.argument.placeholder) + ":" + action + "'";
}

std::string zshVerb(const VerbLine& verb) {
    std::vector<std::string> entries;
    for (const OptionLine& option : verb.options)
        entries.push_back(zshEntry(option));
    for (std::size_t place = 0; place < verb.places.size(); ++place)
        entries.push_back(zshPlace(verb, place));
    return "        " + verb.name + ")\n            _arguments \\\n                " +
           joinWords(entries, " \\\n                ") + " ;;\n";
}

std::string zshLists(const CommandLine& line) {
    std::string functions;
    for (const Argument& list : wordLists(line))
        functions += "_kvstation_" + list.placeholder + "() { compadd \"$@\" -- " + joinWords(list.words, " ") + " }\n";
    for (const VerbLine& verb : line.verbs)
        functions += zshAlternatives(verb);
    return functions;
}

std::string zshVerbs(const CommandLine& line) {
    std::string verbs;
    for (const VerbLine& verb : line.verbs)
        verbs += "        '" + verb.name + ":" + zshText(verb.description) + "'\n";
    return "_kvstation_verbs() {\n    local -a verbs=(\n" + verbs + "    )\n    _describe verb verbs\n}\n";
}

std::string zshMain(const CommandLine& line) {
    std::string options;
    for (const OptionLine& option : line.options)
        options += zshEntry(option) + " ";
    std::string verbs;
    for (const VerbLine& verb : line.verbs)
        verbs += zshVerb(verb);
    return "_kvstation() {\n    local curcontext=$curcontext state\n    _arguments -C " + options +
           "'1:verb:_kvstation_verbs' '*::argument:->argument'\n"
           "    [ \"$state\" = argument ] || return 0\n"
           "    case ${words[1]:l} in\n" +
           verbs + "    esac\n}\n";
}

// From a folder of $fpath the file is the body of the function; by "source" it only defines it.
constexpr const char* kZshEnd = R"zsh(
if [ "${funcstack[1]}" = _kvstation ]; then
    _kvstation "$@"
else
    compdef _kvstation kvstation
fi
)zsh";

}  // namespace

std::string zshCompletion(const CommandLine& line) {
    return "#compdef kvstation\n# Completion of the command line of " + line.version +
           " for zsh; made by 'kvstation completion zsh'.\n\n" + zshLists(line) + "\n" + zshVerbs(line) + "\n" +
           zshMain(line) + kZshEnd;
}

}  // namespace kvstation
