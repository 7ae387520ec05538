// The tool's command line as data, read from the parser that takes it: completions and the manual page are made of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kvstation/commandline/Arguments.h"

namespace CLI {
class App;
}

namespace kvstation {

struct OptionLine {
    std::string shortName;             // one letter, without its hyphen; may be empty
    std::string longName;              // without its hyphens
    std::optional<Argument> argument;  // none: a switch
    bool repeats = false;              // may be given more than once
    std::string description;
};

// A word that is told by its place.
struct PlaceLine {
    Argument argument;
    bool required = false;
    bool repeats = false;  // takes all words from its place on
    std::string description;
};

struct VerbLine {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<OptionLine> options;
    std::vector<PlaceLine> places;
};

struct CommandLine {
    std::string name;
    std::string version;  // such as "kvstation 1.0.0"
    std::string description;
    std::string footer;
    std::vector<OptionLine> options;
    std::vector<VerbLine> verbs;
};

CommandLine readCommandLine(const CLI::App& tool);

// What may be typed as the verb's word number `place`, from 0 on: of a word that may be left out, what the next one
// takes too. Empty: no word belongs there.
std::vector<Argument> argumentsAt(const VerbLine& verb, std::size_t place);

// The lists of words that the command line's arguments take, each once, in the order of their placeholders' appearance.
std::vector<Argument> wordLists(const CommandLine& line);

}  // namespace kvstation
