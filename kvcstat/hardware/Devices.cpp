// Storage devices: finding them in the registry, and sorting them by kind.
#include <cstring>
#include <memory>
#include <utility>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/hardware/HardwareInformation.h"

namespace {

void AddDevice(HKEY key, CDeviceMap& devices) {
    auto device = std::make_unique<CDeviceInformation>();
    device->Read(key);
    devices.Add(std::move(device));
}

// Windows 9x: enumerator, device, instance. A key that does not open is passed over.
void AddInstances(HKEY device, CDeviceMap& devices) {
    const CStatGlobal global;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(device, index)).IsEmpty(); ++index) {
        const UniqueRegKey instance(global.OpenRegKey(device, name));
        if (instance != nullptr)
            AddDevice(instance.get(), devices);
    }
}

int AddDevices9x(CDeviceMap& devices) {
    const CStatGlobal global;
    const UniqueRegKey enumerator(global.OpenRegKey(HKEY_LOCAL_MACHINE, "Enum\\ESDI"));
    if (enumerator == nullptr)
        return -1;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(enumerator.get(), index)).IsEmpty(); ++index) {
        const UniqueRegKey device(global.OpenRegKey(enumerator.get(), name));
        AddInstances(device.get(), devices);
    }
    return 0;
}

// Windows NT: port, bus, target, logical unit. On the first three levels a key that does not open ends its level's
// walk; the keys behind it are not visited.

// The whole name of a sub-key, of up to 255 characters; false behind the last one and on any failure.
struct SubKeyName {
    char text[260] = {};

    bool Read(HKEY key, DWORD index) { return RegEnumKeyA(key, index, text, sizeof text) == ERROR_SUCCESS; }

    // Null for a name that reads as empty, because it begins with a NUL: Windows would answer the parent's own handle,
    // which would then be closed twice.
    HKEY Open(HKEY parent) const { return text[0] != '\0' ? CStatGlobal().OpenRegKey(parent, text) : nullptr; }
};

void AddUnits(HKEY target, CDeviceMap& devices) {
    static constexpr char kUnit[] = "Logical Unit Id";
    SubKeyName name;
    for (DWORD index = 0; name.Read(target, index); ++index) {
        if (std::strncmp(name.text, kUnit, sizeof kUnit - 1) != 0)
            continue;
        const UniqueRegKey unit(name.Open(target));
        if (unit != nullptr)
            AddDevice(unit.get(), devices);
    }
}

void AddTargets(HKEY bus, CDeviceMap& devices) {
    SubKeyName name;
    for (DWORD index = 0; name.Read(bus, index); ++index) {
        const UniqueRegKey target(name.Open(bus));
        if (target == nullptr)
            return;
        AddUnits(target.get(), devices);
    }
}

void AddBuses(HKEY port, CDeviceMap& devices) {
    const CStatGlobal global;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(port, index)).IsEmpty(); ++index) {
        const UniqueRegKey bus(global.OpenRegKey(port, name));
        if (bus == nullptr)
            return;
        AddTargets(bus.get(), devices);
    }
}

int AddDevicesNT(CDeviceMap& devices) {
    const CStatGlobal global;
    const UniqueRegKey scsi(global.OpenRegKey(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\Scsi"));
    if (scsi == nullptr)
        return -1;
    SubKeyName name;
    for (DWORD index = 0; name.Read(scsi.get(), index); ++index) {
        const UniqueRegKey port(name.Open(scsi.get()));
        if (port == nullptr)
            break;
        AddBuses(port.get(), devices);
    }
    return 0;
}

// The kinds of devices by their class: Windows NT calls them peripherals, Windows 9x has plain names.
struct DeviceKind {
    const char* deviceClass;
    CString CHardwareInformation::*devices;
};
constexpr DeviceKind kDeviceKinds[] = {
    {"diskperipheral", &CHardwareInformation::m_cDiskDevices},   {"diskdrive", &CHardwareInformation::m_cDiskDevices},
    {"cdromperipheral", &CHardwareInformation::m_cCDRomDevices}, {"cdrom", &CHardwareInformation::m_cCDRomDevices},
    {"tapeperipheral", &CHardwareInformation::m_cTapeDevices},
};

CString CHardwareInformation::*FindKind(CString deviceClass) {
    deviceClass.MakeLower();
    for (const DeviceKind& kind : kDeviceKinds) {
        if (deviceClass == kind.deviceClass)
            return kind.devices;
    }
    return &CHardwareInformation::m_cOtherDevices;
}

}  // namespace

int CHardwareInformation::EnumerateDevices() {
    const CStatGlobal global;
    m_DeviceMap.DeleteAll();
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return AddDevices9x(m_DeviceMap);
        case VER_PLATFORM_WIN32_NT:
            return AddDevicesNT(m_DeviceMap);
        default:
            return 0;
    }
}

int CHardwareInformation::ClassifyDevices() {
    const CStatGlobal global;
    m_cOtherDevices.Empty();
    m_cDiskDevices.Empty();
    m_cCDRomDevices.Empty();
    m_cTapeDevices.Empty();
    for (POSITION place = m_DeviceMap.GetStartPosition(); place != nullptr;) {
        const CDeviceInformation& device = m_DeviceMap.GetNextDevice(place);
        CString& devices = this->*FindKind(device.GetClass());
        global.AppendNumbered(devices, static_cast<int>(device.m_nCount), device.m_cDescription, ";");
    }
    return 0;
}
