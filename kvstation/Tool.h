// The tool as a whole: reads the command line, runs the verb, tells what went wrong.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

// `arguments` are UTF-8, without the program's name. Gives the exit status.
int runTool(const std::vector<std::string>& arguments);

}  // namespace kvstation
