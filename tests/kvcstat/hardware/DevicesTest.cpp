// Storage devices: the device trees of both families, the map, and the four lists.
#include <memory>
#include <utility>

#include "kvcstat/common/StatGlobal.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::LongText;
using kvtest::Str;

constexpr char kScsi[] = "HARDWARE\\DEVICEMAP\\Scsi";
constexpr char kEsdi[] = "Enum\\ESDI";

class DevicesTest : public kvtest::HardwareTest {
  protected:
    // A path below the SCSI map such as "Scsi Port 0\\Scsi Bus 0\\Target Id 0\\Logical Unit Id 0".
    void DescribeUnit(const std::string& path, const std::string& identifier, const std::string& type) {
        SetText(std::string(kScsi) + "\\" + path, "Identifier", identifier);
        SetText(std::string(kScsi) + "\\" + path, "Type", type);
    }
    static std::string Unit(int port, int bus, int target, int unit) {
        return "Scsi Port " + std::to_string(port) + "\\Scsi Bus " + std::to_string(bus) + "\\Target Id " +
               std::to_string(target) + "\\Logical Unit Id " + std::to_string(unit);
    }
    void DescribeInstance(const std::string& path, const std::string& description, const std::string& deviceClass) {
        SetText(std::string(kEsdi) + "\\" + path, "DeviceDesc", description);
        SetText(std::string(kEsdi) + "\\" + path, "Class", deviceClass);
    }
    void Deny(const std::string& path) { DenyKey(std::string(kScsi) + "\\" + path); }

    // Starts the machine, enumerates and classifies.
    struct Lists {
        int status;
        std::string disks, cdRoms, tapes, others;
    };
    Lists Collect() {
        Start();
        Hardware hardware;
        const int status = hardware->EnumerateDevices();
        EXPECT_EQ(hardware->ClassifyDevices(), 0);
        return {status, Str(hardware->m_cDiskDevices), Str(hardware->m_cCDRomDevices), Str(hardware->m_cTapeDevices),
                Str(hardware->m_cOtherDevices)};
    }
};

TEST_F(DevicesTest, DevicesOfOneDescriptionAreCountedTogether) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "Generic disk", "DiskPeripheral");
    DescribeUnit(Unit(0, 0, 1, 0), "Generic disk", "DiskPeripheral");
    DescribeUnit(Unit(1, 0, 0, 0), "Generic CD", "CdRomPeripheral");
    const Lists lists = Collect();
    EXPECT_EQ(lists.status, 0);
    EXPECT_EQ(lists.disks, "2 Generic disk");
    EXPECT_EQ(lists.cdRoms, "1 Generic CD");
    EXPECT_EQ(lists.tapes, "");
    EXPECT_EQ(lists.others, "");
}

TEST_F(DevicesTest, ThreeUnitsOfOneIdentifierUnderDifferentTargetsGiveOneEntry) {
    DescribeWindowsNT();
    for (int target = 0; target < 3; ++target)
        DescribeUnit(Unit(0, 0, target, 0), "SEAGATE ST34520W", "DiskPeripheral");
    Start();
    Hardware hardware;
    hardware->EnumerateDevices();
    EXPECT_EQ(hardware->m_DeviceMap.GetCount(), 1);
    hardware->ClassifyDevices();
    EXPECT_STREQ(hardware->m_cDiskDevices, "3 SEAGATE ST34520W");
}

class CountedDevice : public CDeviceInformation {
  public:
    CountedDevice(const char* description, int& deleted) : m_deleted(deleted) { m_cDescription = description; }
    ~CountedDevice() override { ++m_deleted; }

  private:
    int& m_deleted;
};

TEST_F(DevicesTest, MapDeletesWhatItHoldsAtItsEndAndASecondDeviceOfADescriptionAtOnce) {
    Start();
    int deleted = 0;
    {
        CDeviceMap map;
        map.Add(std::make_unique<CountedDevice>("disk", deleted));
        map.Add(std::make_unique<CountedDevice>("tape", deleted));
        EXPECT_EQ(deleted, 0);
        map.Add(std::make_unique<CountedDevice>("disk", deleted));
        EXPECT_EQ(deleted, 1);
    }
    EXPECT_EQ(deleted, 3);
}

TEST_F(DevicesTest, ClassesAreComparedWholeAndWithoutRegardToCase) {
    DescribeWindowsNT();
    const struct {
        const char* type;
        const char* identifier;
    } units[] = {
        {"DiskPeripheral", "d1"},
        {"DISKDRIVE", "d2"},
        {"CdRomPeripheral", "c1"},
        {"CDROM", "c2"},
        {"TapePeripheral", "t1"},
        {"Disk Peripheral", "o1"},
        {"tape", "o2"},
        {"DiskPeripherals", "o3"},
        {"ScannerPeripheral", "o4"},
        {"", "o5"},
    };
    int target = 0;
    for (const auto& unit : units)
        DescribeUnit(Unit(0, 0, target++, 0), unit.identifier, unit.type);
    const Lists lists = Collect();
    EXPECT_EQ(lists.disks, "1 d1;1 d2");
    EXPECT_EQ(lists.cdRoms, "1 c1;1 c2");
    EXPECT_EQ(lists.tapes, "1 t1");
    EXPECT_EQ(lists.others, "1 o1;1 o2;1 o3;1 o4;1 o5");
}

TEST_F(DevicesTest, OnlyKeysThatBeginWithLogicalUnitIdAreUnits) {
    DescribeWindowsNT();
    const std::string target = "Scsi Port 0\\Scsi Bus 0\\Target Id 0\\";
    DescribeUnit(target + "LogicalUnit 0", "skipped", "DiskPeripheral");
    DescribeUnit(target + "logical unit id 1", "other case", "DiskPeripheral");
    DescribeUnit(target + "Logical Unit I", "cut", "DiskPeripheral");
    DescribeUnit(target + "Logical Unit Id 0", "read", "DiskPeripheral");
    DescribeUnit(target + "Logical Unit Id", "bare", "DiskPeripheral");
    DescribeUnit(target + "Logical Unit Identity", "longer", "DiskPeripheral");
    EXPECT_EQ(Collect().disks, "1 read;1 bare;1 longer");
}

TEST_F(DevicesTest, TreesWithMissingLevelsGiveNoDevicesAndDoNotEndTheWalk) {
    DescribeWindowsNT();
    CreateKey(std::string(kScsi) + "\\Scsi Port 0");
    CreateKey(std::string(kScsi) + "\\Scsi Port 1\\Scsi Bus 0");
    CreateKey(std::string(kScsi) + "\\Scsi Port 2\\Scsi Bus 0\\Target Id 0");
    DescribeUnit("Scsi Port 3\\Logical Unit Id 0", "one level down", "DiskPeripheral");
    DescribeUnit("Scsi Port 4\\Scsi Bus 0\\Logical Unit Id 0", "two levels down", "DiskPeripheral");
    DescribeUnit("Scsi Port 5\\Scsi Bus 0\\Target Id 0\\Logical Unit Id 0\\Logical Unit Id 0", "five levels down",
                 "DiskPeripheral");
    DescribeUnit(Unit(6, 0, 0, 0), "right", "DiskPeripheral");
    const Lists lists = Collect();
    EXPECT_EQ(lists.status, 0);
    EXPECT_EQ(lists.disks, "1 right");
    // The unit of port 5 is a key without any value.
    EXPECT_EQ(lists.others, "1 ");
}

TEST_F(DevicesTest, WithoutTheDeviceTreeTheStatusTellsSoAndAllListsAreEmpty) {
    for (const std::uint32_t platformId : {1u, 2u}) {
        DescribePlatform(platformId);
        const Lists lists = Collect();
        EXPECT_EQ(lists.status, -1);
        EXPECT_EQ(lists.disks + lists.cdRoms + lists.tapes + lists.others, "");
    }
}

TEST_F(DevicesTest, PortThatDoesNotOpenEndsTheWalk) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "a", "DiskPeripheral");
    DescribeUnit(Unit(1, 0, 0, 0), "b", "DiskPeripheral");
    DescribeUnit(Unit(2, 0, 0, 0), "c", "DiskPeripheral");
    Deny("Scsi Port 1");
    EXPECT_EQ(Collect().disks, "1 a");
}

TEST_F(DevicesTest, BusThatDoesNotOpenEndsItsPortsWalk) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "a", "DiskPeripheral");
    DescribeUnit(Unit(0, 1, 0, 0), "b", "DiskPeripheral");
    DescribeUnit(Unit(0, 2, 0, 0), "c", "DiskPeripheral");
    DescribeUnit(Unit(1, 0, 0, 0), "d", "DiskPeripheral");
    Deny("Scsi Port 0\\Scsi Bus 1");
    EXPECT_EQ(Collect().disks, "1 a;1 d");
}

TEST_F(DevicesTest, TargetThatDoesNotOpenEndsItsBussWalk) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "a", "DiskPeripheral");
    DescribeUnit(Unit(0, 0, 1, 0), "b", "DiskPeripheral");
    DescribeUnit(Unit(0, 0, 2, 0), "c", "DiskPeripheral");
    DescribeUnit(Unit(0, 1, 0, 0), "d", "DiskPeripheral");
    Deny("Scsi Port 0\\Scsi Bus 0\\Target Id 1");
    EXPECT_EQ(Collect().disks, "1 a;1 d");
}

TEST_F(DevicesTest, UnitThatDoesNotOpenIsPassedOver) {
    DescribeWindowsNT();
    for (int unit = 0; unit < 3; ++unit)
        DescribeUnit(Unit(0, 0, 0, unit), std::string(1, static_cast<char>('a' + unit)), "DiskPeripheral");
    Deny(Unit(0, 0, 0, 1));
    EXPECT_EQ(Collect().disks, "1 a;1 c");
}

TEST_F(DevicesTest, NamesOf255CharactersAreWalkedOnAllLevelsButTheBuses) {
    DescribeWindowsNT();
    const std::string name(255, 'n');
    const std::string unit = "Logical Unit Id " + std::string(239, '0');
    ASSERT_EQ(unit.size(), 255u);
    DescribeUnit(name + "\\Scsi Bus 0\\" + name + "\\" + unit, "read", "DiskPeripheral");
    DescribeUnit("Scsi Port 1\\" + name + "\\Target Id 0\\Logical Unit Id 0", "not read", "DiskPeripheral");
    DescribeUnit("Scsi Port 2\\" + std::string(254, 'n') + "\\Target Id 0\\Logical Unit Id 0", "read too",
                 "DiskPeripheral");
    EXPECT_EQ(Collect().disks, "1 read;1 read too");
}

TEST_F(DevicesTest, NameThatBeginsWithANulIsNoKeyAndEndsItsWalk) {
    DescribeWindowsNT();
    const std::string name("\0x", 2);
    DescribeUnit(Unit(0, 0, 0, 0), "a", "DiskPeripheral");
    DescribeUnit("Scsi Port 0\\Scsi Bus 0\\" + name + "\\Logical Unit Id 0", "no target", "DiskPeripheral");
    DescribeUnit("Scsi Port 0\\" + name + "\\Target Id 0\\Logical Unit Id 0", "no bus", "DiskPeripheral");
    DescribeUnit(Unit(1, 0, 0, 0), "b", "DiskPeripheral");
    DescribeUnit(name + "\\Scsi Bus 0\\Target Id 0\\Logical Unit Id 0", "no port", "DiskPeripheral");
    DescribeUnit(Unit(2, 0, 0, 0), "behind it", "DiskPeripheral");
    EXPECT_EQ(Collect().disks, "1 a;1 b");
}

TEST_F(DevicesTest, DevicesWithoutDescriptionAreCountedUnderOneEmptyEntry) {
    DescribeWindowsNT();
    CreateKey(std::string(kScsi) + "\\" + Unit(0, 0, 0, 0));
    CreateKey(std::string(kScsi) + "\\" + Unit(0, 0, 1, 0));
    DescribeUnit(Unit(0, 0, 2, 0), "", "DiskPeripheral");
    const Lists lists = Collect();
    EXPECT_EQ(lists.others, "3 ");
    EXPECT_EQ(lists.disks, "");
}

TEST_F(DevicesTest, DeviceWithoutClassIsAnOtherOne) {
    DescribeWindowsNT();
    SetText(std::string(kScsi) + "\\" + Unit(0, 0, 0, 0), "Identifier", "Scanner");
    EXPECT_EQ(Collect().others, "1 Scanner");
}

TEST_F(DevicesTest, FirstDeviceOfADescriptionDecidesItsClass) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "Generic", "CdRomPeripheral");
    DescribeUnit(Unit(0, 0, 1, 0), "Generic", "DiskPeripheral");
    const Lists lists = Collect();
    EXPECT_EQ(lists.cdRoms, "2 Generic");
    EXPECT_EQ(lists.disks, "");
}

TEST_F(DevicesTest, DescriptionsAreComparedExactlyAndListedInTheOrderInWhichTheyWereFound) {
    DescribeWindowsNT();
    const char* const identifiers[] = {"zeta", "alpha", "Zeta", "zeta ", "mid%dle", "alpha", "beta"};
    int target = 0;
    for (const char* identifier : identifiers)
        DescribeUnit(Unit(0, 0, target++, 0), identifier, "DiskPeripheral");
    EXPECT_EQ(Collect().disks, "1 zeta;2 alpha;1 Zeta;1 zeta ;1 mid%dle;1 beta");
}

TEST_F(DevicesTest, HundredsOfDevicesAreListed) {
    DescribeWindowsNT();
    std::string expected;
    for (int number = 0; number < 400; ++number) {
        const std::string identifier = "disk " + std::to_string(number);
        DescribeUnit(Unit(number / 64, number / 8 % 8, number % 8, 0), identifier, "DiskPeripheral");
        expected += (number == 0 ? "1 " : ";1 ") + identifier;
    }
    EXPECT_EQ(Collect().disks, expected);
}

TEST_F(DevicesTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), LongText(), LongText());
    EXPECT_EQ(Collect().others, "1 " + LongText());
    DescribeWindows98();
    DescribeInstance("A\\0000", LongText(), LongText());
    EXPECT_EQ(Collect().others, "1 " + LongText());
}

TEST_F(DevicesTest, Windows9xListsTheDevicesOfItsDriveEnumerator) {
    DescribeWindows98();
    DescribeInstance("GENERIC_IDE__DISK_TYPE47_\\MF&CHILD0000", "GENERIC IDE  DISK TYPE47", "DiskDrive");
    DescribeInstance("GENERIC_IDE__DISK_TYPE47_\\MF&CHILD0001", "GENERIC IDE  DISK TYPE47", "DiskDrive");
    DescribeInstance("SAMSUNG_CD-ROM\\MF&CHILD0100", "SAMSUNG CD-ROM SC-140", "CDROM");
    DescribeInstance("GENERIC_NEC__FLOPPY_DISK\\ROOT&*PNP0700&0", "GENERIC NEC  FLOPPY DISK", "DiskDrive");
    const Lists lists = Collect();
    EXPECT_EQ(lists.status, 0);
    EXPECT_EQ(lists.disks, "2 GENERIC IDE  DISK TYPE47;1 GENERIC NEC  FLOPPY DISK");
    EXPECT_EQ(lists.cdRoms, "1 SAMSUNG CD-ROM SC-140");
}

TEST_F(DevicesTest, KeysThatDoNotOpenOnWindows9xArePassedOver) {
    DescribeWindows98();
    DescribeInstance("A\\0000", "denied device", "DiskDrive");
    DenyKey(std::string(kEsdi) + "\\A");
    DescribeInstance("B\\0000", "denied instance", "DiskDrive");
    DenyKey(std::string(kEsdi) + "\\B\\0000");
    DescribeInstance("B\\0001", "behind them", "DiskDrive");
    CreateKey(std::string(kEsdi) + "\\C");
    DescribeInstance("D\\0000", "last", "DiskDrive");
    const Lists lists = Collect();
    EXPECT_EQ(lists.disks, "1 behind them;1 last");
    EXPECT_EQ(lists.others, "");
}

TEST_F(DevicesTest, InstanceWithoutDescriptionOrClassIsAnOtherDevice) {
    DescribeWindows98();
    CreateKey(std::string(kEsdi) + "\\A\\0000");
    SetText(std::string(kEsdi) + "\\B\\0000", "Class", "DiskDrive");
    SetText(std::string(kEsdi) + "\\C\\0000", "DeviceDesc", "Generic");
    EXPECT_EQ(Collect().others, "2 ;1 Generic");
}

TEST_F(DevicesTest, EachFamilyReadsItsOwnTreeOnly) {
    DescribeInstance("A\\0000", "of Windows 9x", "DiskDrive");
    DescribeUnit(Unit(0, 0, 0, 0), "of Windows NT", "DiskPeripheral");
    DescribeWindows98();
    EXPECT_EQ(Collect().disks, "1 of Windows 9x");
    DescribeWindowsNT();
    EXPECT_EQ(Collect().disks, "1 of Windows NT");
    DescribePlatform(3);
    const Lists lists = Collect();
    EXPECT_EQ(lists.status, 0);
    EXPECT_EQ(lists.disks, "");
}

TEST_F(DevicesTest, EachEnumerationStartsWithAnEmptyMapAndEachClassificationWithEmptyLists) {
    DescribeWindowsNT();
    DescribeUnit(Unit(0, 0, 0, 0), "disk", "DiskPeripheral");
    DescribeUnit(Unit(0, 0, 1, 0), "tape", "TapePeripheral");
    DescribeUnit(Unit(0, 0, 2, 0), "CD", "CdRomPeripheral");
    DescribeUnit(Unit(0, 0, 3, 0), "scanner", "ScannerPeripheral");
    Start();
    Hardware hardware;
    for (int run = 0; run < 2; ++run) {
        hardware->EnumerateDevices();
        hardware->ClassifyDevices();
    }
    EXPECT_STREQ(hardware->m_cDiskDevices, "1 disk");
    EXPECT_STREQ(hardware->m_cTapeDevices, "1 tape");
    EXPECT_STREQ(hardware->m_cCDRomDevices, "1 CD");
    EXPECT_STREQ(hardware->m_cOtherDevices, "1 scanner");

    hardware->m_DeviceMap.DeleteAll();
    hardware->ClassifyDevices();
    EXPECT_STREQ(hardware->m_cDiskDevices, "");
    EXPECT_STREQ(hardware->m_cTapeDevices, "");
    EXPECT_STREQ(hardware->m_cCDRomDevices, "");
    EXPECT_STREQ(hardware->m_cOtherDevices, "");
}

TEST_F(DevicesTest, MapStoresTheFirstOfADescriptionAndDiscardsTheOthers) {
    Start();
    CDeviceMap devices;
    EXPECT_EQ(devices.GetStartPosition(), nullptr);
    auto first = std::make_unique<CDeviceInformation>();
    first->m_cDescription = "disk";
    const CDeviceInformation* stored = first.get();
    EXPECT_EQ(devices.Add(std::move(first)), 0);
    EXPECT_EQ(stored->m_nCount, 1u);

    auto second = std::make_unique<CDeviceInformation>();
    second->m_cDescription = "disk";
    EXPECT_EQ(devices.Add(std::move(second)), 0);
    EXPECT_EQ(devices.GetCount(), 1);
    POSITION place = devices.GetStartPosition();
    EXPECT_EQ(&devices.GetNextDevice(place), stored);
    EXPECT_EQ(place, nullptr);
    EXPECT_EQ(stored->m_nCount, 2u);

    devices.DeleteAll();
    EXPECT_TRUE(devices.IsEmpty());
    EXPECT_EQ(devices.GetStartPosition(), nullptr);
}

TEST_F(DevicesTest, StatusOfReadingADeviceIsThatOfItsClass) {
    DescribeWindowsNT();
    SetText("A", "Identifier", "disk");
    SetText("B", "Type", "DiskPeripheral");
    Start();
    CStatGlobal global;
    for (const auto& [path, status] : {std::pair{"A", -1}, std::pair{"B", 0}}) {
        const HKEY key = global.OpenRegKey(HKEY_LOCAL_MACHINE, path);
        CDeviceInformation device;
        EXPECT_EQ(device.Read(key), status) << path;
        global.CloseRegKey(key);
    }
    station.version.reset();
    Start();
    CDeviceInformation device;
    EXPECT_EQ(device.Read(HKEY_LOCAL_MACHINE), 0);
    EXPECT_STREQ(device.GetClass(), "");
}

}  // namespace
