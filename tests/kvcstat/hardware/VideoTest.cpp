// Monitor and graphics adapter.
#include "kvcstat/hardware/VideoInformation.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::kSystem;
using kvtest::LongText;
using kvtest::Str;

constexpr char kMonitor9x[] = "Enum\\Monitor\\Default_Monitor\\0001";
constexpr char kDisplay[] = "System\\CurrentControlSet\\Enum\\Display";
constexpr char kDeviceMap[] = "HARDWARE\\DEVICEMAP\\VIDEO";
constexpr char kDriver[] = "System\\CurrentControlSet\\Services\\ati\\Device0";
constexpr char kNativeDriver[] = "\\REGISTRY\\Machine\\System\\CurrentControlSet\\Services\\ati\\Device0";

class VideoTest : public kvtest::HardwareTest {
  protected:
    void DescribeMonitor(const std::string& path, const std::string& description) {
        SetText(std::string(kDisplay) + "\\" + path, "DeviceDesc", description);
    }
    void DescribeDisplayDevice(const std::string& path, const std::string& deviceClass,
                               const std::string& description) {
        SetText("Enum\\" + path, "Class", deviceClass);
        SetText("Enum\\" + path, "DeviceDesc", description);
    }
    std::string Monitor(int status) {
        Start();
        CVideoInformation video;
        EXPECT_EQ(video.GetMonitor(), status);
        return Str(video.m_cMonitor);
    }
    std::string Adapter(int status) {
        Start();
        CVideoInformation video;
        EXPECT_EQ(video.GetVideoAdapter(), status);
        return Str(video.m_cVideoAdapter);
    }
};

TEST_F(VideoTest, MonitorOfWindows9xIsTheDefaultMonitorsDescription) {
    DescribeWindows98();
    EXPECT_EQ(Monitor(-1), "");
    SetText(kMonitor9x, "DeviceDesc", "Plug and Play Monitor");
    EXPECT_EQ(Monitor(0), "Plug and Play Monitor");
}

TEST_F(VideoTest, MonitorOfWindowsNTIsTheFirstInstanceOfTheFirstType) {
    DescribeWindowsNT();
    DescribeMonitor("Default_Monitor\\0000", "Default Monitor");
    DescribeMonitor("EIZ1234\\5&1a2b&0", "EIZO FlexScan");
    DescribeMonitor("EIZ1234\\5&1a2b&1", "second instance");
    DescribeMonitor("NEC4567\\5&3c4d&0", "second type");
    EXPECT_EQ(Monitor(-1), "EIZO FlexScan");
}

TEST_F(VideoTest, MonitorIsUnknownWhenThereIsOnlyTheDefaultOneOrNone) {
    DescribeWindowsNT();
    EXPECT_EQ(Monitor(-1), "unknown");
    DescribeMonitor("DEFAULT_MONITOR\\0000", "Default Monitor");
    EXPECT_EQ(Monitor(-1), "unknown");
    CreateKey(std::string(kDisplay) + "\\default_monitor2");
    DescribeMonitor("default_monitor2\\0000", "another name");
    EXPECT_EQ(Monitor(-1), "another name");
}

TEST_F(VideoTest, FirstTypeIsTakenEvenWhenNothingCanBeReadOfIt) {
    DescribeWindowsNT();
    CreateKey(std::string(kDisplay) + "\\A\\0000");
    DescribeMonitor("B\\0000", "never read");
    EXPECT_EQ(Monitor(-1), "unknown") << "no description";
    DenyKey(std::string(kDisplay) + "\\A\\0000");
    EXPECT_EQ(Monitor(-1), "unknown") << "the instance does not open";
    DenyKey(std::string(kDisplay) + "\\A");
    EXPECT_EQ(Monitor(-1), "unknown") << "the type does not open";
}

TEST_F(VideoTest, TypeWithoutAnInstanceIsUnknown) {
    DescribeWindowsNT();
    CreateKey(std::string(kDisplay) + "\\A");
    DescribeMonitor("B\\0000", "never read");
    EXPECT_EQ(Monitor(-1), "unknown");
}

TEST_F(VideoTest, MonitorKeepsUnknownWhenItsDescriptionFailsToBeRead) {
    DescribeWindowsNT();
    DescribeMonitor("A\\0000", "EIZO FlexScan");
    station.fails["RegQueryValueExA"] = 5;
    EXPECT_EQ(Monitor(-1), "unknown");
}

TEST_F(VideoTest, OtherPlatformsHaveNeitherMonitorNorAdapter) {
    DescribePlatform(3);
    SetText(kMonitor9x, "DeviceDesc", "monitor");
    DescribeDisplayDevice("PCI\\A\\0000", "Display", "adapter");
    SetText(kSystem, "VideoBiosVersion", "BIOS");
    EXPECT_EQ(Monitor(0), "");
    EXPECT_EQ(Adapter(-1), "");
}

TEST_F(VideoTest, AdapterOfWindowsNTIsItsDriversDescription) {
    DescribeWindowsNT();
    SetText(kDeviceMap, "\\Device\\Video0", kNativeDriver);
    SetText(kDriver, "Device Description", "ATI RAGE PRO");
    SetText(kSystem, "VideoBiosVersion", "BIOS");
    EXPECT_EQ(Adapter(-1), "ATI RAGE PRO");
}

TEST_F(VideoTest, BiosVersionComesBeforeTheAdaptersOwnTextWhichIsThenNotRead) {
    DescribeWindowsNT();
    SetText(kDeviceMap, "\\Device\\Video0", kNativeDriver);
    SetText(kDriver, "HardwareInformation.AdapterString", "ATI");
    station.registry.set(MachinePath(kSystem), simwin::multiTextValue("VideoBiosVersion", {"ATI", "VER 3.09"}));
    Start().keepLog(true);
    {
        CVideoInformation video;
        video.GetVideoAdapter();
        EXPECT_STREQ(video.m_cVideoAdapter, "ATI//VER 3.09");
    }
    for (const simwin::LoggedCall& call : machine->log())
        EXPECT_EQ(call.arguments.find("AdapterString"), std::string::npos) << call.name;
}

TEST_F(VideoTest, AdaptersOwnTextIsReadLast) {
    DescribeWindowsNT();
    SetText(kDeviceMap, "\\Device\\Video0", kNativeDriver);
    using namespace std::string_literals;
    station.registry.set(MachinePath(kDriver),
                         simwin::binaryValue("HardwareInformation.AdapterString", "A\0T\0I\0 \0R\0A\0G\0E\0\0\0"s));
    EXPECT_EQ(Adapter(-1), "ATI RAGE");
}

TEST_F(VideoTest, DeviceMapThatIsMissingOrNamesNoMachineKeyLeavesTheBiosVersion) {
    DescribeWindowsNT();
    SetText(kDriver, "Device Description", "ATI RAGE PRO");
    SetText(kDriver, "HardwareInformation.AdapterString", "ATI");
    const std::string paths[] = {
        "",
        "\\Registry\\Machine\\System\\CurrentControlSet\\Services\\ati\\Device0",
        "\\REGISTRY\\User\\ati",
        "System\\CurrentControlSet\\Services\\ati\\Device0",
        "\\\\REGISTRY\\Machine\\System",
        LongText(),
    };
    EXPECT_EQ(Adapter(-1), "");
    SetText(kSystem, "VideoBiosVersion", "BIOS");
    EXPECT_EQ(Adapter(-1), "BIOS");
    for (const std::string& path : paths) {
        SetText(kDeviceMap, "\\Device\\Video0", path);
        EXPECT_EQ(Adapter(-1), "BIOS") << path;
    }
}

TEST_F(VideoTest, WithoutBiosVersionAnUnmappedAdapterHasNoTextAtAll) {
    DescribeWindowsNT();
    SetText(kDeviceMap, "\\Device\\Video0", "\\Registry\\Machine\\" + std::string(kDriver));
    SetText(kDriver, "HardwareInformation.AdapterString", "ATI");
    EXPECT_EQ(Adapter(-1), "");
}

TEST_F(VideoTest, DriversKeyThatIsMissingLeavesTheBiosVersion) {
    DescribeWindowsNT();
    SetText(kDeviceMap, "\\Device\\Video0", kNativeDriver);
    EXPECT_EQ(Adapter(-1), "");
    SetText(kSystem, "VideoBiosVersion", "BIOS");
    EXPECT_EQ(Adapter(-1), "BIOS");
}

TEST_F(VideoTest, StatusOnWindowsNTIsThatOfTheBiosDate) {
    DescribeWindowsNT();
    SetText(kSystem, "VideoBiosDate", "10/14/98");
    Start();
    CVideoInformation video;
    EXPECT_EQ(video.GetVideoInformation(), 0);
    EXPECT_STREQ(video.m_cVideoBiosDate, "10/14/98");
    EXPECT_STREQ(video.m_cVideoAdapter, "");
    EXPECT_STREQ(video.m_cMonitor, "unknown");
}

TEST_F(VideoTest, AdaptersOfWindows9xAreAllDisplayDevicesOnThePCIBus) {
    DescribeWindows98();
    DescribeDisplayDevice("PCI\\VEN_1002\\A", "DISPLAY", "ATI RAGE PRO");
    DescribeDisplayDevice("PCI\\VEN_1002\\B", "Display", "ATI RAGE 128");
    DescribeDisplayDevice("PCI\\VEN_8086\\A", "System", "PCI bridge");
    DescribeDisplayDevice("PCI\\VEN_102B\\A", "display", "Matrox");
    DescribeDisplayDevice("Root\\A\\0000", "Display", "not searched");
    EXPECT_EQ(Adapter(0), "ATI RAGE PRO;ATI RAGE 128;Matrox");
}

TEST_F(VideoTest, RootDevicesAreSearchedWhenThePCIBusHasNoDisplay) {
    DescribeWindows98();
    DescribeDisplayDevice("Root\\A\\0000", "Display", "Standard VGA");
    EXPECT_EQ(Adapter(0), "Standard VGA") << "no PCI bus";
    DescribeDisplayDevice("PCI\\VEN_8086\\A", "System", "PCI bridge");
    EXPECT_EQ(Adapter(0), "Standard VGA") << "no display on it";
}

TEST_F(VideoTest, OnlyTheLastDescriptionsReadDecidesWhetherRootDevicesAreSearched) {
    DescribeWindows98();
    DescribeDisplayDevice("PCI\\A\\0000", "Display", "ATI");
    SetText("Enum\\PCI\\B\\0000", "Class", "Display");
    DescribeDisplayDevice("Root\\A\\0000", "Display", "Standard VGA");
    EXPECT_EQ(Adapter(0), "ATI;Standard VGA");
    DescribeDisplayDevice("PCI\\C\\0000", "Display", "Matrox");
    EXPECT_EQ(Adapter(0), "ATI;Matrox");
}

TEST_F(VideoTest, DisplayWithoutDescriptionIsNoAdapterAndNeitherIsAnEmptyStation) {
    DescribeWindows98();
    EXPECT_EQ(Adapter(-1), "");
    SetText("Enum\\PCI\\A\\0000", "Class", "Display");
    SetText("Enum\\Root\\A\\0000", "Class", "Display");
    EXPECT_EQ(Adapter(-1), "");
}

TEST_F(VideoTest, ClassIsComparedWhole) {
    DescribeWindows98();
    DescribeDisplayDevice("PCI\\A\\0000", "Displays", "a");
    DescribeDisplayDevice("PCI\\B\\0000", "", "b");
    SetText("Enum\\PCI\\C\\0000", "DeviceDesc", "c");
    EXPECT_EQ(Adapter(-1), "");
}

TEST_F(VideoTest, KeysThatDoNotOpenInTheMiddleOfTheWalkArePassedOver) {
    DescribeWindows98();
    DescribeDisplayDevice("PCI\\A\\0000", "Display", "denied device");
    DenyKey("Enum\\PCI\\A");
    DescribeDisplayDevice("PCI\\B\\0000", "Display", "denied instance");
    DenyKey("Enum\\PCI\\B\\0000");
    CreateKey("Enum\\PCI\\C");
    DescribeDisplayDevice("PCI\\D\\0000", "Display", "behind them");
    EXPECT_EQ(Adapter(0), "behind them");
}

TEST_F(VideoTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindows98();
    SetText(kMonitor9x, "DeviceDesc", LongText());
    EXPECT_EQ(Monitor(0), LongText());
    DescribeDisplayDevice("PCI\\A\\0000", LongText(), "no display");
    DescribeDisplayDevice("PCI\\B\\0000", "Display", LongText());
    DescribeDisplayDevice("PCI\\C\\0000", "Display", LongText());
    EXPECT_EQ(Adapter(0), LongText() + ";" + LongText());

    DescribeWindowsNT();
    DescribeMonitor("A\\0000", LongText());
    EXPECT_EQ(Monitor(-1), LongText());
    SetText(kSystem, "VideoBiosVersion", LongText());
    SetText(kSystem, "VideoBiosDate", LongText());
    EXPECT_EQ(Adapter(0), LongText());
    SetText(kDeviceMap, "\\Device\\Video0", kNativeDriver);
    SetText(kDriver, "Device Description", LongText() + "y");
    EXPECT_EQ(Adapter(0), LongText() + "y");
}

TEST_F(VideoTest, MonitorIsReadBeforeTheAdapterAndTheStatusIsTheAdapters) {
    DescribeWindows98();
    SetText(kMonitor9x, "DeviceDesc", "monitor");
    Start();
    {
        CVideoInformation video;
        EXPECT_EQ(video.GetVideoInformation(), -1);
        EXPECT_STREQ(video.m_cMonitor, "monitor");
    }
    DescribeDisplayDevice("PCI\\A\\0000", "Display", "ATI");
    Start();
    CVideoInformation video;
    EXPECT_EQ(video.GetVideoInformation(), 0);
    EXPECT_STREQ(video.m_cVideoAdapter, "ATI");
}

}  // namespace
