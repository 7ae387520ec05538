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

Verb addShow(CLI::App& tool);
Verb addSimulate(CLI::App& tool);
Verb addDecode(CLI::App& tool);
Verb addDiff(CLI::App& tool);
Verb addLayout(CLI::App& tool);
Verb addTrace(CLI::App& tool);
Verb addExplain(CLI::App& tool);
Verb addWhatIfVerb(CLI::App& tool);
Verb addCapture(CLI::App& tool);
Verb addRedact(CLI::App& tool);
Verb addHelp(CLI::App& tool);
Verb addCompletion(CLI::App& tool);
Verb addMan(CLI::App& tool);
#ifndef _WIN32
Verb addImport(CLI::App& tool);
#endif

}  // namespace kvstation
