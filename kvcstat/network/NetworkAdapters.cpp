// The network adapters and, on Windows 9x, their drivers.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

int CNetworkInformation::GetNetworkAdapters() {
    const CStatGlobal global;
    int status = 0;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            // Devices of other enumerators, PCI among them, are not listed: stations have always registered so.
            for (const char* enumerator : {"Enum\\Root", "Enum\\ISAPNP"}) {
                const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, enumerator));
                status = GetEnumNetDevices(key.get());
            }
            break;
        case VER_PLATFORM_WIN32_NT:
            GetNetworkCards();
            break;
        default:
            break;
    }
    return status;
}

void CNetworkInformation::GetNetworkCards() {
    const CStatGlobal global;
    const char* const path = "Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards";
    const UniqueRegKey cards(global.OpenRegKey(HKEY_LOCAL_MACHINE, path));
    CString card;
    for (DWORD index = 0; !(card = global.EnumRegKey(cards.get(), index)).IsEmpty(); ++index) {
        CString description;
        global.GetRegString(HKEY_LOCAL_MACHINE, path + ("\\" + card), "Description", description);
        global.AppendString(m_cNetworkAdapters, description, ";");
    }
}

int CNetworkInformation::GetEnumNetDevices(HKEY enumKey) {
    const CStatGlobal global;
    int status = -1;
    CString deviceId;
    for (DWORD index = 0; !(deviceId = global.EnumRegKey(enumKey, index)).IsEmpty(); ++index) {
        const UniqueRegKey device(global.OpenRegKey(enumKey, deviceId));
        CString instanceId;
        for (DWORD instanceIndex = 0; !(instanceId = global.EnumRegKey(device.get(), instanceIndex)).IsEmpty();
             ++instanceIndex) {
            const UniqueRegKey instance(global.OpenRegKey(device.get(), instanceId));
            status = AddNetDevice(instance.get());
        }
    }
    return status;
}

int CNetworkInformation::AddNetDevice(HKEY instance) {
    const CStatGlobal global;
    CString deviceClass;
    CString description;
    global.GetRegString(instance, "Class", deviceClass);
    // Every device's description is read, and those of other classes thrown away.
    int status = global.GetRegString(instance, "DeviceDesc", description);
    if (deviceClass.MakeLower() == "net") {
        global.AppendString(m_cNetworkAdapters, description, ";");
        CString driver;
        global.GetRegString(instance, "Driver", driver);
        // Into the same string: a driver without a description goes by the device's.
        status = global.GetRegString(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Services\\Class\\" + driver,
                                     "DriverDesc", description);
        global.AppendString(m_cNetworkDrivers, description, ";");
    }
    return status;
}
