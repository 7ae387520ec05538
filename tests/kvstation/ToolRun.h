// The built tool, run to its end.
#pragma once

#include "tests/kvstation/RunningProgram.h"

namespace kvstation {

inline std::vector<std::string> commandLine(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), KVSTATION_PROGRAM);
    return arguments;
}

inline ProgramRun run(const std::vector<std::string>& arguments) {
    return runProgram(commandLine(arguments));
}

}  // namespace kvstation
