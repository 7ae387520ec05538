// From the bytes of the ANSI code page, as the record holds them, to UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// Valid UTF-8 whatever the bytes are. On Windows by this system's ANSI code page, elsewhere by code page 1252.
std::string utf8FromAnsi(std::string_view bytes);

}  // namespace kvstation
