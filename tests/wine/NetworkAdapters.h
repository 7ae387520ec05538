// For tests that look at this very station twice.
#pragma once

#include "framework/Windows.h"

namespace kvtest {

inline DWORD ListedNetworkAdapters() {
    HKEY key = nullptr;
    DWORD count = 0;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards", 0, KEY_READ,
                      &key) != ERROR_SUCCESS)
        return 0;
    RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr);
    RegCloseKey(key);
    return count;
}

// In a new prefix Wine's network driver starts half a minute after the first program, and lists the adapters then. A
// machine without any waits for a minute.
inline void AwaitNetworkAdapters() {
    constexpr DWORD kStep = 200;
    DWORD before = 0;
    for (DWORD waited = 0; waited < 60'000; waited += kStep) {
        const DWORD count = ListedNetworkAdapters();
        if (count != 0 && count == before)
            return;
        before = count;
        Sleep(kStep);
    }
}

}  // namespace kvtest
