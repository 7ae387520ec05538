// A program run to its end, with what it wrote.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

struct ProgramRun {
    int status = -1;  // -1: it did not end by itself
    std::string output;
    std::string errors;
};

// The words are the program's path and its arguments.
ProgramRun runProgram(const std::vector<std::string>& words);

// With a terminal of that many columns as standard output, and the variables NAME=VALUE added to the environment. A
// terminal hears standard output and standard error alike, and its lines end in "\r\n".
ProgramRun runOnTerminal(const std::vector<std::string>& words, unsigned short columns,
                         const std::vector<std::string>& variables);

}  // namespace kvstation
