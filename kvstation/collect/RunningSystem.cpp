#include "kvstation/collect/RunningSystem.h"

#include <tuple>

#ifdef _WIN32
#include "framework/Windows.h"
#endif

namespace kvstation {

#ifdef _WIN32

SystemVersion runningSystem() {
    using RtlGetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion");
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (address == nullptr || reinterpret_cast<RtlGetVersionFunction>(reinterpret_cast<void*>(address))(&info) != 0)
        return {};
    return {.platform = info.dwPlatformId,
            .major = info.dwMajorVersion,
            .minor = info.dwMinorVersion,
            .build = info.dwBuildNumber,
            .isServer = info.wProductType != VER_NT_WORKSTATION};
}

#else

SystemVersion runningSystem() {
    return {};
}

#endif

bool hidesItsVersion(const SystemVersion& system) {
    return system.platform == 2 && std::tie(system.major, system.minor) >= std::tuple(6U, 3U);
}

}  // namespace kvstation
