// Drives: types, sizes, descriptions, lists.
#include "kvcstat/hardware/DiskInformation.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::kMB;
using kvtest::Str;
using ::testing::ElementsAre;

constexpr std::uint32_t kRemovable = 2;
constexpr std::uint32_t kFixed = 3;
constexpr std::uint32_t kRemote = 4;
constexpr std::uint32_t kCDRom = 5;
constexpr std::uint32_t kRamDisk = 6;

class DrivesTest : public kvtest::HardwareTest {
  protected:
    void DescribeDrive(char letter, std::uint32_t type) { station.drives[letter].type = type; }
    // Sizes in MB.
    void DescribeVolume(char letter, std::uint32_t type, const char* label, const char* fileSystem, std::uint64_t total,
                        std::uint64_t free) {
        simwin::Drive& drive = station.drives[letter];
        drive.type = type;
        drive.label = label;
        drive.fileSystem = fileSystem;
        drive.total = total * kMB;
        drive.free = free * kMB;
    }
    std::string FixedDrives() {
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetDrives(), 0);
        return Str(hardware->m_cFixedDriveList);
    }
    static std::vector<std::string> LettersOf(const CObList& drives) {
        std::vector<std::string> letters;
        for (POSITION place = drives.GetHeadPosition(); place != nullptr;)
            letters.emplace_back(1, static_cast<CDiskInformation*>(drives.GetNext(place))->m_cDriveLetter);
        return letters;
    }
};

TEST_F(DrivesTest, FloppyHardDiskAndCDRomFillTheThreeTextsWithoutTouchingAMedium) {
    DescribeDrive('A', kRemovable);
    DescribeVolume('C', kFixed, "SYSTEM", "NTFS", 152625, 63338);  // 41.499 %
    DescribeDrive('D', kCDRom);
    Start().keepLog(true);
    Hardware hardware;
    EXPECT_EQ(hardware->GetDrives(), 0);
    EXPECT_STREQ(hardware->m_cRemovableDriveList, "A:\\");
    EXPECT_STREQ(hardware->m_cCDRomDriveList, "D:\\");
    EXPECT_STREQ(hardware->m_cFixedDriveList, "C(SYSTEM):(NTFS:152625 MB 41% free) ");
    EXPECT_EQ(hardware->m_nRemovableDrives, 1u);
    EXPECT_EQ(hardware->m_nFixedDrives, 1u);
    EXPECT_EQ(hardware->m_nCDRomDrives, 1u);
    // Those of drive C: space, the volume for the drive and again for its description.
    EXPECT_EQ(CountCalls("GetDriveTypeA"), 26u);
    EXPECT_THAT(CallsAmong({"LoadLibraryA", "GetProcAddress", "GetDiskFreeSpaceExA", "FreeLibrary", "GetDiskFreeSpaceA",
                            "GetVolumeInformationA"}),
                ElementsAre("LoadLibraryA", "GetProcAddress", "GetDiskFreeSpaceExA", "FreeLibrary",
                            "GetVolumeInformationA", "GetVolumeInformationA"));
}

TEST_F(DrivesTest, SeveralFixedDrivesKeepTheBlankBeforeTheSemicolon) {
    DescribeVolume('C', kFixed, "SYSTEM", "NTFS", 152625, 63338);
    DescribeVolume('E', kFixed, "", "FAT32", 4094, 500);  // 12.213 %
    EXPECT_EQ(FixedDrives(), "C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free) ");
}

TEST_F(DrivesTest, TwentySixDrivesOfAllTypesAreSorted) {
    // A removable, B fixed, C remote, D CD-ROM, E RAM disk, F without root, G unknown, H of a type yet unheard of,
    // and from I on again.
    const std::uint32_t types[] = {kRemovable, kFixed, kRemote, kCDRom, kRamDisk, 1, 0, 7};
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::uint32_t type = types[(letter - 'A') % 8];
        if (type == kFixed)
            DescribeVolume(letter, type, "", "FAT", 100, 50);
        else
            DescribeDrive(letter, type);
    }
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetDrives(), 0);
    EXPECT_THAT(LettersOf(hardware->m_RemovableDrives), ElementsAre("A", "I", "Q", "Y"));
    EXPECT_THAT(LettersOf(hardware->m_FixedDrives), ElementsAre("B", "J", "R", "Z"));
    EXPECT_THAT(LettersOf(hardware->m_RemoteDrives), ElementsAre("C", "K", "S"));
    EXPECT_THAT(LettersOf(hardware->m_CDRomDrives), ElementsAre("D", "L", "T"));
    EXPECT_THAT(LettersOf(hardware->m_RamDisks), ElementsAre("E", "M", "U"));
    EXPECT_EQ(hardware->m_nRemovableDrives, 4u);
    EXPECT_EQ(hardware->m_nFixedDrives, 4u);
    EXPECT_EQ(hardware->m_nRemoteDrives, 3u);
    EXPECT_EQ(hardware->m_nCDRomDrives, 3u);
    EXPECT_EQ(hardware->m_nRamDisks, 3u);
    EXPECT_STREQ(hardware->m_cRemovableDriveList, "A:\\;I:\\;Q:\\;Y:\\");
    EXPECT_STREQ(hardware->m_cCDRomDriveList, "D:\\;L:\\;T:\\");
    EXPECT_STREQ(hardware->m_cFixedDriveList,
                 "B:(FAT:100 MB 50% free) ;J:(FAT:100 MB 50% free) ;R:(FAT:100 MB 50% free) ;Z:(FAT:100 MB 50% free) ");
}

TEST_F(DrivesTest, TwentySixDrivesOfOneTypeFitTheirList) {
    for (const std::uint32_t type : {kRemovable, kFixed, kRemote, kCDRom, kRamDisk}) {
        for (char letter = 'A'; letter <= 'Z'; ++letter)
            DescribeDrive(letter, type);
        Start();
        Hardware hardware;
        hardware->GetDrives();
        EXPECT_EQ(hardware->m_nRemovableDrives + hardware->m_nFixedDrives + hardware->m_nRemoteDrives +
                      hardware->m_nCDRomDrives + hardware->m_nRamDisks,
                  26u);
    }
}

TEST_F(DrivesTest, NetworkDrivesAndRamDisksAreListedAndAppearInNoText) {
    DescribeVolume('E', kRamDisk, "RAM", "FAT", 16, 8);
    DescribeVolume('N', kRemote, "HOME", "NWFS", 1000, 10);
    Start();
    Hardware hardware;
    hardware->GetDrives();
    EXPECT_EQ(hardware->m_nRamDisks, 1u);
    EXPECT_EQ(hardware->m_nRemoteDrives, 1u);
    EXPECT_THAT(LettersOf(hardware->m_RamDisks), ElementsAre("E"));
    EXPECT_THAT(LettersOf(hardware->m_RemoteDrives), ElementsAre("N"));
    EXPECT_STREQ(hardware->m_cRemovableDriveList, "");
    EXPECT_STREQ(hardware->m_cFixedDriveList, "");
    EXPECT_STREQ(hardware->m_cCDRomDriveList, "");
}

TEST_F(DrivesTest, DriveThatFailsEveryQueryStaysWithoutSizesAndTexts) {
    DescribeDrive('C', kFixed);
    Start();
    Hardware hardware;
    hardware->GetDrives();
    EXPECT_STREQ(hardware->m_cFixedDriveList, "C:(:0 MB -2147483648% free) ");
    POSITION place = hardware->m_FixedDrives.GetHeadPosition();
    ASSERT_NE(place, nullptr);
    const auto& drive = *static_cast<CDiskInformation*>(hardware->m_FixedDrives.GetNext(place));
    EXPECT_EQ(drive.m_nTotalMB, 0u);
    EXPECT_EQ(drive.m_nFreeMB, 0u);
    EXPECT_STREQ(drive.m_cFileSystem, "");
    EXPECT_STREQ(drive.m_cVolumeName, "");
}

TEST_F(DrivesTest, PercentFreeIsTheSinglePrecisionQuotientTruncated) {
    const struct {
        std::uint64_t total, free;
        const char* percent;
    } rows[] = {
        {1000, 419, "41"},
        {1000, 410, "40"},  // single precision holds 0.40999999642
        {1000, 999, "99"},
        {1000, 1000, "100"},
        {1000, 0, "0"},
        {100, 1, "0"},  // and 0.00999999978
        {100, 29, "28"},
        {100, 50, "50"},
        {3, 1, "33"},
        {3, 2, "66"},
        {16777217, 16777216, "100"},  // the total is no single-precision number: it rounds to 16777216
        {1, 3, "300"},                // more free than there is
        {1, 21474836, "2147483600"},
        {1, 21474838, "-2147483648"},
        {0, 0, "-2147483648"},
        {0, 7, "-2147483648"},
    };
    for (const auto& row : rows) {
        DescribeVolume('C', kFixed, "", "FS", row.total, row.free);
        EXPECT_EQ(FixedDrives(), "C:(FS:" + std::to_string(row.total) + " MB " + row.percent + "% free) ");
    }
}

TEST_F(DrivesTest, VolumeBelowOneMegabyteHasNoPercentage) {
    DescribeVolume('C', kFixed, "SMALL", "FAT", 0, 0);
    station.drives['C'].total = kMB - 1;
    station.drives['C'].free = kMB - 1;
    EXPECT_EQ(FixedDrives(), "C(SMALL):(FAT:0 MB -2147483648% free) ");
}

TEST_F(DrivesTest, FreeSpaceIsTheCallersAndNotAllThatIsFree) {
    DescribeVolume('C', kFixed, "", "NTFS", 1000, 250);
    station.drives['C'].totalFree = 900 * kMB;
    EXPECT_EQ(FixedDrives(), "C:(NTFS:1000 MB 25% free) ");
}

TEST_F(DrivesTest, MegabytesAreWholeAndCountedIn32Bits) {
    const struct {
        std::uint64_t bytes;
        DWORD megabytes;
        const char* text;
    } rows[] = {
        {2 * kMB - 1, 1, "1"},
        {4096 * kMB, 4096, "4096"},  // 4 GB: the high part alone
        {4096 * kMB + 5 * kMB + 12345, 4101, "4101"},
        {160039235584, 152625, "152625"},
        {1048576 * kMB, 1048576, "1048576"},                           // 1 TB
        {std::uint64_t{0x80000000} * kMB, 0x80000000, "-2147483648"},  // 2048 TB print as a signed number
        {std::uint64_t{0x100000003} * kMB, 3, "3"},                    // 4096 TB and 3 MB
        {0xFFFFFFFFFFFFFFFF, 0xFFFFFFFF, "-1"},
    };
    for (const auto& row : rows) {
        DescribeVolume('C', kFixed, "", "FS", 0, 0);
        station.drives['C'].total = row.bytes;
        station.drives['C'].free = row.bytes;
        Start();
        CDiskInformation drive('C', kFixed);
        EXPECT_EQ(drive.QuerySpace(), 0);
        EXPECT_EQ(drive.m_nTotalMB, row.megabytes) << row.bytes;
        EXPECT_EQ(drive.m_nFreeMB, row.megabytes) << row.bytes;
        EXPECT_EQ(Str(drive.Describe()), std::string("C:(FS:") + row.text + " MB 100% free) ");
    }
}

TEST_F(DrivesTest, SpaceIsCountedInClustersWhereTheNewerCallIsMissingOrFails) {
    DescribeVolume('C', kFixed, "", "FAT", 500, 250);
    station.drives['C'].clusters = simwin::Clusters{64, 512, 1600, 6400};  // 32 KB each: 50 of 200 MB
    for (const char* missing : {"KERNEL32.DLL!GetDiskFreeSpaceExA", "KERNEL32.DLL"}) {
        station.missing = {missing};
        EXPECT_EQ(FixedDrives(), "C:(FAT:200 MB 25% free) ") << missing;
    }
    station.missing.clear();
    EXPECT_EQ(FixedDrives(), "C:(FAT:500 MB 50% free) ");
    station.fails["GetDiskFreeSpaceExA"] = 21;
    EXPECT_EQ(FixedDrives(), "C:(FAT:200 MB 25% free) ");
}

TEST_F(DrivesTest, LibraryIsFreedBeforeTheClustersAreAskedFor) {
    DescribeVolume('C', kFixed, "", "FAT", 500, 250);
    station.fails["GetDiskFreeSpaceExA"] = 21;
    Start().keepLog(true);
    CDiskInformation drive('C', kFixed);
    drive.QuerySpace();
    EXPECT_THAT(CallsAmong({"LoadLibraryA", "GetDiskFreeSpaceExA", "FreeLibrary", "GetDiskFreeSpaceA"}),
                ElementsAre("LoadLibraryA", "GetDiskFreeSpaceExA", "FreeLibrary", "GetDiskFreeSpaceA"));
}

TEST_F(DrivesTest, ClustersAreMultipliedInDoublePrecisionAndTruncated) {
    const struct {
        simwin::Clusters clusters;
        DWORD total, free;
    } rows[] = {
        {{1, 512, 2047, 2048}, 1, 0},
        {{1, 512, 4095, 4097}, 2, 1},
        {{64, 512, 65535, 65535}, 2047, 2047},
        {{8, 512, 0, 0x10000000}, 1048576, 0},                     // 1 TB
        {{0x80000000, 0x80000000, 1, 2}, 0, 0},                    // 2^63 bytes are 2^43 MB: 0 in 32 bits
        {{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}, 0, 0},  // almost 2^76 MB
        {{0x10000, 0x1000, 3, 0x01000010}, 0x1000, 0x300},         // 256 MB each: 2^32 MB are lost of the total
    };
    station.missing = {"KERNEL32.DLL!GetDiskFreeSpaceExA"};
    for (const auto& row : rows) {
        DescribeDrive('C', kFixed);
        station.drives['C'].clusters = row.clusters;
        Start();
        CDiskInformation drive('C', kFixed);
        EXPECT_EQ(drive.QuerySpace(), 0);
        EXPECT_EQ(drive.m_nTotalMB, row.total);
        EXPECT_EQ(drive.m_nFreeMB, row.free);
    }
}

TEST_F(DrivesTest, NewDriveIsUnknown) {
    const CDiskInformation drive;
    EXPECT_EQ(drive.m_cDriveLetter, '\0');
    EXPECT_EQ(drive.m_nDriveType, 0u);
    EXPECT_EQ(drive.m_nTotalMB, 0u);
    EXPECT_EQ(drive.m_nFreeMB, 0u);
    EXPECT_EQ(drive.m_dwSerialNumber, 0u);
}

TEST_F(DrivesTest, SpaceOfADriveWithoutALetterIsNotAskedFor) {
    Start();
    CDiskInformation drive;
    drive.m_nTotalMB = drive.m_nFreeMB = 7;
    const auto calls = machine->calls();
    EXPECT_EQ(drive.QuerySpace(), -1);
    EXPECT_EQ(machine->calls(), calls);
    EXPECT_EQ(drive.m_nTotalMB, 0u);
    EXPECT_EQ(drive.m_nFreeMB, 0u);
}

TEST_F(DrivesTest, FailedSpaceQueriesSetTheSizesToZero) {
    DescribeDrive('C', kFixed);
    Start();
    CDiskInformation drive('C', kFixed);
    drive.m_nTotalMB = drive.m_nFreeMB = 7;
    EXPECT_EQ(drive.QuerySpace(), -1);
    EXPECT_EQ(drive.m_nTotalMB, 0u);
    EXPECT_EQ(drive.m_nFreeMB, 0u);
}

TEST_F(DrivesTest, VolumeQueryReadsSerialNumberFileSystemAndLabel) {
    DescribeVolume('C', kFixed, "SYSTEM", "NTFS", 1, 1);
    station.drives['C'].serial = 0xFEDCBA98;
    Start();
    CDiskInformation drive('C', kFixed);
    EXPECT_EQ(drive.QueryVolume(), 0);
    EXPECT_EQ(drive.m_dwSerialNumber, 0xFEDCBA98u);
    EXPECT_STREQ(drive.m_cFileSystem, "NTFS");
    EXPECT_STREQ(drive.m_cVolumeName, "SYSTEM");
}

TEST_F(DrivesTest, FailedVolumeQueryKeepsTheTexts) {
    DescribeDrive('C', kFixed);
    Start();
    CDiskInformation drive('C', kFixed);
    drive.m_cFileSystem = "NTFS";
    drive.m_cVolumeName = "SYSTEM";
    EXPECT_EQ(drive.QueryVolume(), -1);
    EXPECT_STREQ(drive.m_cFileSystem, "NTFS");
    EXPECT_STREQ(drive.m_cVolumeName, "SYSTEM");
}

TEST_F(DrivesTest, LabelAndFileSystemOf258CharactersFit) {
    const std::string label(258, 'l');
    const std::string fileSystem(258, 'f');
    DescribeVolume('C', kFixed, label.c_str(), fileSystem.c_str(), 10, 5);
    EXPECT_EQ(FixedDrives(), "C(" + label + "):(" + fileSystem + ":10 MB 50% free) ");

    DescribeVolume('C', kFixed, (label + "l").c_str(), "NTFS", 10, 5);
    EXPECT_EQ(FixedDrives(), "C:(:10 MB 50% free) ") << "the query fails for want of room";
    DescribeVolume('C', kFixed, "SYSTEM", (fileSystem + "f").c_str(), 10, 5);
    EXPECT_EQ(FixedDrives(), "C:(:10 MB 50% free) ");
}

TEST_F(DrivesTest, LabelWithFormatCharactersIsPrintedAsItIs) {
    DescribeVolume('C', kFixed, "%s%n;%d", "%c", 10, 5);
    EXPECT_EQ(FixedDrives(), "C(%s%n;%d):(%c:10 MB 50% free) ");
}

TEST_F(DrivesTest, EachTypeIsDescribedInItsOwnForm) {
    const struct {
        std::uint32_t type;
        const char* description;
    } rows[] = {
        {kRemovable, "X: "},
        {kFixed, "X(LABEL):(FS:100 MB 25% free) "},
        {kRemote, "X: "},
        {kCDRom, "X: "},
        {kRamDisk, "X:(100 MB) "},
        {0, ""},
        {1, ""},
        {7, ""},
    };
    for (const auto& row : rows) {
        DescribeVolume('X', row.type, "LABEL", "FS", 100, 25);
        Start().keepLog(true);
        CDiskInformation drive('X', row.type);
        drive.m_nTotalMB = 100;
        drive.m_nFreeMB = 25;
        EXPECT_EQ(Str(drive.Describe()), row.description);
        EXPECT_EQ(CountCalls("GetVolumeInformationA"), row.type == kFixed ? 1u : 0u);
    }
}

TEST_F(DrivesTest, RefreshOfAKnownTypeTouchesOnlyFixedDrivesAndRamDisks) {
    const struct {
        std::uint32_t type;
        int status;
        bool asks;
    } rows[] = {{kRemovable, 0, false}, {kRemote, 0, false}, {kCDRom, 0, false}, {kFixed, 0, true},
                {kRamDisk, 0, true},    {1, -1, false},      {7, -1, false}};
    for (const auto& row : rows) {
        DescribeVolume('X', row.type, "LABEL", "FS", 100, 25);
        Start().keepLog(true);
        CDiskInformation drive('X', row.type);
        EXPECT_EQ(drive.Refresh(), row.status) << row.type;
        EXPECT_EQ(CountCalls("GetDriveTypeA"), 0u);
        EXPECT_EQ(CountCalls("GetVolumeInformationA"), row.asks ? 1u : 0u);
        EXPECT_EQ(drive.m_nTotalMB, row.asks ? 100u : 0u);
    }
}

TEST_F(DrivesTest, RefreshAsksForATypeThatIsUnknown) {
    const struct {
        std::uint32_t type;
        int status;
    } rows[] = {{kRemovable, 0}, {kFixed, 0}, {kRemote, 0}, {kCDRom, 0}, {kRamDisk, 0}, {0, -1}, {1, -1}, {7, -1}};
    for (const auto& row : rows) {
        DescribeVolume('X', row.type, "LABEL", "FS", 100, 25);
        Start();
        CDiskInformation drive('X', 0);
        EXPECT_EQ(drive.Refresh(), row.status) << row.type;
        EXPECT_EQ(drive.m_nDriveType, row.type);
    }
}

TEST_F(DrivesTest, StatusOfRefreshingAFixedDriveIsTheVolumeQuerys) {
    DescribeDrive('C', kFixed);
    station.drives['C'].total = 100 * kMB;
    station.drives['C'].free = 50 * kMB;
    Start();
    {
        CDiskInformation drive('C', kFixed);
        EXPECT_EQ(drive.Refresh(), -1);
        EXPECT_EQ(drive.m_nTotalMB, 100u);
    }
    station.drives['C'].total.reset();
    station.drives['C'].label = "SYSTEM";
    Start();
    CDiskInformation drive('C', kFixed);
    EXPECT_EQ(drive.Refresh(), 0);
    EXPECT_EQ(drive.m_nTotalMB, 0u);
}

}  // namespace
