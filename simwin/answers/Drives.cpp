#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

constexpr std::uint32_t kSectorSize = 512;
constexpr std::uint32_t kSectorsPerCluster = 8;
constexpr std::uint64_t kClusterSize = kSectorSize * kSectorsPerCluster;

// Only "X:\" names a drive.
const Drive* findDrive(const Station& station, const char* root) {
    if (root == nullptr || root[0] == '\0' || root[1] != ':' || root[2] != '\\' || root[3] != '\0')
        return nullptr;
    const auto found = station.drives.find(upperAscii(root[0]));
    return found != station.drives.end() ? &found->second : nullptr;
}

struct VolumePlaces {
    char* label;
    DWORD labelSize;
    DWORD* serial;
    DWORD* componentLength;
    DWORD* flags;
    char* fileSystem;
    DWORD fileSystemSize;
};

bool copyText(const std::string& text, char* buffer, DWORD size) {
    if (buffer == nullptr)
        return true;
    if (size <= text.size())
        return false;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

BOOL volumeInformation(Machine& machine, const char* root, const VolumePlaces& places) {
    const Drive* drive = findDrive(machine.station(), root);
    if (drive == nullptr)
        return fail(machine, ERROR_PATH_NOT_FOUND);
    if (!drive->label && !drive->fileSystem)
        return fail(machine, ERROR_NOT_READY);
    if (!copyText(drive->label.value_or(""), places.label, places.labelSize) ||
        !copyText(drive->fileSystem.value_or(""), places.fileSystem, places.fileSystemSize))
        return fail(machine, ERROR_BAD_LENGTH);
    if (places.serial != nullptr)
        *places.serial = drive->serial;
    if (places.componentLength != nullptr)
        *places.componentLength = 255;
    if (places.flags != nullptr)
        *places.flags = 0;
    return TRUE;
}

BOOL spaceEx(Machine& machine, const char* root, ULARGE_INTEGER* free, ULARGE_INTEGER* total,
             ULARGE_INTEGER* totalFree) {
    const Drive* drive = findDrive(machine.station(), root);
    if (drive == nullptr)
        return fail(machine, ERROR_PATH_NOT_FOUND);
    if (!drive->total)
        return fail(machine, ERROR_NOT_READY);
    const auto put = [](ULARGE_INTEGER* place, std::uint64_t number) {
        if (place != nullptr)
            place->QuadPart = number;
    };
    put(free, drive->free);
    put(total, *drive->total);
    put(totalFree, drive->totalFree.value_or(drive->free));
    return TRUE;
}

DWORD clusterCount(std::uint64_t bytes) {
    return static_cast<DWORD>(std::min<std::uint64_t>(bytes / kClusterSize, 0xFFFFFFFF));
}

Clusters clustersOf(const Drive& drive) {
    if (drive.clusters)
        return *drive.clusters;
    return {kSectorsPerCluster, kSectorSize, clusterCount(drive.free), clusterCount(*drive.total)};
}

struct ClusterPlaces {
    DWORD* sectorsPerCluster;
    DWORD* bytesPerSector;
    DWORD* free;
    DWORD* total;
};

BOOL space(Machine& machine, const char* root, const ClusterPlaces& places) {
    const Drive* drive = findDrive(machine.station(), root);
    if (drive == nullptr)
        return fail(machine, ERROR_PATH_NOT_FOUND);
    if (!drive->total && !drive->clusters)
        return fail(machine, ERROR_NOT_READY);
    const Clusters clusters = clustersOf(*drive);
    const auto put = [](DWORD* place, DWORD number) {
        if (place != nullptr)
            *place = number;
    };
    put(places.sectorsPerCluster, clusters.sectorsPerCluster);
    put(places.bytesPerSector, clusters.bytesPerSector);
    put(places.free, clusters.free);
    put(places.total, clusters.total);
    return TRUE;
}

// A 64-bit number that is written.
struct LargeNumber {
    ULARGE_INTEGER* place;

    using Kept = Structure<ULARGE_INTEGER>::Kept;
    ULARGE_INTEGER* raw() const { return place; }
    Fact fact(bool succeeded) const {
        return succeeded && place != nullptr ? Fact(std::uint64_t{place->QuadPart}) : Fact();
    }
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (place != nullptr)
            appendNumber(text, static_cast<std::uint64_t>(place->QuadPart));
    }
};

}  // namespace

UINT WINAPI sim_GetDriveTypeA(LPCSTR root) {
    return makeCall<sim_GetDriveTypeA>(
        "GetDriveTypeA", failsWithZero(ERROR_NOT_ENOUGH_MEMORY),
        [&](Machine& machine) -> UINT {
            const Drive* drive = findDrive(machine.station(), root);
            return drive != nullptr ? drive->type : DRIVE_NO_ROOT_DIR;
        },
        Text{root});
}

BOOL WINAPI sim_GetVolumeInformationA(LPCSTR root, LPSTR label, DWORD labelSize, LPDWORD serial,
                                      LPDWORD componentLength, LPDWORD flags, LPSTR fileSystem, DWORD fileSystemSize) {
    return makeCall<sim_GetVolumeInformationA>(
        "GetVolumeInformationA", failsWithZero(ERROR_NOT_READY),
        [&](Machine& machine) {
            return volumeInformation(machine, root,
                                     {label, labelSize, serial, componentLength, flags, fileSystem, fileSystemSize});
        },
        Text{root}, TextBuffer{label, labelSize}, Value{labelSize}, Number{serial}, Number{componentLength},
        Number{flags}, TextBuffer{fileSystem, fileSystemSize}, Value{fileSystemSize});
}

BOOL WINAPI sim_GetDiskFreeSpaceExA(LPCSTR root, PULARGE_INTEGER free, PULARGE_INTEGER total,
                                    PULARGE_INTEGER totalFree) {
    return makeCall<sim_GetDiskFreeSpaceExA>(
        "GetDiskFreeSpaceExA", failsWithZero(ERROR_NOT_READY),
        [&](Machine& machine) { return spaceEx(machine, root, free, total, totalFree); }, Text{root}, LargeNumber{free},
        LargeNumber{total}, LargeNumber{totalFree});
}

BOOL WINAPI sim_GetDiskFreeSpaceA(LPCSTR root, LPDWORD sectorsPerCluster, LPDWORD bytesPerSector, LPDWORD free,
                                  LPDWORD total) {
    return makeCall<sim_GetDiskFreeSpaceA>(
        "GetDiskFreeSpaceA", failsWithZero(ERROR_NOT_READY),
        [&](Machine& machine) {
            return space(machine, root, {sectorsPerCluster, bytesPerSector, free, total});
        },
        Text{root}, Number{sectorsPerCluster}, Number{bytesPerSector}, Number{free}, Number{total});
}
