// Words in a row, for people and for scripts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

// "a, b, c" of three with ", " between.
std::string joinWords(const std::vector<std::string>& words, std::string_view between);

}  // namespace kvstation
