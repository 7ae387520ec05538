// What turns colours of a terminal on, and all of them off.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

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

}  // namespace kvstation
