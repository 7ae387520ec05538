// The manual page kvstation(1).
#pragma once

#include <string>

#include "kvstation/commandline/CommandLine.h"

namespace kvstation {

// In the language of man(7): the verbs with their options and examples, the fields, and what --help says at its end.
std::string manPage(const CommandLine& line);

}  // namespace kvstation
