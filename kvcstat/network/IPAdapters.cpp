// Subnet masks, gateways and, on Windows 9x, the transports: what the registry tells of all adapters, one after the
// other. The station's own address never comes from there.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// Where a kind of Windows NT lists its adapters, and where the settings of an adapter of that name are.
struct AdapterKeys {
    const char* list;
    const char* beforeName;
    const char* behindName;
};
constexpr AdapterKeys kBoundAdapters = {"SYSTEM\\CurrentControlSet\\Services\\NetBT\\Adapters",
                                        "SYSTEM\\CurrentControlSet\\Services\\", "\\Parameters\\Tcpip"};
constexpr AdapterKeys kInterfaces = {"SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Adapters",
                                     "SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Interfaces\\", ""};

// Reads a mask or gateway and appends it. "0.0.0.0" stands for an adapter that is not configured; a value is left out
// when that occurs anywhere in it, so that one such entry among several, or 10.0.0.0, excludes the whole value.
int AppendAddress(HKEY key, const char* valueName, CString& list) {
    const CStatGlobal global;
    CString address;
    const int status = global.GetRegString(key, valueName, address);
    if (status == 0 && address.Find("0.0.0.0") < 0)
        global.AppendString(list, address, ";");
    return status;
}

}  // namespace

int CNetworkInformation::ReadAdapters() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return ReadTransports9x();
        case VER_PLATFORM_WIN32_NT:
            return ReadAdaptersNT();
        default:
            return -1;
    }
}

int CNetworkInformation::ReadTransports9x() {
    const CStatGlobal global;
    const UniqueRegKey netTrans(
        global.OpenRegKey(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans"));
    int status = -1;
    CString transport;
    for (DWORD index = 0; !(transport = global.EnumRegKey(netTrans.get(), index)).IsEmpty(); ++index) {
        CString description;
        if (global.GetRegString(netTrans.get(), transport, "DriverDesc", description) == 0) {
            GetNetTransTcpip(netTrans.get(), transport, description);
            status = 0;
        }
    }
    return status;
}

int CNetworkInformation::GetNetTransTcpip(HKEY netTrans, const char* subKey, const char* driverDesc) {
    const CStatGlobal global;
    global.AppendString(m_cProtocols, driverDesc, ";");
    if (CString(driverDesc).CompareNoCase("TCP/IP") != 0)
        return -1;
    const UniqueRegKey transport(global.OpenRegKey(netTrans, subKey));
    CString address;
    if (global.GetRegString(transport.get(), "IPAddress", address) != 0)
        return -1;
    AppendAddress(transport.get(), "IPMask", m_cSubnetMask);
    return AppendAddress(transport.get(), "DefaultGateway", m_cDefaultGateway);
}

int CNetworkInformation::ReadAdaptersNT() {
    const CStatGlobal global;
    // Version 5 exactly: NT 4 and everything behind 5.x, Windows 7 and 11 too, goes by NetBT.
    const AdapterKeys& keys = global.IsWindowsNT5() ? kInterfaces : kBoundAdapters;
    const UniqueRegKey adapters(global.OpenRegKey(HKEY_LOCAL_MACHINE, keys.list));
    int status = -1;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(adapters.get(), index)).IsEmpty(); ++index) {
        const UniqueRegKey adapter(global.OpenRegKey(HKEY_LOCAL_MACHINE, keys.beforeName + name + keys.behindName));
        // The address is read and thrown away: the mask's read alone decides whether there is a mask.
        CString address;
        global.GetRegString(adapter.get(), "IPAddress", address);
        AppendAddress(adapter.get(), "SubNetMask", m_cSubnetMask);
        status = AppendAddress(adapter.get(), "DefaultGateway", m_cDefaultGateway);
    }
    return status;
}
