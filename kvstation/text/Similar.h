// What someone may have meant who mistyped a word.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

// The words closest to `typed`, without regard to case, the closest first and at most three: those a few letters
// away, and those that hold what was typed. Empty when none is near.
std::vector<std::string_view> similarWords(std::string_view typed, std::span<const std::string_view> words);

// For a message: "; close to it: szOS, szIPAddress", or nothing when there are none.
std::string describeSimilar(std::span<const std::string_view> words);

}  // namespace kvstation
