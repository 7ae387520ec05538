// Whom Windows is registered to, and who uses the station.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/hardware/HardwareInformation.h"

namespace {

CString ReadUserName() {
    char name[255] = {};
    DWORD size = sizeof name;
    if (GetUserNameA(name, &size) != FALSE)
        return name;
    CString unknown;
    unknown.LoadString(IDS_UNKNOWN_NAME);
    return unknown;
}

}  // namespace

int CHardwareInformation::GetOwner() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return GetOwnerOf("Windows");
        case VER_PLATFORM_WIN32_NT:
            return GetOwnerOf("Windows NT");
        default:
            return 0;
    }
}

int CHardwareInformation::GetOwnerOf(const char* product) {
    const CStatGlobal global;
    CString subKey;
    subKey.Format("Software\\Microsoft\\%s\\CurrentVersion", product);
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, subKey));
    global.GetRegString(key.get(), "RegisteredOwner", m_cRegisteredOwner);
    global.GetRegString(key.get(), "RegisteredOrganization", m_cRegisteredOrganization);
    const int status = global.GetRegString(key.get(), "ProductId", m_cProductId);
    GetCurrentUser();
    return status;
}

// In a session the name is the one that the user identity gave: Windows' own is the account on the server.
void CHardwareInformation::GetCurrentUser() {
    const CStatGlobal global;
    if (!global.IsRemoteSession()) {
        m_cCurrentUser = ReadUserName();
        return;
    }
    CString session;
    session.LoadString(IDS_TERMINAL_SESSION);
    m_cCurrentUser = session + " (" + m_cUserName + ")";
}
