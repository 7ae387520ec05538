// Texts to put in the place of another, for experiments.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kvstation {

// A text of the same length and form in which every letter and digit is another one. Letters that are hexadecimal
// digits stay such, so that a row of bytes stays one; of an IPv4 address each number is another of as many digits.
std::string sameShape(std::string_view text);

// The words of the module itself, out of its sources: what it compares an answer with is among them.
std::span<const std::string_view> moduleWords();

// The names in the paths that it asks for: of keys and files.
std::span<const std::string_view> moduleNames();

}  // namespace kvstation
