#pragma once

#include <string>
#include <string_view>

namespace simwin {

// A row of bytes, two hexadecimal digits each: "41 42".
std::string hexText(std::string_view bytes, char separator);

}  // namespace simwin
