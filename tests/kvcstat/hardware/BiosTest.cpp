// BIOS and machine type.
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::kSystem;
using kvtest::LongText;
using kvtest::Str;

class BiosTest : public kvtest::HardwareTest {};

TEST_F(BiosTest, WindowsNTReadsTheSystemsDescription) {
    DescribeWindowsNT();
    SetText(kSystem, "Identifier", "AT/AT COMPATIBLE");
    SetText(kSystem, "SystemBiosDate", "04/23/99");
    SetText(kSystem, "SystemBiosVersion", "PhoenixBIOS 4.0");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), 0);
    EXPECT_STREQ(hardware->m_cMachineType, "AT/AT COMPATIBLE");
    EXPECT_STREQ(hardware->m_cBiosDate, "04/23/99");
    EXPECT_STREQ(hardware->m_cBiosVersion, "PhoenixBIOS 4.0");
    EXPECT_STREQ(hardware->m_cSystemIdentifier, "") << "the processor step's";
}

TEST_F(BiosTest, VersionOfSeveralLinesReadsAsTheLinesJoined) {
    DescribeWindowsNT();
    station.registry.set(MachinePath(kSystem),
                         simwin::multiTextValue("SystemBiosVersion", {"A M I  - 6000626", "BIOS Date: 06/26/06"}));
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), 0);
    EXPECT_STREQ(hardware->m_cBiosVersion, "A M I  - 6000626//BIOS Date: 06/26/06");
}

TEST_F(BiosTest, StatusOnWindowsNTIsThatOfTheVersionsRead) {
    DescribeWindowsNT();
    SetText(kSystem, "SystemBiosDate", "04/23/99");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), -1);
    EXPECT_STREQ(hardware->m_cBiosDate, "04/23/99");
}

TEST_F(BiosTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindowsNT();
    SetText(kSystem, "Identifier", LongText());
    SetText(kSystem, "SystemBiosDate", LongText());
    station.registry.set(MachinePath(kSystem), simwin::multiTextValue("SystemBiosVersion", {LongText(), LongText()}));
    Start();
    Hardware hardware;
    hardware->GetBios();
    EXPECT_EQ(Str(hardware->m_cMachineType), LongText());
    EXPECT_EQ(Str(hardware->m_cBiosDate), LongText());
    EXPECT_EQ(Str(hardware->m_cBiosVersion), LongText() + "//" + LongText());
}

TEST_F(BiosTest, Windows9xFindsTheBiosAmongTheRootDevices) {
    DescribeWindows98();
    SetText("Enum\\Root\\*PNP0303\\0000", "DeviceDesc", "Keyboard");
    SetText("Enum\\Root\\*PNP0C01\\0000", "BIOSVersion", "4.51 PG");
    SetText("Enum\\Root\\*PNP0C01\\0000", "BIOSDate", "07/15/98");
    SetText("Enum\\Root\\*PNP0C01\\0000", "MachineType", "IBM PC/AT");
    Start();
    Hardware hardware;
    hardware->m_cSystemIdentifier = "AT/AT COMPATIBLE";
    hardware->GetBios();
    EXPECT_STREQ(hardware->m_cBiosVersion, "4.51 PG");
    EXPECT_STREQ(hardware->m_cBiosDate, "07/15/98");
    EXPECT_STREQ(hardware->m_cMachineType, "IBM PC/AT");
    EXPECT_STREQ(hardware->m_cSystemIdentifier, "IBM PC/AT");
}

TEST_F(BiosTest, LaterMatchOverwritesWhatItHas) {
    DescribeWindows98();
    SetText("Enum\\Root\\A\\0000", "BIOSVersion", "first");
    SetText("Enum\\Root\\A\\0000", "BIOSDate", "01/01/97");
    SetText("Enum\\Root\\A\\0000", "MachineType", "machine");
    SetText("Enum\\Root\\B\\0000", "BIOSVersion", "second");
    SetText("Enum\\Root\\B\\0001", "BIOSVersion", "third");
    SetText("Enum\\Root\\B\\0001", "BIOSDate", "03/03/97");
    Start();
    Hardware hardware;
    hardware->GetBios();
    EXPECT_STREQ(hardware->m_cBiosVersion, "third");
    EXPECT_STREQ(hardware->m_cBiosDate, "03/03/97");
    EXPECT_STREQ(hardware->m_cMachineType, "machine");
}

TEST_F(BiosTest, DateAndMachineTypeWithoutAVersionDoNotCount) {
    DescribeWindows98();
    SetText("Enum\\Root\\A\\0000", "BIOSDate", "01/01/97");
    SetText("Enum\\Root\\A\\0000", "MachineType", "machine");
    Start();
    Hardware hardware;
    hardware->GetBios();
    EXPECT_STREQ(hardware->m_cBiosDate, "");
    EXPECT_STREQ(hardware->m_cMachineType, "");
    EXPECT_STREQ(hardware->m_cSystemIdentifier, "");
}

TEST_F(BiosTest, KeysThatDoNotOpenInTheMiddleOfTheWalkArePassedOver) {
    DescribeWindows98();
    SetText("Enum\\Root\\A\\0000", "BIOSVersion", "denied device");
    DenyKey("Enum\\Root\\A");
    SetText("Enum\\Root\\B\\0000", "BIOSVersion", "denied instance");
    DenyKey("Enum\\Root\\B\\0000");
    SetText("Enum\\Root\\B\\0001", "BIOSVersion", "behind them");
    CreateKey("Enum\\Root\\C");
    Start();
    Hardware hardware;
    hardware->GetBios();
    EXPECT_STREQ(hardware->m_cBiosVersion, "behind them");
}

TEST_F(BiosTest, Windows9xWithoutRootDevicesHasNoBios) {
    DescribeWindows98();
    SetText(kSystem, "SystemBiosVersion", "Windows NT only");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), -1);
    EXPECT_STREQ(hardware->m_cBiosVersion, "");
}

TEST_F(BiosTest, StatusOnWindows9xSaysWhetherThereAreRootDevices) {
    DescribeWindows98();
    CreateKey("Enum\\Root");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), 0);
}

TEST_F(BiosTest, OtherPlatformsReadNothing) {
    SetText(kSystem, "SystemBiosVersion", "4.0");
    SetText("Enum\\Root\\A\\0000", "BIOSVersion", "4.51");
    DescribePlatform(3);
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetBios(), 0);
    EXPECT_STREQ(hardware->m_cBiosVersion, "");
}

}  // namespace
