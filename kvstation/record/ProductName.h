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

    bool operator==(const SystemVersion&) const = default;
};

// "Windows 11" for 10.0 from build 22000 on; empty for a version without a name of its own.
std::string productName(const SystemVersion& version);

// Since Windows 8.1 a program is told this version, that of Windows 8, unless its manifest names a later Windows as
// supported.
inline constexpr SystemVersion kToldWithoutManifest{.platform = 2, .major = 6, .minor = 2, .build = 9200};

// The name for a version that some program was told: "Windows 8 or later" where it may be any of these.
std::string productNameOfTold(const SystemVersion& told);

// The version in the record's own text, such as "Windows NT 5.1 (Build 2600) Service Pack 3". That text does not tell
// a server from a workstation.
std::optional<SystemVersion> versionFromDescription(std::string_view szOS);

}  // namespace kvstation
