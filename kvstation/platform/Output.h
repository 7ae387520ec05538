// Standard output: the result and nothing else. Errors.h writes to standard error.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvstation {

struct Terminal {
    bool isTerminal = false;
    bool hasColours = false;  // a terminal, and neither NO_COLOR nor TERM=dumb asks for none
    std::size_t width = 0;    // in columns; 0: not a terminal, or unknown
};

Terminal standardOutput();

// In the place of a file's name.
inline constexpr const char* kStandardOutputName = "-";

// What turns colours of a terminal on, and all of them off. An old console shows bold, dim and the colours 30 to 37.
inline constexpr std::string_view kBold = "\x1b[1m";
inline constexpr std::string_view kDim = "\x1b[2m";
inline constexpr std::string_view kCyan = "\x1b[36m";
inline constexpr std::string_view kNormal = "\x1b[0m";

// Where colours are wanted.
inline std::string coloured(std::string_view colour, std::string_view text, bool wanted) {
    std::string all(wanted ? colour : std::string_view());
    all += text;
    all += wanted ? kNormal : std::string_view();
    return all;
}

// Writes UTF-8 text with lines ending in "\n". On a terminal it may hold these colours.
// Throws Failure when not all of it could be written.
void writeResult(std::string_view text);

}  // namespace kvstation
