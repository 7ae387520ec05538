#include "kvstation/collect/VersionOfCaller.h"

#include "framework/Windows.h"
#include "kvstation/collect/RunningSystem.h"

namespace kvstation {
namespace {

constexpr const SystemVersion& kTold = kToldWithoutManifest;

// All but the version's three numbers is what any program is told.
BOOL WINAPI getVersionExAsCaller(OSVERSIONINFOA* info) {
    if (GetVersionExA(info) == FALSE)
        return FALSE;
    info->dwMajorVersion = kTold.major;
    info->dwMinorVersion = kTold.minor;
    info->dwBuildNumber = kTold.build;
    return TRUE;
}

DWORD WINAPI getVersionAsCaller() {
    return kTold.major | kTold.minor << 8 | kTold.build << 16;
}

}  // namespace

// VerifyVersionInfoA tells of the suites, which nothing hides.
void answerAsCaller(simwin::Relay& relay) {
    if (!hidesItsVersion(runningSystem()))
        return;
    relay.addFunction("GetVersionExA", reinterpret_cast<const void*>(getVersionExAsCaller));
    relay.addFunction("GetVersion", reinterpret_cast<const void*>(getVersionAsCaller));
}

}  // namespace kvstation
