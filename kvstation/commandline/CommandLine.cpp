#include "kvstation/commandline/CommandLine.h"

#include <CLI/App.hpp>
#include <algorithm>

namespace kvstation {
namespace {

std::string firstOf(const std::vector<std::string>& names) {
    return names.empty() ? "" : names.front();
}

// "STATION..." says that several follow, "FILE|-" what else may stand there, "SECONDS:UINT in [1 - 9]" what is checked.
std::string placeholderOf(std::string typeName) {
    typeName.resize(std::min(typeName.size(), typeName.find_first_of(":|")));
    constexpr std::string_view kDots = "...";
    if (typeName.ends_with(kDots))
        typeName.resize(typeName.size() - kDots.size());
    return typeName;
}

bool takesSeveral(const CLI::Option& option) {
    return option.get_items_expected_max() > 1;
}

OptionLine optionLine(const CLI::Option& option) {
    OptionLine line{.shortName = firstOf(option.get_snames()),
                    .longName = firstOf(option.get_lnames()),
                    .argument = {},
                    .repeats = takesSeveral(option),
                    .description = option.get_description()};
    if (option.get_items_expected_min() > 0)
        line.argument = argumentOf(placeholderOf(option.get_type_name()));
    return line;
}

PlaceLine placeLine(const CLI::Option& option) {
    return {.argument = argumentOf(placeholderOf(option.get_name(true))),
            .required = option.get_required(),
            .repeats = takesSeveral(option),
            .description = option.get_description()};
}

std::vector<OptionLine> optionLines(const CLI::App& command) {
    std::vector<OptionLine> lines;
    for (const CLI::Option* option : command.get_options())
        if (option->nonpositional())
            lines.push_back(optionLine(*option));
    return lines;
}

VerbLine verbLine(const CLI::App& command) {
    VerbLine line{.name = command.get_name(),
                  .description = command.get_description(),
                  .footer = command.get_footer(),
                  .options = optionLines(command),
                  .places = {}};
    for (const CLI::Option* option : command.get_options())
        if (option->get_positional())
            line.places.push_back(placeLine(*option));
    return line;
}

void nameVerbs(CommandLine& line) {
    for (VerbLine& verb : line.verbs)
        for (PlaceLine& place : verb.places)
            if (place.argument.placeholder == "VERB")
                for (const VerbLine& one : line.verbs)
                    place.argument.words.push_back(one.name);
}

void addList(std::vector<Argument>& lists, const Argument& argument) {
    if (argument.takes == Takes::Word &&
        std::ranges::find(lists, argument.placeholder, &Argument::placeholder) == lists.end())
        lists.push_back(argument);
}

}  // namespace

CommandLine readCommandLine(const CLI::App& tool) {
    CommandLine line{.name = tool.get_name(),
                     .version = tool.get_name() + " " KVSTATION_VERSION,
                     .description = tool.get_description(),
                     .footer = tool.get_footer(),
                     .options = optionLines(tool),
                     .verbs = {}};
    for (const CLI::App* command : tool.get_subcommands({}))
        line.verbs.push_back(verbLine(*command));
    nameVerbs(line);
    return line;
}

std::vector<Argument> argumentsAt(const VerbLine& verb, std::size_t place) {
    std::vector<Argument> arguments;
    if (!verb.places.empty() && verb.places.back().repeats)
        place = std::min(place, verb.places.size() - 1);
    for (; place < verb.places.size(); ++place) {
        arguments.push_back(verb.places[place].argument);
        if (verb.places[place].required)
            break;
    }
    return arguments;
}

std::vector<Argument> wordLists(const CommandLine& line) {
    std::vector<Argument> lists;
    for (const VerbLine& verb : line.verbs) {
        for (const OptionLine& option : verb.options)
            if (option.argument)
                addList(lists, *option.argument);
        for (const PlaceLine& place : verb.places)
            addList(lists, place.argument);
    }
    return lists;
}

}  // namespace kvstation
