#include "kvstation/record/ProductName.h"

#include <cstdio>

namespace kvstation {
namespace {

// A version carries its name from the build on that stands in its row; the rows of a version go from new to old.
struct Product {
    std::uint32_t platform;
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t firstBuild;
    const char* workstation;
    const char* server;
};

constexpr Product kProducts[] = {
    {2, 10, 0, 26100, "Windows 11", "Windows Server 2025"},
    {2, 10, 0, 22000, "Windows 11", "Windows Server"},
    // No workstation ever had this build.
    {2, 10, 0, 20348, "Windows Server 2022", "Windows Server 2022"},
    {2, 10, 0, 17763, "Windows 10", "Windows Server 2019"},
    {2, 10, 0, 0, "Windows 10", "Windows Server 2016"},
    {2, 6, 3, 0, "Windows 8.1", "Windows Server 2012 R2"},
    {2, 6, 2, 0, "Windows 8", "Windows Server 2012"},
    {2, 6, 1, 0, "Windows 7", "Windows Server 2008 R2"},
    {2, 6, 0, 0, "Windows Vista", "Windows Server 2008"},
    // The 64-bit Windows XP has this version too.
    {2, 5, 2, 0, "Windows Server 2003", "Windows Server 2003"},
    {2, 5, 1, 0, "Windows XP", "Windows XP"},
    {2, 5, 0, 0, "Windows 2000", "Windows 2000 Server"},
    {2, 4, 0, 0, "Windows NT 4.0", "Windows NT 4.0 Server"},
    {2, 3, 51, 0, "Windows NT 3.51", "Windows NT 3.51 Server"},
    {1, 4, 90, 0, "Windows Me", "Windows Me"},
    {1, 4, 10, 0, "Windows 98", "Windows 98"},
    {1, 4, 0, 0, "Windows 95", "Windows 95"},
};

}  // namespace

std::string productName(const SystemVersion& version) {
    for (const Product& product : kProducts)
        if (product.platform == version.platform && product.major == version.major && product.minor == version.minor &&
            version.build >= product.firstBuild)
            return version.isServer ? product.server : product.workstation;
    return {};
}

std::string productNameOfTold(const SystemVersion& told) {
    return productName(told) + (told == kToldWithoutManifest ? " or later" : "");
}

std::optional<SystemVersion> versionFromDescription(std::string_view szOS) {
    SystemVersion version;
    const std::string text(szOS);
    if (std::sscanf(text.c_str(), "Windows NT %9u.%9u (Build %9u)", &version.major, &version.minor, &version.build) ==
        3)
        return version;
    return std::nullopt;
}

}  // namespace kvstation
