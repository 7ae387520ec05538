#include "kvstation/record/FixedDrives.h"

#include <gtest/gtest.h>

namespace kvstation {
namespace {

TEST(FixedDrives, DrivesWithAndWithoutLabel) {
    const FixedDriveList list = parseFixedDrives("C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) ");
    ASSERT_EQ(list.drives.size(), 2u);
    EXPECT_EQ(list.drives[0].letter, 'C');
    EXPECT_EQ(list.drives[0].label, "SYSTEM");
    EXPECT_EQ(list.drives[0].fileSystem, "NTFS");
    EXPECT_EQ(list.drives[0].totalMB, 152625);
    EXPECT_EQ(list.drives[0].percentFree, 41);
    EXPECT_EQ(list.drives[1].letter, 'E');
    EXPECT_EQ(list.drives[1].label, "");
    EXPECT_EQ(list.drives[1].fileSystem, "FAT32");
    EXPECT_EQ(list.rest, "");
}

TEST(FixedDrives, LabelsMayHoldTheListsOwnSigns) {
    const FixedDriveList list = parseFixedDrives("C(a;b (c):x):(NTFS:1 MB 0% free) ");
    ASSERT_EQ(list.drives.size(), 1u);
    EXPECT_EQ(list.drives[0].label, "a;b (c):x");
}

TEST(FixedDrives, ALastDriveThatTheFieldCutStaysText) {
    const FixedDriveList list = parseFixedDrives("C:(NTFS:100 MB 50% free) ;D(DATA):(NTFS:20");
    EXPECT_EQ(list.drives.size(), 1u);
    EXPECT_EQ(list.rest, "D(DATA):(NTFS:20");
}

TEST(FixedDrives, ADriveThatCouldNotBeAskedHasNoSize) {
    const FixedDriveList list = parseFixedDrives("C:(:0 MB -2147483648% free) ");
    ASSERT_EQ(list.drives.size(), 1u);
    EXPECT_FALSE(list.drives[0].hasSize());
    EXPECT_EQ(list.drives[0].fileSystem, "");
}

TEST(FixedDrives, SizesBeyond31BitsComeAsNegativeNumbers) {
    const FixedDriveList list = parseFixedDrives("C:(NTFS:-5 MB 50% free) ");
    ASSERT_EQ(list.drives.size(), 1u);
    EXPECT_FALSE(list.drives[0].hasSize());
}

TEST(FixedDrives, ForeignTextIsNoDrive) {
    for (const char* text : {"garbage", "C", "C(", "C(x", "C(x):(", "C:(NTFS", "C:(NTFS:x", "C:(NTFS:1 MB", ";", "%"}) {
        const FixedDriveList list = parseFixedDrives(text);
        EXPECT_TRUE(list.drives.empty()) << text;
        EXPECT_EQ(list.rest, text);
    }
}

TEST(FixedDrives, NothingGivesNothing) {
    EXPECT_TRUE(parseFixedDrives("").drives.empty());
}

}  // namespace
}  // namespace kvstation
