// Registry keys and values out of the fuzzer's bytes, at the places that the module reads.
#pragma once

#include "simwin/station/RegistryTree.h"
#include "tests/fuzz/InputReader.h"

namespace kvfuzz {

// Adds one value with its key, or only the key. Returns the key's path.
std::string addRegistryItem(InputReader& input, simwin::RegistryTree& registry);

}  // namespace kvfuzz
