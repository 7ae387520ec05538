// What the tables of a shell's script say that is to be offered in an argument's place.
#pragma once

#include <string>
#include <vector>

#include "kvstation/commandline/Arguments.h"

namespace kvstation {

// "@path" or "@folder", which the script asks its shell for, or a list's name; empty where nothing can be offered.
std::string offerOf(const Argument& argument);

// Of several that may be meant, with blanks between.
std::string offersOf(const std::vector<Argument>& arguments);

}  // namespace kvstation
