#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

constexpr WORD kTerminalSuite = 0x10;
constexpr DWORD kSuiteName = 0x40;
constexpr int kBitsPerCondition = 3;
constexpr int kSuiteNameShift = 6 * kBitsPerCondition;
enum Condition : unsigned { And = 6, Or = 7 };

bool is9x(const WindowsVersion& version) {
    return version.platformId == VER_PLATFORM_WIN32_WINDOWS;
}

// Windows 9x repeats the version in the upper half of the build number.
DWORD buildNumber(const WindowsVersion& version) {
    if (!is9x(version))
        return version.build;
    return version.major << 24 | (version.minor & 0xFF) << 16 | (version.build & 0xFFFF);
}

DWORD packedVersion(const WindowsVersion& version) {
    const DWORD low = (version.major & 0xFF) | (version.minor & 0xFF) << 8;
    switch (version.platformId) {
        case VER_PLATFORM_WIN32_NT:
            return low | (version.build & 0x7FFF) << 16;
        case VER_PLATFORM_WIN32_WINDOWS:
            return low | 0xC0000000;
        default:
            return low | 0x80000000;
    }
}

WORD suitesOf(const Station& station) {
    return station.version && station.version->terminalServices ? kTerminalSuite : WORD{0};
}

BOOL getVersionEx(Machine& machine, OSVERSIONINFOA* info) {
    if (info == nullptr)
        return fail(machine, ERROR_NOACCESS);
    const DWORD size = info->dwOSVersionInfoSize;
    if (size != sizeof(OSVERSIONINFOA) && size != sizeof(OSVERSIONINFOEXA))
        return fail(machine, ERROR_INSUFFICIENT_BUFFER);
    if (!machine.station().version)
        return fail(machine, ERROR_CALL_NOT_IMPLEMENTED);
    const WindowsVersion& version = *machine.station().version;
    OSVERSIONINFOEXA full{};
    full.dwOSVersionInfoSize = size;
    full.dwMajorVersion = version.major;
    full.dwMinorVersion = version.minor;
    full.dwBuildNumber = buildNumber(version);
    full.dwPlatformId = version.platformId;
    const std::size_t length = std::min(version.servicePack.size(), sizeof full.szCSDVersion - 1);
    std::memcpy(full.szCSDVersion, version.servicePack.data(), length);
    full.wSuiteMask = suitesOf(machine.station());
    std::memcpy(info, &full, size);
    return TRUE;
}

BOOL verifyVersion(Machine& machine, const OSVERSIONINFOEXA* info, DWORD types, DWORDLONG conditions) {
    if (info == nullptr || info->dwOSVersionInfoSize != sizeof(OSVERSIONINFOEXA) || types != kSuiteName)
        return fail(machine, ERROR_BAD_ARGUMENTS);
    const unsigned condition = conditions >> kSuiteNameShift & 7;
    const int wanted = info->wSuiteMask;
    const int there = wanted & suitesOf(machine.station());
    if (condition != And && condition != Or)
        return fail(machine, ERROR_BAD_ARGUMENTS);
    const bool holds = condition == And ? there == wanted : there != 0 || wanted == 0;
    return holds ? TRUE : fail(machine, ERROR_OLD_WIN_VERSION);
}

// Windows sets the condition of the highest of the types alone.
std::uint64_t addCondition(std::uint64_t mask, DWORD types, BYTE condition) {
    for (int type = 7; type >= 0; --type)
        if ((types >> type & 1) != 0)
            return mask | std::uint64_t{condition & 7u} << type * kBitsPerCondition;
    return mask;
}

}  // namespace

DWORD WINAPI sim_GetVersion() {
    return makeCall<sim_GetVersion>("GetVersion", kNeverFails, [](Machine& machine) -> DWORD {
        return machine.station().version ? packedVersion(*machine.station().version) : 0;
    });
}

BOOL WINAPI sim_GetVersionExA(LPOSVERSIONINFOA info) {
    const bool isLong = info != nullptr && info->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXA);
    const auto answer = [&](Machine& machine) { return getVersionEx(machine, info); };
    const Failure failure = failsWithZero(ERROR_CALL_NOT_IMPLEMENTED);
    if (isLong) {
        return makeCall<[](LPOSVERSIONINFOEXA again) {
            return sim_GetVersionExA(reinterpret_cast<LPOSVERSIONINFOA>(again));
        }>("GetVersionExA", failure, answer, Structure{reinterpret_cast<LPOSVERSIONINFOEXA>(info)});
    }
    return makeCall<sim_GetVersionExA>("GetVersionExA", failure, answer, Structure{info});
}

ULONGLONG WINAPI sim_VerSetConditionMask(ULONGLONG mask, DWORD types, BYTE condition) {
    return makeCall<[](std::uint64_t again, DWORD t, BYTE c) -> std::uint64_t {
        return sim_VerSetConditionMask(again, t, c);
    }>(
        "VerSetConditionMask", kNeverFails, [&](Machine&) { return addCondition(mask, types, condition); },
        Value<std::uint64_t>{mask}, Value{types}, Value{condition});
}

BOOL WINAPI sim_VerifyVersionInfoA(LPOSVERSIONINFOEXA info, DWORD types, DWORDLONG conditions) {
    return makeCall<sim_VerifyVersionInfoA>(
        "VerifyVersionInfoA", failsWithZero(ERROR_OLD_WIN_VERSION),
        [&](Machine& machine) { return verifyVersion(machine, info, types, conditions); }, Structure{info},
        Value{types}, Value<std::uint64_t>{conditions});
}
