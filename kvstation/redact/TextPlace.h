// What the place of a text tells of the numbers in it.
#pragma once

#include <string_view>

namespace kvstation {

// A program's version may look like an address, as Firefox 2.0.0.20 does, so the place decides. The module takes its
// way by some versions (the Citrix server's, the first digit of Netscape's) and shows others. A version that stands
// elsewhere, such as in the name of a folder, is taken for an address: to the module it is a text like any.
enum class TextPlace { Anywhere, Version };

// Of what a registry value or a variable of that name holds.
TextPlace placeIn(std::string_view name);
// Below this key the names of keys are versions.
inline constexpr std::string_view kKeyOfVersions = "Netscape";

}  // namespace kvstation
