// Options that are none.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvstation {

// Throws WrongUse for the first option that the tool, or the verb that is called, does not have, and for one that
// stands where another one's value is missing. The library that reads the command line finds a wrong option only when
// all of it is read, and takes the words behind for what they are not.
void refuseWrongOptions(const CLI::App& tool, const std::vector<std::string>& arguments);

}  // namespace kvstation
