#include "kvcstat/hardware/DiskInformation.h"

#include "kvcstat/common/Handles.h"
#include "kvcstat/hardware/DriveRoot.h"
#include "kvcstat/hardware/Truncation.h"

namespace {

constexpr double kBytesPerMB = 1048576.0;

// In 32 bits: what a volume of 4096 TB and more has above them is lost.
DWORD MegabytesOf(const ULARGE_INTEGER& bytes) {
    return static_cast<DWORD>(bytes.QuadPart >> 20);
}

DWORD MegabytesOf(DWORD clusters, DWORD sectorsPerCluster, DWORD bytesPerSector) {
    return TruncateToUInt32(static_cast<double>(clusters) * sectorsPerCluster * bytesPerSector / kBytesPerMB);
}

// The quotient is a single-precision one: 1 MB of 100 is 0 percent. A drive of 0 MB has the percentage that infinity
// converts to, -2147483648; C++ does not define the division itself.
int PercentFree(DWORD freeMB, DWORD totalMB) {
    if (totalMB == 0)
        return TruncateToInt32(std::numeric_limits<double>::infinity());
    const float share = static_cast<float>(freeMB) / static_cast<float>(totalMB);
    return TruncateToInt32(double{share} * 100.0);
}

}  // namespace

int CDiskInformation::Refresh() {
    if (m_nDriveType == DRIVE_UNKNOWN)
        m_nDriveType = GetDriveTypeA(DriveRoot(m_cDriveLetter));
    switch (m_nDriveType) {
        case DRIVE_REMOVABLE:
        case DRIVE_REMOTE:
        case DRIVE_CDROM:
            return 0;
        case DRIVE_FIXED:
        case DRIVE_RAMDISK:
            QuerySpace();
            return QueryVolume();
        default:
            return -1;
    }
}

int CDiskInformation::QuerySpace() {
    m_nTotalMB = m_nFreeMB = 0;
    if (m_cDriveLetter == '\0')
        return -1;
    return QuerySpaceEx() ? 0 : QuerySpaceInClusters();
}

// Looked up, because the first Windows 95 does not have it.
bool CDiskInformation::QuerySpaceEx() {
    using GetDiskFreeSpaceExFunction =
        BOOL(WINAPI*)(LPCSTR root, PULARGE_INTEGER available, PULARGE_INTEGER total, PULARGE_INTEGER free);

    const UniqueLibrary kernel(LoadLibraryA("KERNEL32.DLL"));
    if (kernel == nullptr)
        return false;
    const auto getSpace = FindFunction<GetDiskFreeSpaceExFunction>(kernel.get(), "GetDiskFreeSpaceExA");
    ULARGE_INTEGER available = {};
    ULARGE_INTEGER total = {};
    ULARGE_INTEGER free = {};
    if (getSpace == nullptr || getSpace(DriveRoot(m_cDriveLetter), &available, &total, &free) == FALSE)
        return false;
    m_nTotalMB = MegabytesOf(total);
    m_nFreeMB = MegabytesOf(available);
    return true;
}

int CDiskInformation::QuerySpaceInClusters() {
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD totalClusters = 0;
    if (GetDiskFreeSpaceA(DriveRoot(m_cDriveLetter), &sectorsPerCluster, &bytesPerSector, &freeClusters,
                          &totalClusters) == FALSE)
        return -1;
    m_nTotalMB = MegabytesOf(totalClusters, sectorsPerCluster, bytesPerSector);
    m_nFreeMB = MegabytesOf(freeClusters, sectorsPerCluster, bytesPerSector);
    return 0;
}

int CDiskInformation::QueryVolume() {
    char volumeName[259] = {};
    char fileSystem[259] = {};
    if (GetVolumeInformationA(DriveRoot(m_cDriveLetter), volumeName, sizeof volumeName, &m_dwSerialNumber, nullptr,
                              nullptr, fileSystem, sizeof fileSystem) == FALSE)
        return -1;
    m_cFileSystem = fileSystem;
    m_cVolumeName = volumeName;
    return 0;
}

CString CDiskInformation::Describe() {
    CString description;
    switch (m_nDriveType) {
        case DRIVE_FIXED:
            return DescribeFixed();
        case DRIVE_RAMDISK:
            description.Format("%c:(%d MB) ", m_cDriveLetter, static_cast<int>(m_nTotalMB));
            break;
        case DRIVE_REMOVABLE:
        case DRIVE_REMOTE:
        case DRIVE_CDROM:
            description.Format("%c: ", m_cDriveLetter);
    }
    return description;
}

CString CDiskInformation::DescribeFixed() {
    // Again, although the refresh has just asked: the label may be a new one by the time the line is made.
    QueryVolume();
    const int total = static_cast<int>(m_nTotalMB);
    const int percent = PercentFree(m_nFreeMB, m_nTotalMB);
    const char* fileSystem = m_cFileSystem;
    const char* volumeName = m_cVolumeName;
    CString description;
    if (m_cVolumeName.IsEmpty())
        description.Format("%c:(%s:%d MB %d%% free) ", m_cDriveLetter, fileSystem, total, percent);
    else
        description.Format("%c(%s):(%s:%d MB %d%% free) ", m_cDriveLetter, volumeName, fileSystem, total, percent);
    return description;
}
