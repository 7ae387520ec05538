// The monitor.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/hardware/VideoInformation.h"

namespace {

// The first sub-key that names a monitor: the stand-in that Windows lists for an unknown one does not count.
CString FindMonitorType(HKEY display) {
    const CStatGlobal global;
    CString type;
    for (DWORD index = 0; !(type = global.EnumRegKey(display, index)).IsEmpty(); ++index) {
        if (type.CompareNoCase("Default_Monitor") != 0)
            break;
    }
    return type;
}

}  // namespace

int CVideoInformation::GetMonitor() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return global.GetRegString(HKEY_LOCAL_MACHINE, "Enum\\Monitor\\Default_Monitor\\0001", "DeviceDesc",
                                       m_cMonitor);
        case VER_PLATFORM_WIN32_NT:
            GetMonitorNT();
            return -1;
        default:
            return 0;
    }
}

void CVideoInformation::GetMonitorNT() {
    const CStatGlobal global;
    m_cMonitor.LoadString(IDS_UNKNOWN_VALUE);
    const UniqueRegKey display(global.OpenRegKey(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Enum\\Display"));
    const CString type = FindMonitorType(display.get());
    if (type.IsEmpty())
        return;
    // One monitor is taken, the first, even when it turns out that nothing can be read of it.
    const UniqueRegKey typeKey(global.OpenRegKey(display.get(), type));
    if (typeKey == nullptr)
        return;
    CString instance;
    instance.Format("System\\CurrentControlSet\\Enum\\Display\\%s\\%s", static_cast<const char*>(type),
                    static_cast<const char*>(global.EnumRegKey(typeKey.get(), 0)));
    CString description;
    if (global.GetRegString(HKEY_LOCAL_MACHINE, instance, "DeviceDesc", description) == 0)
        m_cMonitor = description;
}
