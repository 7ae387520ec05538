#include "kvcstat/hardware/DeviceInformation.h"

#include "kvcstat/common/StatGlobal.h"

int CDeviceInformation::Read(HKEY key) {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            global.GetRegString(key, "DeviceDesc", m_cDescription);
            return global.GetRegString(key, "Class", m_cClass);
        case VER_PLATFORM_WIN32_NT:
            global.GetRegString(key, "Identifier", m_cDescription);
            return global.GetRegString(key, "Type", m_cClass);
        default:
            return 0;
    }
}
