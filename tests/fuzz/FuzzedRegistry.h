// Registry keys and values out of the fuzzer's bytes, at the places that the module reads.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simwin/station/RegistryTree.h"
#include "tests/fuzz/InputReader.h"

namespace kvfuzz {

// A star stands for any characters of one name.
struct RegistryPlace {
    std::string_view key;
    std::string_view value;
};

std::span<const RegistryPlace> fuzzedPlaces();

// Adds one value with its key, or only the key. Returns the key's path.
std::string addRegistryItem(InputReader& input, simwin::RegistryTree& registry);

}  // namespace kvfuzz
