// The built tool, run to its end.
#pragma once

#include "RunningProgram.h"

namespace kvstation {

inline ProgramRun run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), KVSTATION_PROGRAM);
    return runProgram(arguments);
}

}  // namespace kvstation
