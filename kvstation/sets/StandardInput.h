// Standard input, byte for byte.
#pragma once

#include <cstddef>
#include <string>

namespace kvstation {

// All that comes. Throws Failure when it cannot be read, or is longer than `limit` bytes, of which at most one block
// more is read.
std::string readStandardInput(std::size_t limit);

// What there is, up to `size` bytes: waits for the first of them. 0 at the end. Throws Failure.
std::size_t readSomeInput(char* bytes, std::size_t size);

}  // namespace kvstation
