// Text that can neither break a line nor steer a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// The UTF-8 text with every control character (C0, DEL and C1) spelled out, such as \x1b.
std::string visible(std::string_view utf8);

// How many columns a text takes, counted as one for each character.
std::size_t columns(std::string_view utf8);

// The text, or "..." behind as many of its first characters.
std::string shortened(std::string_view utf8, std::size_t longest);

// The bytes of the first `count` characters, or of all when there are fewer.
std::size_t bytesOf(std::string_view utf8, std::size_t count);

}  // namespace kvstation
