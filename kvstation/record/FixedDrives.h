// The drives that the record's szFixedDrives lists.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

struct FixedDrive {
    char letter = 0;
    std::string label;  // empty for a drive without one
    std::string fileSystem;
    std::int64_t totalMB = 0;
    std::int64_t percentFree = 0;  // far below 0 for a drive whose size could not be read

    bool hasSize() const { return totalMB > 0 && percentFree >= 0 && percentFree <= 100; }
};

struct FixedDriveList {
    std::vector<FixedDrive> drives;
    std::string rest;  // what does not read as a drive, such as a last one that the field's width cut
};

// Reads "C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) ".
FixedDriveList parseFixedDrives(std::string_view szFixedDrives);

}  // namespace kvstation
