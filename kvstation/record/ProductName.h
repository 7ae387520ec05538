// The name under which people know a Windows version.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvstation {

struct SystemVersion {
    std::uint32_t platform = 2;  // 1 Windows 9x, 2 Windows NT
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    bool isServer = false;
};

// "Windows 11" for 10.0 from build 22000 on; empty for a version without a name of its own.
std::string productName(const SystemVersion& version);

// The version in the record's own text, such as "Windows NT 5.1 (Build 2600) Service Pack 3". That text does not tell
// a server from a workstation.
std::optional<SystemVersion> versionFromDescription(std::string_view szOS);

}  // namespace kvstation
