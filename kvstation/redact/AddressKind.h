// What an address is for, which must not get lost with whose it is.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kvstation {

using IPv4 = std::array<unsigned, 4>;  // the numbers between the dots

// A range of addresses: what stands for one of them is one of them too. "10/8" is {10, 0, 0, 0} and 8 bits.
struct AddressRange {
    IPv4 start;
    unsigned bits;

    bool holds(const IPv4& address) const;
    // Whether the number may stand at the index-th place of an address in the range.
    bool allows(std::size_t index, unsigned number) const;
};

// Private, link-local, shared by a provider, this net or this machine, multicast, documentation, measurement, reserved:
// the range of an address that is nobody's alone. None for a public one, which leads to somebody.
std::optional<AddressRange> rangeOf(const IPv4& address);

// Ranges of addresses that reach nobody, to stand for public ones, by how many digits the first number has: one and
// three. There is none with two.
inline constexpr AddressRange kThisNet = {{0, 0, 0, 0}, 8};
inline constexpr AddressRange kReserved = {{240, 0, 0, 0}, 4};

// Means the same on every net: a mask, 0.0.0.0, 127.0.0.1 and what begins with 255.
bool isNobodys(const IPv4& address);

std::optional<IPv4> parseIPv4(std::string_view dotted);

}  // namespace kvstation
