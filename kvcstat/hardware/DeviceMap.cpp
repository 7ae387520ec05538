#include "kvcstat/hardware/DeviceMap.h"

int CDeviceMap::Add(std::unique_ptr<CDeviceInformation> device) {
    CObject* stored = nullptr;
    if (Lookup(device->m_cDescription, stored)) {
        ++static_cast<CDeviceInformation*>(stored)->m_nCount;
        return 0;
    }
    device->m_nCount = 1;
    SetAt(device->m_cDescription, device.get());
    static_cast<void>(device.release());
    return 0;
}

void CDeviceMap::DeleteAll() noexcept {
    for (POSITION place = GetStartPosition(); place != nullptr;)
        delete &GetNextDevice(place);
    RemoveAll();
}

CDeviceInformation& CDeviceMap::GetNextDevice(POSITION& place) const {
    CString description;
    CObject* device = nullptr;
    GetNextAssoc(place, description, device);
    return *static_cast<CDeviceInformation*>(device);
}
