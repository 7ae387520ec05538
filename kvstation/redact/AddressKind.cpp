#include "kvstation/redact/AddressKind.h"

#include <algorithm>

#include "simwin/text/Address.h"

namespace kvstation {
namespace {

// A range within another stands in front of it.
constexpr AddressRange kRanges[] = {
    kThisNet,
    {{10, 0, 0, 0}, 8},       // private
    {{100, 64, 0, 0}, 10},    // shared by a provider's customers
    {{127, 0, 0, 0}, 8},      // loopback
    {{169, 254, 0, 0}, 16},   // link-local
    {{172, 16, 0, 0}, 12},    // private
    {{192, 0, 2, 0}, 24},     // documentation
    {{192, 168, 0, 0}, 16},   // private
    {{198, 18, 0, 0}, 15},    // measurement
    {{198, 51, 100, 0}, 24},  // documentation
    {{203, 0, 113, 0}, 24},   // documentation
    {{224, 0, 0, 0}, 24},     // multicast on the own link
    {{239, 0, 0, 0}, 8},      // multicast within a house
    {{224, 0, 0, 0}, 4},      // multicast
    kReserved,
};

std::uint32_t wordOf(const IPv4& address) {
    std::uint32_t word = 0;
    for (const unsigned number : address)
        word = word << 8 | number;
    return word;
}

// Ones, then zeros: masks of every length, as 255.255.252.0 and 0.0.0.0.
bool isMask(std::uint32_t bits) {
    return (~bits & (~bits + 1)) == 0;
}

}  // namespace

bool AddressRange::allows(std::size_t index, unsigned number) const {
    const unsigned before = static_cast<unsigned>(index) * 8;
    const unsigned fixed = bits > before ? std::min(bits - before, 8U) : 0;
    const unsigned mask = 0xFF00U >> fixed & 0xFFU;
    return (number & mask) == (start[index] & mask);
}

bool AddressRange::holds(const IPv4& address) const {
    for (std::size_t i = 0; i < address.size(); ++i)
        if (!allows(i, address[i]))
            return false;
    return true;
}

std::optional<AddressRange> rangeOf(const IPv4& address) {
    const auto* const found =
        std::ranges::find_if(kRanges, [&](const AddressRange& one) { return one.holds(address); });
    return found != std::end(kRanges) ? std::optional(*found) : std::nullopt;
}

bool isNobodys(const IPv4& address) {
    return isMask(wordOf(address)) || address[0] == 255 || address == IPv4{127, 0, 0, 1};
}

std::optional<IPv4> parseIPv4(std::string_view dotted) {
    const std::optional<std::string> bytes = simwin::parseDotted(dotted);
    if (!bytes)
        return std::nullopt;
    IPv4 address{};
    for (std::size_t i = 0; i < address.size(); ++i)
        address[i] = static_cast<unsigned char>((*bytes)[i]);
    return address;
}

}  // namespace kvstation
