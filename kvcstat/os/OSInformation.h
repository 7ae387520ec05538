#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// Which Windows this is.
class COSInformation : public CObject {
  public:
    ~COSInformation() override = default;

    // Reads the version (GetVersionExA) and builds the description. 0, or -1 with every member unchanged.
    int ReadVersion();
    // 0 Win32s, 1 Windows 9x, 2 Windows NT; reads the version first when that has not succeeded yet, and is 0xFFFFFFFF
    // while it does not.
    DWORD GetPlatformId();
    int BuildDescription();  // always 0
    // Sets "KVOS" and, for a service pack of Windows NT, "KVOSServicePack". 0 when "KVOS" was taken or the platform
    // is unknown, else -1.
    int PublishOSName();

    CString m_cOSDescription;
    DWORD m_dwPlatformId = 0xFFFFFFFF;  // not read yet
    DWORD m_dwMajorVersion = 0;
    DWORD m_dwMinorVersion = 0;
    DWORD m_dwBuildNumber = 0;
    char m_szCSDVersion[128] = {};  // service-pack text
};
