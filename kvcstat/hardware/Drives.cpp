// The drives A to Z, by type.
#include <memory>

#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/hardware/DiskInformation.h"
#include "kvcstat/hardware/DriveRoot.h"
#include "kvcstat/hardware/HardwareInformation.h"

namespace {

// Where a type of drive is listed and counted, and which text names its drives.
struct DriveKind {
    UINT type;
    CObList CHardwareInformation::*drives;
    DWORD CHardwareInformation::*count;
    CString CHardwareInformation::*names;  // null: in no text
};
constexpr DriveKind kDriveKinds[] = {
    {DRIVE_REMOVABLE, &CHardwareInformation::m_RemovableDrives, &CHardwareInformation::m_nRemovableDrives,
     &CHardwareInformation::m_cRemovableDriveList},
    {DRIVE_FIXED, &CHardwareInformation::m_FixedDrives, &CHardwareInformation::m_nFixedDrives,
     &CHardwareInformation::m_cFixedDriveList},
    {DRIVE_REMOTE, &CHardwareInformation::m_RemoteDrives, &CHardwareInformation::m_nRemoteDrives, nullptr},
    {DRIVE_CDROM, &CHardwareInformation::m_CDRomDrives, &CHardwareInformation::m_nCDRomDrives,
     &CHardwareInformation::m_cCDRomDriveList},
    {DRIVE_RAMDISK, &CHardwareInformation::m_RamDisks, &CHardwareInformation::m_nRamDisks, nullptr},
};

const DriveKind* FindKind(UINT type) {
    for (const DriveKind& kind : kDriveKinds) {
        if (kind.type == type)
            return &kind;
    }
    return nullptr;
}

CDiskInformation& AddDrive(CObList& drives, char letter, UINT type) {
    auto drive = std::make_unique<CDiskInformation>(letter, type);
    drive->Refresh();
    drives.AddTail(drive.get());
    return *drive.release();
}

}  // namespace

int CHardwareInformation::GetDrives() {
    const CStatGlobal global;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const DriveRoot root(letter);
        const DriveKind* kind = FindKind(GetDriveTypeA(root));
        if (kind == nullptr)
            continue;
        CDiskInformation& drive = AddDrive(this->*kind->drives, letter, kind->type);
        ++(this->*kind->count);
        if (kind->type == DRIVE_FIXED)
            global.AppendString(this->*kind->names, drive.Describe(), ";");
        else if (kind->names != nullptr)
            global.AppendString(this->*kind->names, root, ";");
    }
    return 0;
}
