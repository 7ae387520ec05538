// The shells that complete the tool's command line, each by a script of its own language.
#pragma once

#include <string>
#include <vector>

#include "kvstation/commandline/CommandLine.h"

namespace kvstation {

// The scripts, which the shells read from their standard places or by the lines that the documents give.
std::string bashCompletion(const CommandLine& line);
std::string zshCompletion(const CommandLine& line);
std::string fishCompletion(const CommandLine& line);
std::string powershellCompletion(const CommandLine& line);

struct Shell {
    const char* name;
    std::string (*completion)(const CommandLine& line);
};

inline constexpr Shell kShells[] = {
    {"bash", bashCompletion},
    {"zsh", zshCompletion},
    {"fish", fishCompletion},
    {"powershell", powershellCompletion},
};

std::vector<std::string> shellNames();

}  // namespace kvstation
