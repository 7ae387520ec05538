#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// One drive. Only fixed drives and RAM disks are asked for space and volume: no medium of another kind is touched.
class CDiskInformation : public CObject {
  public:
    CDiskInformation() = default;
    CDiskInformation(char cDriveLetter, UINT nDriveType) : m_cDriveLetter(cDriveLetter), m_nDriveType(nDriveType) {}
    ~CDiskInformation() override = default;

    // Completes the object for its letter, asking for the type first when that is unknown. 0, or -1 when the type is
    // none of a drive's or the volume could not be read.
    int Refresh();

    // One line, with a trailing blank: "C(SYSTEM):(NTFS:152625 MB 41% free) ". Empty for a type that is none of a
    // drive's. A fixed drive's volume is read again for it.
    CString Describe();

    // Size and free space: 0, or -1 with both at 0.
    int QuerySpace();
    // Serial number, file system and label (GetVolumeInformationA): 0, or -1 with the texts unchanged.
    int QueryVolume();

    char m_cDriveLetter = 0;     // 'A' to 'Z'; 0 when unset
    DWORD m_nDriveType = 0;      // GetDriveTypeA: 2 removable, 3 fixed, 4 remote, 5 CD-ROM, 6 RAM disk; 0 unknown
    DWORD m_nTotalMB = 0;        // whole megabytes of 1048576 bytes
    DWORD m_nFreeMB = 0;         // free to the caller, which a quota can make less than what is free in all
    DWORD m_dwSerialNumber = 0;  // of the volume
    CString m_cFileSystem;       // such as "NTFS"
    CString m_cVolumeName;       // the label

  private:
    bool QuerySpaceEx();
    int QuerySpaceInClusters();
    CString DescribeFixed();
};
