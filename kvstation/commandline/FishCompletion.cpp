// Completion for fish: a "complete" command for each thing that can be typed.
#include "kvstation/commandline/ShellText.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

std::string fishQuoted(std::string text) {
    text = withEach(std::move(text), "\\", "\\\\");
    return "'" + withEach(std::move(text), "'", "\\'") + "'";
}

// Files are offered where this says so, and nowhere else.
std::string fishOffers(const Argument& argument) {
    switch (argument.takes) {
        case Takes::Path:
            return " -F";
        case Takes::Folder:
            return " -a '(__fish_complete_directories)'";
        case Takes::Word:
            return " -a \"$__kvstation_" + argument.placeholder + "\"";
        case Takes::Text:
            break;
    }
    return "";
}

std::string fishValue(const Argument& argument) {
    return (argument.takes == Takes::Path ? " -r" : " -x") + fishOffers(argument);
}

std::string fishWhen(const std::string& condition) {
    return "complete -c kvstation -n '" + condition + "'";
}

std::string fishOption(const std::string& condition, const OptionLine& option) {
    return fishWhen(condition) + (option.shortName.empty() ? "" : " -s " + option.shortName) + " -l " +
           option.longName + (option.argument ? fishValue(*option.argument) : "") + " -d " +
           fishQuoted(option.description) + "\n";
}

std::string fishPlaces(const VerbLine& verb) {
    std::string commands;
    for (std::size_t place = 0; place < verb.places.size(); ++place)
        for (const Argument& argument : argumentsAt(verb, place))
            if (argument.takes != Takes::Text)
                commands += fishWhen("__kvstation_place " + verb.name + " " + std::to_string(place) +
                                     (verb.places[place].repeats ? " more" : "")) +
                            fishOffers(argument) + " -d " + fishQuoted(argument.placeholder) + "\n";
    return commands;
}

std::string fishVerb(const VerbLine& verb) {
    std::string commands =
        "\n" + fishWhen("__kvstation_first") + " -a " + verb.name + " -d " + fishQuoted(verb.description) + "\n";
    for (const OptionLine& option : verb.options)
        commands += fishOption("__kvstation_verb " + verb.name, option);
    return commands + fishPlaces(verb);
}

std::string fishValued(const CommandLine& line) {
    std::string names;
    for (const VerbLine& verb : line.verbs)
        for (const OptionLine& option : verb.options)
            if (option.argument)
                names += " '" + verb.name + " --" + option.longName + "'";
    return "# Whether the option VERB --OPTION takes a value.\n"
           "function __kvstation_valued\n    contains -- \"$argv\"" +
           names + "\nend\n\n";
}

constexpr const char* kFishFunctions = R"fish(function __kvstation_first
    test (count (commandline -opc)) -eq 1
end

function __kvstation_verb -a verb
    set -l words (commandline -opc)
    test (count $words) -gt 1; and test (string lower -- $words[2]) = $verb
end

# Whether the word number PLACE of the VERB is being typed, from 0 on, or with "more" one behind it: options and their
# values do not count.
function __kvstation_place -a verb place more
    __kvstation_verb $verb; or return 1
    set -l count 0
    set -l skip no
    for word in (commandline -opc)[3..]
        if test $skip = yes
            set skip no
        else if string match -q -- '-*' $word
            __kvstation_valued $verb $word; and set skip yes
        else
            set count (math $count + 1)
        end
    end
    test $count -eq $place; or test -n "$more" -a $count -gt $place
end

complete -c kvstation -f
)fish";

}  // namespace

std::string fishCompletion(const CommandLine& line) {
    std::string text =
        "# Completion of the command line of " + line.version + " for fish; made by 'kvstation completion fish'.\n\n";
    for (const Argument& list : wordLists(line))
        text += "set -g __kvstation_" + list.placeholder + " '" + joinWords(list.words, " ") + "'\n";
    text += "\n" + fishValued(line) + kFishFunctions;
    for (const OptionLine& option : line.options)
        text += fishOption("__kvstation_first", option);
    for (const VerbLine& verb : line.verbs)
        text += fishVerb(verb);
    return text;
}

}  // namespace kvstation
