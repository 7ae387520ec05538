// What a fuzzed run promises; a broken promise is told in one line and ends the program.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace kvfuzz {

// Set by a fuzzer whose input was not what it reads. The replay holds it against the input's name.
inline bool wasRefused = false;

inline void check(bool holds, const char* promise) {
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

}  // namespace kvfuzz
