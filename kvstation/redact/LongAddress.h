// IPv6 addresses as texts.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvstation {

using IPv6 = std::array<std::uint16_t, 8>;  // the groups between the colons

// "fe80::1", in any letter case; at least one group must stand there. Not the form with an IPv4 address at its end, the
// rest of which tells nothing.
std::optional<IPv6> parseIPv6(std::string_view text);

// The address in the writing of another one: as many digits in each group, the same groups left out.
std::string inWritingOf(std::string_view text, const IPv6& address);

}  // namespace kvstation
