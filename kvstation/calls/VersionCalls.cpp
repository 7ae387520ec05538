// Which Windows it is.
#include <cstring>

#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

// One of each Windows that there has been.
constexpr std::string_view kVersions = R"([
  {"platformId": 0, "major": 3, "minor": 10, "build": 103},
  {"platformId": 1, "major": 4, "minor": 0, "build": 950},
  {"platformId": 1, "major": 4, "minor": 10, "build": 2222, "servicePack": " A "},
  {"platformId": 1, "major": 4, "minor": 90, "build": 3000},
  {"platformId": 2, "major": 3, "minor": 51, "build": 1057},
  {"platformId": 2, "major": 4, "minor": 0, "build": 1381, "servicePack": "Service Pack 6"},
  {"platformId": 2, "major": 5, "minor": 0, "build": 2195},
  {"platformId": 2, "major": 5, "minor": 1, "build": 2600, "terminalServices": true},
  {"platformId": 2, "major": 5, "minor": 2, "build": 3790, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 0, "build": 6002, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 1, "build": 7601, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 2, "build": 9200, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 3, "build": 9600, "terminalServices": true},
  {"platformId": 2, "major": 10, "minor": 0, "build": 22631, "terminalServices": true}])";

// As a station describes it: on Windows 9x the high half of the build's number repeats the version.
simwin::WindowsVersion versionIn(const ObservedCall& call) {
    const auto info = structureAt<OSVERSIONINFOA>(call, 0);
    const bool is9x = info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS;
    simwin::WindowsVersion version;
    version.platformId = info.dwPlatformId;
    version.major = info.dwMajorVersion;
    version.minor = info.dwMinorVersion;
    version.build = is9x ? info.dwBuildNumber & 0xFFFF : info.dwBuildNumber;
    version.servicePack.assign(info.szCSDVersion, strnlen(info.szCSDVersion, sizeof info.szCSDVersion));
    return version;
}

// As Windows told it, the build's number whole.
Answer tellVersion(const ObservedCall& call) {
    const simwin::WindowsVersion version = versionIn(call);
    const std::string& pack = version.servicePack;
    return wordsAnswer("platform " + std::to_string(version.platformId) + ", version " + std::to_string(version.major) +
                       "." + std::to_string(version.minor) + ", build " +
                       std::to_string(structureAt<OSVERSIONINFOA>(call, 0).dwBuildNumber) +
                       (pack.empty() ? "" : ", \"" + simwin::toUtf8(pack) + "\""));
}

void keepVersion(StationDraft& draft, const ObservedCall& call) {
    if (!call.succeeded)
        return;
    const bool hasTerminalServices = draft.station.version && draft.station.version->terminalServices;
    draft.station.version = versionIn(call);
    draft.station.version->terminalServices = hasTerminalServices;
}

void keepSuite(StationDraft& draft, const ObservedCall& call) {
    if (draft.station.version)
        draft.station.version->terminalServices = call.succeeded;
}

}  // namespace

KV_CALL(GetVersion, asks("the version of Windows", member<"version">, kVersions), tellNumber, kKeepsNothing);
KV_CALL(GetVersionExA, asks("the version of Windows", member<"version">, kVersions), tellVersion, keepVersion);
KV_CALL(VerifyVersionInfoA,
        asks("whether Terminal Services are installed", member<"version", "terminalServices">, "[true, false]"),
        kTellsNothing, keepSuite);
KV_CALL(VerSetConditionMask, kOwnWork, kTellsNothing, kKeepsNothing);

}  // namespace kvstation
