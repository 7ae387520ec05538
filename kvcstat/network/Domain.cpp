// The workgroup or domain that the station belongs to, and what the terminal session knows about its client.
#include "companions/kvnetapi/kvnetapi.h"
#include "companions/kvtswrp/KVTSWRP.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

// Windows.h first: this header needs its types.
#include <lm.h>

namespace {

using NetWkstaGetInfoFunction = NET_API_STATUS(WINAPI*)(LPWSTR server, DWORD level, BYTE** info);
using NetApiBufferFreeFunction = NET_API_STATUS(WINAPI*)(void* buffer);

// Asks netapi32.dll, which not every Windows 9x has.
CString ReadLANGroup() {
    const UniqueLibrary library(LoadLibraryA("netapi32.dll"));
    if (library == nullptr)
        return {};
    const auto getInfo = FindFunction<NetWkstaGetInfoFunction>(library.get(), "NetWkstaGetInfo");
    const auto freeInfo = FindFunction<NetApiBufferFreeFunction>(library.get(), "NetApiBufferFree");
    BYTE* info = nullptr;
    if (getInfo == nullptr || freeInfo == nullptr || getInfo(nullptr, 101, &info) != NERR_Success)
        return {};
    char group[260] = {};
    if (WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const WKSTA_INFO_101*>(info)->wki101_langroup, -1, group,
                            sizeof group, nullptr, nullptr) == 0)
        group[0] = '\0';  // a name that does not fit is none, and may have been written in part
    freeInfo(info);
    return group;
}

}  // namespace

void CNetworkInformation::GetWorkgroup() {
    if (m_cWorkgroup.IsEmpty())
        m_cWorkgroup = ReadLANGroup();
    if (m_cWorkgroup.IsEmpty())
        m_cWorkgroup = m_cWorkgroupDefault;
}

CString CNetworkInformation::GetDomainName() {
    CString domain;
    KVGetDomainName(domain);
    return domain;
}

int CNetworkInformation::GetDomainInformation() {
    const CStatGlobal global;
    m_nTSDomainFlag = 0;
    global.GetRegString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\WinLogon",
                        "DefaultDomainName", m_cDefaultDomainName);

    // Here the result decides, not the name, unlike where the client's name is first looked for.
    char text[255] = {};
    if (ZRTSQueryClientName(text, sizeof text) != 0) {
        text[sizeof text - 1] = '\0';
        m_cTSClientName = text;
        m_cClientName = m_cTSClientName;
    }
    text[0] = '\0';
    if (ZRTSDomainName(text, sizeof text) != 0) {
        text[sizeof text - 1] = '\0';
        m_cTSDomainName = text;
    }
    return -1;
}
