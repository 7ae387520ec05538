// The graphics adapter, and the date of its BIOS.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/hardware/VideoInformation.h"

namespace {

constexpr char kSystemKey[] = "HARDWARE\\DESCRIPTION\\System";

// The driver's key of the first adapter, where the device map names it in the native form; null when it does not.
HKEY FindDriver(CString& path) {
    const CStatGlobal global;
    HKEY hive = nullptr;
    if (global.GetRegString(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\VIDEO", "\\Device\\Video0", path) == 0)
        global.MapNativeRegPath(hive, path);
    return hive;
}

bool IsDisplay(HKEY instance) {
    const CStatGlobal global;
    CString deviceClass;
    return global.GetRegString(instance, "Class", deviceClass) == 0 && deviceClass.MakeLower() == "display";
}

}  // namespace

int CVideoInformation::GetVideoAdapter() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS: {
            const int status = FindDisplayAdapters("Enum\\PCI");
            return status == 0 ? 0 : FindDisplayAdapters("Enum\\Root");
        }
        case VER_PLATFORM_WIN32_NT:
            GetVideoAdapterNT();
            return global.GetRegString(HKEY_LOCAL_MACHINE, kSystemKey, "VideoBiosDate", m_cVideoBiosDate);
        default:
            return -1;
    }
}

// The BIOS version is tried before the adapter's own text, which only a machine without a video BIOS is named by.
void CVideoInformation::GetVideoAdapterNT() {
    const CStatGlobal global;
    CString path;
    const HKEY hive = FindDriver(path);
    if (hive != nullptr && global.GetRegString(hive, path, "Device Description", m_cVideoAdapter) == 0)
        return;
    if (global.GetRegString(HKEY_LOCAL_MACHINE, kSystemKey, "VideoBiosVersion", m_cVideoAdapter) == 0)
        return;
    if (hive != nullptr)
        global.GetRegString(hive, path, "HardwareInformation.AdapterString", m_cVideoAdapter);
}

int CVideoInformation::FindDisplayAdapters(const char* enumKey) {
    const CStatGlobal global;
    const UniqueRegKey enumerator(global.OpenRegKey(HKEY_LOCAL_MACHINE, enumKey));
    int status = -1;
    CString deviceName;
    for (DWORD index = 0; !(deviceName = global.EnumRegKey(enumerator.get(), index)).IsEmpty(); ++index) {
        const UniqueRegKey device(global.OpenRegKey(enumerator.get(), deviceName));
        FindDisplayInstances(device.get(), status);
    }
    return status;
}

void CVideoInformation::FindDisplayInstances(HKEY device, int& status) {
    const CStatGlobal global;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(device, index)).IsEmpty(); ++index) {
        const UniqueRegKey instance(global.OpenRegKey(device, name));
        if (!IsDisplay(instance.get()))
            continue;
        CString description;
        status = global.GetRegString(instance.get(), "DeviceDesc", description);
        if (status == 0)
            global.AppendString(m_cVideoAdapter, description, ";");
    }
}
