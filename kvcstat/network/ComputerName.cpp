// The name that identifies the station: the client device's in a session, the computer's elsewhere.
#include "companions/kvtswrp/KVTSWRP.h"
#include "framework/CRuntime.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/Trace.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

using WFQuerySessionInformationFunction = BOOL(WINAPI*)(HANDLE server, DWORD session, int informationClass,
                                                        char** buffer, DWORD* bytes);
constexpr DWORD kCurrentSession = 0xFFFFFFFF;
constexpr int kClientName = 10;

// The upper-cased NetBIOS name, at most 15 characters. False, with `name` as it was, when Windows gives none.
bool ReadComputerName(CString& name) {
    char buffer[16] = {};
    DWORD size = sizeof buffer;
    if (GetComputerNameA(buffer, &size) == FALSE)
        return false;
    name = _strupr(buffer);
    return true;
}

// The value with which an administrator declares the station a virtual-desktop client; empty without one.
CString ReadVirtualDesktopFlag() {
    const CStatGlobal global;
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings"));
    CString flag;
    if (key != nullptr) {
        ZRTrace(kTraceDetails, kTraceComponent, "GetComputerName Key opened");
        global.GetRegString(key.get(), "KVVDIClient", flag);
        ZRTrace(kTraceDetails, kTraceComponent, "GetComputerName KVVDIClient: '%s'", static_cast<const char*>(flag));
    }
    return flag;
}

// The client's name by the Citrix interface; `name` stays as it was when that fails. The lines say wfapi.dll, as they
// have since the library was called that.
void QueryCitrixClientName(CString& name) {
    ZRTrace(kTraceDetails, kTraceComponent, "Clientname via WFAPI");
    const UniqueLibrary library(LoadLibraryA("wfapi64.dll"));
    if (library == nullptr) {
        ZRTrace(kTraceDetails, kTraceComponent, "wfapi.dll konnte nicht geladen werden. Fehler: %d",
                static_cast<int>(GetLastError()));
        return;
    }
    ZRTrace(kTraceDetails, kTraceComponent, "wfapi.dll wurde geladen");
    const auto query = FindFunction<WFQuerySessionInformationFunction>(library.get(), "WFQuerySessionInformationA");
    if (query == nullptr) {
        ZRTrace(kTraceDetails, kTraceComponent, "WFQuerySessionInformationA wurde nicht gefunden");
        return;
    }
    ZRTrace(kTraceDetails, kTraceComponent, "WFQuerySessionInformationA wurde gefunden");
    char* text = nullptr;
    DWORD bytes = 0;
    if (query(nullptr, kCurrentSession, kClientName, &text, &bytes) == 1) {
        // The text is left to the interface, which has a free function of its own: it is one for each collection.
        name = text;
        ZRTrace(kTraceDetails, kTraceComponent, "Clientname via WFAPI: '%s'", static_cast<const char*>(name));
    } else {
        ZRTrace(kTraceDetails, kTraceComponent, "WFQuerySessionInformationA ist fehlgeschlagen");
    }
}

}  // namespace

int CNetworkInformation::GetComputerName() {
    const CStatGlobal global;
    if (!m_cClientName.IsEmpty())
        return 0;
    // The first source that applies is the only one: a virtual desktop whose client cannot be told has no name rather
    // than the name of the machine that runs it.
    if (ReadVirtualDesktopFlag() == "1") {
        GetVirtualDesktopClientName();
        return -1;
    }
    if (global.IsRemoteSession()) {
        m_cClientName = global.GetEnvVar("CLIENTNAME");
        m_cTSClientName = global.GetEnvVar("CLIENTNAME");
        ZRTrace(kTraceDetails, kTraceComponent, "1. CNetworkInformation='%s' '%s'",
                static_cast<const char*>(m_cClientName), static_cast<const char*>(m_cTSClientName));
        return -1;
    }
    return ReadComputerName(m_cClientName) ? 0 : -1;
}

void CNetworkInformation::GetVirtualDesktopClientName() {
    char name[255] = {};
    const int result = ZRTSQueryClientName(name, sizeof name);
    name[sizeof name - 1] = '\0';
    ZRTrace(kTraceDetails, kTraceComponent, "ZRTSQueryClientName: '%s' ret = %d", name, result);
    // Here the name decides and the result does not, so that a wrapper that answers with zero is believed too.
    if (name[0] != '\0') {
        ZRTrace(kTraceDetails, kTraceComponent, "ZRTSQueryClientName OK");
        m_cClientName = name;
        return;
    }
    QueryCitrixClientName(m_cClientName);
}

CString CNetworkInformation::GetLocalComputerName() {
    CString name;
    ReadComputerName(name);
    return name;
}
