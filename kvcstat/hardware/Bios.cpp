// BIOS and machine type.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/hardware/HardwareInformation.h"

int CHardwareInformation::GetBios() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return GetBios9x();
        case VER_PLATFORM_WIN32_NT:
            return GetBiosNT();
        default:
            return 0;
    }
}

int CHardwareInformation::GetBiosNT() {
    const CStatGlobal global;
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System"));
    global.GetRegString(key.get(), "Identifier", m_cMachineType);
    global.GetRegString(key.get(), "SystemBiosDate", m_cBiosDate);
    return global.GetRegString(key.get(), "SystemBiosVersion", m_cBiosVersion);
}

// The BIOS is one of the devices below the root; which one differs from machine to machine.
int CHardwareInformation::GetBios9x() {
    const CStatGlobal global;
    const UniqueRegKey root(global.OpenRegKey(HKEY_LOCAL_MACHINE, "Enum\\Root"));
    if (root == nullptr)
        return -1;
    CString deviceName;
    for (DWORD device = 0; !(deviceName = global.EnumRegKey(root.get(), device)).IsEmpty(); ++device) {
        const UniqueRegKey deviceKey(global.OpenRegKey(root.get(), deviceName));
        CString instanceName;
        for (DWORD instance = 0; !(instanceName = global.EnumRegKey(deviceKey.get(), instance)).IsEmpty(); ++instance) {
            const UniqueRegKey instanceKey(global.OpenRegKey(deviceKey.get(), instanceName));
            ReadBios9x(instanceKey.get());
        }
    }
    return 0;
}

// Every key that has a version counts: the last one's values stay.
void CHardwareInformation::ReadBios9x(HKEY key) {
    const CStatGlobal global;
    CString text;
    if (global.GetRegString(key, "BIOSVersion", text) != 0)
        return;
    m_cBiosVersion = text;
    if (global.GetRegString(key, "BIOSDate", text) == 0)
        m_cBiosDate = text;
    if (global.GetRegString(key, "MachineType", text) == 0)
        m_cMachineType = m_cSystemIdentifier = text;
}
