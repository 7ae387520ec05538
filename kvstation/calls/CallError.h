// How a call failed, for people.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kvstation {

struct CallError {
    std::uint32_t code;
    std::string name;  // ERROR_BAD_NET_NAME; empty where it has none that is known here
};

std::string shown(const CallError& error);  // "67 ERROR_BAD_NET_NAME"

// The name of an error; empty for one that is not known here. Most calls give those of Windows and of sockets.
using ErrorName = std::string_view (*)(std::uint32_t code);
std::string_view windowsErrorName(std::uint32_t code);

// For calls that count errors of their own: a table of them, and the name in it.
struct NamedError {
    std::uint32_t code;
    std::string_view name;
};
#define KV_ERROR(name) \
    { static_cast<std::uint32_t>(name), #name }
std::string_view nameIn(std::span<const NamedError> errors, std::uint32_t code);

}  // namespace kvstation
