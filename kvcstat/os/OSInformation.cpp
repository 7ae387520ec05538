#include "kvcstat/os/OSInformation.h"

#include <algorithm>
#include <iterator>

#include "kvcstat/common/StatGlobal.h"

namespace {

constexpr DWORD kNotRead = 0xFFFFFFFF;
constexpr DWORD kWin32s = 0;
constexpr DWORD kWindows9x = 1;
constexpr DWORD kWindowsNT = 2;

}  // namespace

int COSInformation::ReadVersion() {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (GetVersionExA(&version) == FALSE) {
        GetLastError();
        return -1;
    }
    m_dwPlatformId = version.dwPlatformId;
    m_dwMajorVersion = version.dwMajorVersion;
    m_dwMinorVersion = version.dwMinorVersion;
    m_dwBuildNumber = version.dwBuildNumber;
    std::copy(std::begin(version.szCSDVersion), std::end(version.szCSDVersion), m_szCSDVersion);
    m_szCSDVersion[sizeof m_szCSDVersion - 1] = '\0';
    BuildDescription();
    return 0;
}

DWORD COSInformation::GetPlatformId() {
    if (m_dwPlatformId == kNotRead)
        ReadVersion();
    return m_dwPlatformId;
}

int COSInformation::BuildDescription() {
    // "Windows " ends in a blank and the format puts another behind it: the doubled blank is what stations register
    // with. The numbers print as signed ones.
    const int major = static_cast<int>(m_dwMajorVersion);
    const int minor = static_cast<int>(m_dwMinorVersion);
    const int build = static_cast<int>(m_dwBuildNumber);
    const char* servicePackSeparator = " ";
    switch (m_dwPlatformId) {
        case kWin32s:
            m_cOSDescription.Format("%s %d.%d (Build %d)", "Windows ", major, minor, build);
            servicePackSeparator = " - ";
            break;
        case kWindows9x:
            m_cOSDescription.Format("%s %d", "Windows ", minor != 0 ? 98 : 95);
            break;
        case kWindowsNT:
            m_cOSDescription.Format("%s %d.%d (Build %d)", "Windows NT", major, minor, build);
            break;
        default:
            m_cOSDescription.Empty();
            return 0;
    }
    if (m_szCSDVersion[0] != '\0') {
        m_cOSDescription += servicePackSeparator;
        m_cOSDescription += m_szCSDVersion;
    }
    return 0;
}

int COSInformation::PublishOSName() {
    const CStatGlobal global;
    CString name;
    bool known = true;
    switch (m_dwPlatformId) {
        case kWin32s:
            name.Format("Win%d.%d", static_cast<int>(m_dwMajorVersion), static_cast<int>(m_dwMinorVersion));
            break;
        case kWindows9x:
            name.Format("%d", static_cast<int>(m_dwMinorVersion));  // 0 is Windows 95, 10 is 98, 90 is Me
            break;
        case kWindowsNT:
            name.Format("NT%d", static_cast<int>(m_dwMajorVersion));
            if (m_szCSDVersion[0] != '\0')
                global.SetEnvVar("KVOSServicePack", m_szCSDVersion);
            break;
        default:
            known = false;
            break;
    }
    return global.SetEnvVar("KVOS", name) != 0 || !known ? 0 : -1;
}
