// IPv4 addresses as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simwin {

// Four bytes in network order from "10.0.0.5": four decimal numbers, nothing else.
std::optional<std::string> parseDotted(std::string_view text);

std::string dotted(std::string_view fourBytes);

// What Windows' inet_addr makes of a text: one to four numbers, decimal, octal (leading 0) or hexadecimal (leading
// 0x), the last one filling what is left; anything behind a blank is not looked at. The address in network order, or
// 0xFFFFFFFF.
std::uint32_t internetAddress(std::string_view text);

}  // namespace simwin
