// Text that can neither break a line nor steer a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// The UTF-8 text with every control character (C0, DEL and C1), and every byte that is no character, spelled out, such
// as \x1b.
std::string visible(std::string_view utf8);

// How many columns of a terminal a text takes: two for each East Asian wide character, one for any other.
std::size_t columns(std::string_view utf8);

// How many characters it has.
std::size_t characters(std::string_view utf8);

// The text, or "..." behind what has room of it in `longest` columns.
std::string shortened(std::string_view utf8, std::size_t longest);

// The bytes of the characters that have room in so many columns, from the first on.
std::size_t bytesWithin(std::string_view utf8, std::size_t room);

}  // namespace kvstation
