// What the tool can do. Each verb stands in a file of its own, which adds its part of the command line and runs it.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvstation {

struct Verb {
    CLI::App* command;         // its part of the command line
    std::string example;       // one whole command line and what it gives; empty: the verb is not for people
    std::function<int()> run;  // gives the exit status; throws Failure or WrongUse
    // How long `run` may take when it is to collect on this computer, for which it runs in a child process; none when
    // it is not. Empty: it never is.
    std::function<std::optional<std::chrono::seconds>()> limit = {};
};

Verb addShow(CLI::App& tool);
Verb addSimulate(CLI::App& tool);
Verb addDecode(CLI::App& tool);
Verb addDiff(CLI::App& tool);
Verb addLayout(CLI::App& tool);
Verb addTrace(CLI::App& tool);
Verb addExplain(CLI::App& tool);
Verb addCapture(CLI::App& tool);
#ifdef _WIN32
Verb addCollectForParent(CLI::App& tool);
#else
Verb addImport(CLI::App& tool);
#endif

}  // namespace kvstation
