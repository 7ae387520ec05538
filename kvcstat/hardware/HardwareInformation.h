#pragma once

#include <memory>

#include "framework/Collections.h"
#include "framework/Windows.h"
#include "kvcstat/hardware/DeviceMap.h"

class COSInformation;
class CPrinterInformation;

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

    // The steps of the collection, a source file or two for each. The statuses are 0 or -1, and nobody acts on them.

    // --- Processors; the step goes on with BIOS, memory and owner, and its status is the owner step's.
    int GetProcessor();
    void GetPowerInformation();
    // Names the processor by its numbers when nothing else has.
    void GetProcessorNameFallback();

    // --- Machine and owner
    int GetBios();    // on Windows NT that of its last read, on 9x -1 when the devices' key cannot be opened, else 0
    int GetMemory();  // always 0
    int GetOwner();   // that of its last read; 0 on any other platform than Windows 9x and NT

    // --- Devices and keyboard
    int EnumerateDevices();  // -1 when the platform's device tree cannot be opened, else 0
    int ClassifyDevices();   // always 0
    int GetKeyboard();       // always 0

    // --- Drives
    int GetDrives();  // always 0

    // --- Printers
    int GetPrinters();        // 0 when there is at least one, else -1
    int GetDefaultPrinter();  // 0 when there is one, else -1

    WORD m_wProcessorArchitecture = 0;  // these five from GetSystemInfo: 0 Intel, 1 MIPS, 2 Alpha, 3 PowerPC
    DWORD m_dwNumberOfProcessors = 0;
    DWORD m_dwProcessorType = 0;   // 386, 486, 586, 4000, 21064...
    DWORD m_dwProcessorLevel = 0;  // 16 bits, widened with zeros
    WORD m_wProcessorRevision = 0;
    DWORD m_nTotalMemoryMB = 0;    // physical, rounded, and always even
    DWORD m_nVirtualMemoryMB = 0;  // the process's address space, rounded
    CString m_cSystemIdentifier;   // "AT/AT COMPATIBLE"; on Windows 9x the BIOS's machine type where there is one
    CString m_cProcessorSpeed;     // MHz of each processor
    CString m_cProcessorIdentifier;
    CString m_cKeyboard;
    CString m_cMachineType;
    CString m_cBiosDate;
    CString m_cBiosVersion;
    CString m_cDefaultPrinter;
    CString m_cRegisteredOwner;
    CString m_cRegisteredOrganization;
    CString m_cProductId;
    CString m_cCurrentUser;  // "Terminal server session (USER1)", the logged-on user's name, or "unknown"
    CDeviceMap m_DeviceMap;
    DWORD m_nRemovableDrives = 0;
    CObList m_RemovableDrives;  // CDiskInformation, as are the next four
    CObList m_FixedDrives;
    CObList m_RemoteDrives;
    CObList m_CDRomDrives;
    CObList m_RamDisks;
    CObList m_Printers;  // CPrinterInformation
    DWORD m_nFixedDrives = 0;
    DWORD m_nRemoteDrives = 0;
    DWORD m_nCDRomDrives = 0;
    DWORD m_nRamDisks = 0;
    DWORD m_nOEMCodePage = 0;
    int m_nKeyboardType = 0;
    int m_nKeyboardSubType = 0;
    DWORD m_nCurrentMhz = 0;  // of the only processor; 0 when unknown or when there are more
    CString m_cOtherDevices;  // "2 Generic disk;1 Other disk", as are the next three
    CString m_cDiskDevices;
    CString m_cCDRomDevices;
    CString m_cTapeDevices;
    CString m_cCDRomDriveList;  // "D:\;E:\"
    CString m_cFixedDriveList;  // "C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) "
    CString m_cPrinterList;
    CString m_cRemovableDriveList;  // "A:\;B:\"
    CString m_cProcessorName;       // of each processor
    CString m_cUserName;            // set by the run before Collect
    COSInformation* m_pOSInformation;

  private:
    void Reset();
    void ListProcessors();
    bool ListProcessor(int index);
    int GetBios9x();
    int GetBiosNT();
    void ReadBios9x(HKEY key);
    int GetOwnerOf(const char* product);
    void GetCurrentUser();
    void FindKeyboard9x();
    void FindKeyboardNT();
    int ListPrinters9x(bool remote);
    int ListPrintersNT();
    void AddPrinter(std::unique_ptr<CPrinterInformation> printer, const char* name);
};
