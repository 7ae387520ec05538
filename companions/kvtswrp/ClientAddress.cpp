#include "companions/kvtswrp/ClientAddress.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "companions/common/TextWriter.h"

namespace {

constexpr std::uint32_t kIPv4 = 2;

// The bytes behind the family are those of a socket address, port first, so the address begins two bytes later.
constexpr std::size_t kAddressAt = sizeof(std::uint32_t) + 2;

}  // namespace

bool FormatClientAddress(const void* answer, std::size_t bytes, char* buffer, int size) noexcept {
    FillText(buffer, size, "");
    std::uint8_t address[4];
    if (answer == nullptr || bytes < kAddressAt + sizeof address)
        return false;
    std::uint32_t family;
    std::memcpy(&family, answer, sizeof family);
    std::memcpy(address, static_cast<const std::uint8_t*>(answer) + kAddressAt, sizeof address);
    if (family != kIPv4 || std::all_of(address, address + 4, [](std::uint8_t part) { return part == 0; }))
        return false;

    char text[sizeof "255.255.255.255"];
    TextWriter writer(text, sizeof text);
    for (const std::uint8_t& part : address) {
        writer.Append(&part == address ? "" : ".");
        writer.AppendNumber(part);
    }
    return FillText(buffer, size, text);
}
