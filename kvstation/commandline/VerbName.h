// The verbs by the names that people type.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kvstation {

// In any letter case. Throws WrongUse with the verbs that are close where there is none of this name, and Failure where
// there is one on another system alone.
const CLI::App& verbCalled(const CLI::App& tool, const std::string& typed);

// For the end of an error's line: "'kvstation simulate --help' tells more", of a verb or of the tool.
std::string helpHint(const CLI::App& command);

}  // namespace kvstation
