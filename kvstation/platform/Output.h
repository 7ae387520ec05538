// Standard output: the result and nothing else. Errors.h writes to standard error.
#pragma once

#include <cstddef>
#include <string_view>

namespace kvstation {

struct Terminal {
    bool isTerminal = false;
    bool hasColours = false;  // a terminal, and neither NO_COLOR nor TERM=dumb asks for none
    std::size_t width = 0;    // in columns; 0: not a terminal, or unknown
};

Terminal standardOutput();

// Writes UTF-8 text with lines ending in "\n". On a terminal it may hold the colours of TerminalColours.h.
// Throws Failure when not all of it could be written.
void writeResult(std::string_view text);

}  // namespace kvstation
