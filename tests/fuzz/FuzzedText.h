// Texts and names out of the fuzzer's bytes: words that the module looks for, raw bytes, long rows, and mixtures.
#pragma once

#include <string>

#include "tests/fuzz/InputReader.h"

namespace kvfuzz {

// At most some 4,100 bytes, zeros among them possible.
std::string readText(InputReader& input);

// The name of a key, a service, an adapter or the like: not empty, no backslash, at most 255 bytes.
std::string readKeyName(InputReader& input);

// "10.0.0.5" and the like, one of a few, so that an address asked for is found elsewhere.
std::string readAddress(InputReader& input);

}  // namespace kvfuzz
