#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// A storage device as Windows lists it, and how many of its description there are.
class CDeviceInformation : public CObject {
  public:
    ~CDeviceInformation() override = default;

    // Reads description and class from the device's open key: "DeviceDesc" and "Class" on Windows 9x, "Identifier" and
    // "Type" on Windows NT. Status of the last read; 0 on any other platform, where nothing is read.
    int Read(HKEY key);

    CString GetClass() const { return m_cClass; }

    DWORD m_nCount = 0;  // 1 once the device is in the map
    CString m_cDescription;
    CString m_cReserved1;  // nothing fills these two
    CString m_cReserved2;
    CString m_cClass;
};
