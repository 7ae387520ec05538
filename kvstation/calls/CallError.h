// How a call failed, for people.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvstation {

struct CallError {
    std::uint32_t code;
    std::string name;  // ERROR_BAD_NET_NAME; empty where it has none that is known here
};

std::string shown(const CallError& error);  // "67 ERROR_BAD_NET_NAME"

// The names of errors; empty for one that is not known here. Most calls give those of Windows, sockets and NT; NetBIOS
// counts its own.
using ErrorName = std::string_view (*)(std::uint32_t code);
std::string_view windowsErrorName(std::uint32_t code);
std::string_view netbiosErrorName(std::uint32_t code);

}  // namespace kvstation
