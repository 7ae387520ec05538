// Completion for bash: tables as case commands, and functions that look into them.
#include "kvstation/commandline/Offers.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

std::string bashOptions(const std::vector<OptionLine>& options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const OptionLine& option : options)
        names.push_back("--" + option.longName);
    return joinWords(names, " ");
}

std::string bashCase(const std::string& pattern, const std::string& words) {
    return "        " + pattern + ") echo '" + words + "' ;;\n";
}

std::string bashTable(const std::string& comment, const std::string& name, const std::string& cases) {
    return "# " + comment + "\n_kvstation_" + name + "() {\n    case $1 in\n" + cases + "    esac\n}\n\n";
}

std::string bashLists(const CommandLine& line) {
    std::string cases;
    for (const Argument& list : wordLists(line))
        cases += bashCase(list.placeholder, joinWords(list.words, " "));
    return bashTable("PLACEHOLDER", "words", cases);
}

std::string bashVerbOptions(const CommandLine& line) {
    std::string cases;
    for (const VerbLine& verb : line.verbs)
        cases += bashCase(verb.name, bashOptions(verb.options));
    return bashTable("VERB", "options", cases);
}

// An option that takes a value has a row, also where nothing can be offered for it.
std::string bashValues(const CommandLine& line) {
    std::string cases;
    for (const VerbLine& verb : line.verbs)
        for (const OptionLine& option : verb.options)
            if (option.argument)
                cases += bashCase("'" + verb.name + " --" + option.longName + "'", "= " + offerOf(*option.argument));
    return bashTable("\"VERB --OPTION\": \"=\" and what its value is; nothing: it is a switch", "value", cases);
}

std::string bashPlaces(const CommandLine& line) {
    std::string cases;
    for (const VerbLine& verb : line.verbs)
        for (std::size_t place = 0; place < verb.places.size(); ++place) {
            const std::string any = verb.places[place].repeats ? "'*" : std::to_string(place) + "'";
            cases += bashCase("'" + verb.name + " " + any, offersOf(argumentsAt(verb, place)));
        }
    return bashTable("\"VERB PLACE\": what the verb's word number PLACE may be", "place", cases);
}

constexpr const char* kBashFunctions =
    R"bash(# Offers what begins with TYPED: of each SOURCE, a list's name, or the paths or folders.
_kvstation_offer() {
    local typed=$1 source found
    shift
    for source; do
        case $source in
            @path) mapfile -t found < <(compgen -f -- "$typed") ;;
            @folder) mapfile -t found < <(compgen -d -- "$typed") ;;
            *) mapfile -t found < <(compgen -W "$(_kvstation_words "$source")" -- "$typed") ;;
        esac
        # Quotes what needs it and puts a slash behind a folder; only a running completion can be told.
        [[ $source != @* ]] || compopt -o filenames 2>/dev/null
        COMPREPLY+=("${found[@]}")
    done
}

# Which of the verb's words is being typed, from 0 on: options and their values do not count.
_kvstation_counted() {
    local verb=$1 word count=0 skip=
    shift
    for word; do
        if [ -n "$skip" ] && [ "$word" != = ]; then
            skip=
        elif [ "$word" = = ]; then
            skip=yes
        elif [[ $word == -* ]]; then
            skip=$(_kvstation_value "$verb $word")
        else
            count=$((count + 1))
        fi
    done
    echo "$count"
}

_kvstation() {
    local verb=${COMP_WORDS[1],,} typed=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} value
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$_kvstation_first" -- "$typed")
        return
    fi
    # bash breaks "--field=szOS" into three words.
    if [ "$COMP_CWORD" -gt 2 ] && [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    elif [ "$typed" = = ]; then
        typed=
    fi
    value=$(_kvstation_value "$verb $before")
    if [ -n "$value" ]; then
        # shellcheck disable=SC2086  # words
        _kvstation_offer "$typed" ${value#=}
    elif [[ $typed == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_kvstation_options "$verb")" -- "$typed")
    else
        # shellcheck disable=SC2046  # words
        _kvstation_offer "$typed" \
            $(_kvstation_place "$verb $(_kvstation_counted "$verb" "${COMP_WORDS[@]:2:COMP_CWORD-2}")")
    fi
}

complete -F _kvstation kvstation kvstation.exe
)bash";

}  // namespace

std::string bashCompletion(const CommandLine& line) {
    std::vector<std::string> first;
    for (const VerbLine& verb : line.verbs)
        first.push_back(verb.name);
    return "# Completion of the command line of " + line.version +
           " for bash; made by 'kvstation completion bash'.\n\n" + "_kvstation_first='" + joinWords(first, " ") + " " +
           bashOptions(line.options) + "'\n\n" + bashLists(line) + bashVerbOptions(line) + bashValues(line) +
           bashPlaces(line) + kBashFunctions;
}

}  // namespace kvstation
