// What the tool can do. Each verb stands in a file of its own, which adds its part of the command line and runs it.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvstation {

struct Verb {
    CLI::App* command;         // its part of the command line
    std::string example;       // one whole command line and what it gives
    std::function<int()> run;  // gives the exit status; throws Failure or WrongUse
};

#define KV_VERB(add) Verb add(CLI::App& tool);
#include "kvstation/verbs/Verbs.inc"

}  // namespace kvstation
