#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"
#include "kvcstat/hardware/DeviceMap.h"

class COSInformation;

// What the station is made of. One object serves one collection; it owns the items of its lists and of its device
// map, which the next collection's reset or the destructor deletes. Lists of texts are joined with ";".
class CHardwareInformation : public CObject {
  public:
    // The OS collector is asked for the platform id and must outlive the collection.
    explicit CHardwareInformation(COSInformation* pOSInformation);
    ~CHardwareInformation() override;

    // The whole collection, in its fixed order. Status of the device classification, which nobody acts on.
    int Collect();
    // The second step of the product's hardware run; it has nothing to do. Always 0.
    int CollectSecond() { return 0; }

    // --- Processor (Processor.cpp, ProcessorName.cpp)
    int GetProcessor();
    void GetPowerInformation();
    void GetProcessorNameFallback();

    // --- Machine and owner (Machine.cpp)
    int GetBios();
    int GetMemory();
    int GetOwner();

    // --- Devices and keyboard (Devices.cpp, Keyboard.cpp)
    int EnumerateDevices();
    int ClassifyDevices();
    int GetKeyboard();

    // --- Drives (Drives.cpp)
    int GetDrives();

    // --- Printers (Printers.cpp)
    int GetPrinters();
    int GetDefaultPrinter();

    WORD m_wProcessorArchitecture = 0;
    DWORD m_dwNumberOfProcessors = 0;
    DWORD m_dwProcessorType = 0;
    DWORD m_dwProcessorLevel = 0;
    WORD m_wProcessorRevision = 0;
    DWORD m_nTotalMemoryMB = 0;
    DWORD m_nVirtualMemoryMB = 0;
    CString m_cSystemIdentifier;
    CString m_cProcessorSpeed;
    CString m_cProcessorIdentifier;
    CString m_cKeyboard;
    CString m_cMachineType;
    CString m_cBiosDate;
    CString m_cBiosVersion;
    CString m_cDefaultPrinter;
    CString m_cRegisteredOwner;
    CString m_cRegisteredOrganization;
    CString m_cProductId;
    CString m_cCurrentUser;
    CDeviceMap m_DeviceMap;
    DWORD m_nRemovableDrives = 0;
    CObList m_RemovableDrives{10};
    CObList m_FixedDrives{10};
    CObList m_RemoteDrives{10};
    CObList m_CDRomDrives{10};
    CObList m_RamDisks{10};
    CObList m_Printers{10};
    DWORD m_nFixedDrives = 0;
    DWORD m_nRemoteDrives = 0;
    DWORD m_nCDRomDrives = 0;
    DWORD m_nRamDisks = 0;
    DWORD m_nOEMCodePage = 0;
    int m_nKeyboardType = 0;
    int m_nKeyboardSubType = 0;
    DWORD m_nCurrentMhz = 0;
    CString m_cOtherDevices;
    CString m_cDiskDevices;
    CString m_cCDRomDevices;
    CString m_cTapeDevices;
    CString m_cCDRomDriveList;
    CString m_cFixedDriveList;
    CString m_cPrinterList;
    CString m_cRemovableDriveList;
    CString m_cProcessorName;
    CString m_cUserName;  // set by the run before Collect
    COSInformation* m_pOSInformation;

  private:
    void Reset();
};
