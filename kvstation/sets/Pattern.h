// Patterns of paths, for shells that leave them to the program: "*" stands for any characters within a name, "?" for
// one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

bool isPattern(std::string_view path);

// Letters count as they are.
bool matches(std::string_view name, std::string_view pattern);

// The files and folders that there are, sorted by name. A name that begins with a dot is matched only by a pattern that
// does.
std::vector<std::string> pathsLike(const std::string& pattern);

}  // namespace kvstation
