// A station that is described with little more than its Windows, and keys that tests add to it.
#pragma once

#include <cstddef>

#include "simwin/station/Station.h"

namespace kvtest {

inline constexpr const char* kCitrix = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Citrix";
inline constexpr const char* kDevices = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices";
inline constexpr const char* kPrinters = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";
inline constexpr const char* kSystem = "HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System";
inline constexpr const char* kWinLogon =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\WinLogon";

// Characters of szPrinters.
inline constexpr std::size_t kPrintersLimit = 250;

inline simwin::Station windows2000() {
    simwin::Station station;
    station.version = simwin::WindowsVersion{.platformId = 2, .major = 5, .minor = 0, .build = 2195, .servicePack = ""};
    return station;
}

}  // namespace kvtest
