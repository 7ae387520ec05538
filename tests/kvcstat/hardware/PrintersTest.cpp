// Printers and the default one.
#include "kvcstat/hardware/PrinterInformation.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::kDevices;
using kvtest::kPrinters;
using kvtest::LongText;
using kvtest::Str;
using ::testing::ElementsAre;

constexpr char kWindowsKey[] = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
constexpr char kConfigKey[] = "HKEY_CURRENT_CONFIG\\System\\CurrentControlSet\\Control\\Print\\Printers";

std::vector<std::string> Describe(const CObList& printers) {
    std::vector<std::string> texts;
    for (POSITION place = printers.GetHeadPosition(); place != nullptr;) {
        const auto& printer = *static_cast<CPrinterInformation*>(printers.GetNext(place));
        texts.push_back(Str(printer.m_cName) + "|" + Str(printer.m_cPrinterDriver) + "|" + Str(printer.m_cPort));
    }
    return texts;
}

class PrintersTest : public kvtest::HardwareTest {
  protected:
    void DescribeDevice(const std::string& name) {
        station.registry.set(kDevices, simwin::textValue(name, "winspool,Ne00:"));
    }
    void DescribePrinter(const std::string& key, const char* description) {
        const std::string path = std::string(kPrinters) + "\\" + key;
        SetText(path, "Name", "name of " + key);
        SetText(path, "Printer Driver", "driver of " + key);
        SetText(path, "Port", "port of " + key);
        if (description != nullptr)
            SetText(path, "Description", description);
    }
    // The list that a collector gets, or "-1" when there is no printer.
    std::string Printers() {
        Start();
        Hardware hardware;
        return hardware->GetPrinters() == 0 ? Str(hardware->m_cPrinterList) : "-1" + Str(hardware->m_cPrinterList);
    }
    std::string DefaultPrinter(int status) {
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetDefaultPrinter(), status);
        return Str(hardware->m_cDefaultPrinter);
    }
};

TEST_F(PrintersTest, WindowsNTListsTheUsersDevicesByName) {
    DescribeWindowsNT();
    DescribeDevice("HP LaserJet 4");
    DescribeDevice("\\\\server\\Colour");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetPrinters(), 0);
    EXPECT_STREQ(hardware->m_cPrinterList, "HP LaserJet 4;\\\\server\\Colour");
    EXPECT_THAT(Describe(hardware->m_Printers), ElementsAre("HP LaserJet 4||", "\\\\server\\Colour||"));
}

TEST_F(PrintersTest, WindowsNTFiltersNoPrinterInASession) {
    DescribeWindowsNT();
    DescribeMetaFrameSession();
    DescribeDevice("Auto Created Client Printer");
    EXPECT_EQ(Printers(), "Auto Created Client Printer");
}

TEST_F(PrintersTest, EveryPlatformButWindows9xListsTheUsersDevices) {
    DescribeDevice("HP LaserJet 4");
    DescribePrinter("Local", nullptr);
    for (const std::uint32_t platformId : {0u, 2u, 3u}) {
        DescribePlatform(platformId);
        EXPECT_EQ(Printers(), "HP LaserJet 4");
    }
    station.version.reset();
    EXPECT_EQ(Printers(), "HP LaserJet 4");
}

TEST_F(PrintersTest, NameOf254CharactersIsListedAndALongerOneEndsTheList) {
    DescribeWindowsNT();
    DescribeDevice(std::string(254, 'p'));
    DescribeDevice(std::string(255, 'q'));
    DescribeDevice("behind it");
    EXPECT_EQ(Printers(), std::string(254, 'p'));
}

TEST_F(PrintersTest, Windows9xListsTheMachinesPrintersByKeyWithNameDriverAndPort) {
    DescribeWindows98();
    DescribePrinter("Deskjet", nullptr);
    CreateKey(std::string(kPrinters) + "\\Bare");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetPrinters(), 0);
    EXPECT_STREQ(hardware->m_cPrinterList, "Deskjet;Bare");
    EXPECT_THAT(Describe(hardware->m_Printers), ElementsAre("name of Deskjet|driver of Deskjet|port of Deskjet", "||"));
}

TEST_F(PrintersTest, Windows9xLeavesOutTheClientsOwnPrintersInASession) {
    DescribeWindows98();
    DescribeMetaFrameSession();
    DescribePrinter("A", "Auto Created Client Printer");
    DescribePrinter("B", "Laser of THIN07, Auto Created Client Printer, port LPT1");
    DescribePrinter("C", "auto created client printer");
    DescribePrinter("D", "Laser");
    EXPECT_EQ(Printers(), "C;D");
}

TEST_F(PrintersTest, Windows9xKeepsEveryPrinterOutsideASession) {
    DescribeWindows98();
    DescribePrinter("A", "Auto Created Client Printer");
    DescribePrinter("B", nullptr);
    EXPECT_EQ(Printers(), "A;B");
}

TEST_F(PrintersTest, PrinterWithoutADescriptionGoesByTheOneBeforeIt) {
    DescribeWindows98();
    DescribeMetaFrameSession();
    DescribePrinter("A", nullptr);
    DescribePrinter("B", "Auto Created Client Printer");
    DescribePrinter("C", nullptr);
    DescribePrinter("D", nullptr);
    DescribePrinter("E", "Laser");
    DescribePrinter("F", nullptr);
    DescribePrinter("G", "Auto Created Client Printer");
    DescribePrinter("H", "");
    EXPECT_EQ(Printers(), "A;E;F;H");
}

TEST_F(PrintersTest, SessionThatHasOnlyTheClientsPrintersHasNone) {
    DescribeWindows98();
    DescribeMetaFrameSession();
    DescribePrinter("A", "Auto Created Client Printer");
    EXPECT_EQ(Printers(), "-1");
}

TEST_F(PrintersTest, PrinterKeyThatDoesNotOpenEndsTheList) {
    DescribeWindows98();
    DescribePrinter("A", nullptr);
    DescribePrinter("B", nullptr);
    DescribePrinter("C", nullptr);
    DenyKey(std::string(kPrinters) + "\\B");
    EXPECT_EQ(Printers(), "A");
}

TEST_F(PrintersTest, WithoutPrintersTheTextStaysAsItWas) {
    for (const std::uint32_t platformId : {1u, 2u}) {
        DescribePlatform(platformId);
        Start();
        Hardware hardware;
        hardware->m_cPrinterList = "from before";
        EXPECT_EQ(hardware->GetPrinters(), -1);
        EXPECT_STREQ(hardware->m_cPrinterList, "from before");
        EXPECT_TRUE(hardware->m_Printers.IsEmpty());
    }
}

TEST_F(PrintersTest, SecondListReplacesTheObjectsAndAppendsToTheText) {
    DescribeWindowsNT();
    DescribeDevice("A");
    DescribeDevice("B");
    Start();
    Hardware hardware;
    hardware->GetPrinters();
    hardware->GetPrinters();
    EXPECT_EQ(hardware->m_Printers.GetCount(), 2);
    EXPECT_STREQ(hardware->m_cPrinterList, "A;B;A;B");
}

TEST_F(PrintersTest, SessionIsAskedForOnce) {
    for (const std::uint32_t platformId : {1u, 2u}) {
        DescribePlatform(platformId);
        DescribePrinter("A", nullptr);
        DescribePrinter("B", nullptr);
        Start().keepLog(true);
        Hardware hardware;
        hardware->GetPrinters();
        // MetaFrame, terminal server and WinFrame each ask for CLIENTNAME, which is not set.
        EXPECT_EQ(CountCalls("KVGetEnv"), 3u);
    }
}

TEST_F(PrintersTest, PlatformOfTheListIsTheOSCollectorsAndThatOfTheDefaultPrinterTheSystems) {
    DescribeWindowsNT();
    DescribePrinter("of Windows 9x", nullptr);
    DescribeDevice("of Windows NT");
    station.registry.set(kWindowsKey, simwin::textValue("device", "default of Windows NT"));
    station.registry.set(kConfigKey, simwin::textValue("default", "default of Windows 9x"));
    Start();
    Hardware hardware;
    hardware.os.m_dwPlatformId = 1;
    hardware->GetPrinters();
    EXPECT_STREQ(hardware->m_cPrinterList, "of Windows 9x");
    EXPECT_STREQ(hardware->m_cDefaultPrinter, "default of Windows NT");
}

TEST_F(PrintersTest, DefaultPrinterOfWindowsNTKeepsDriverAndPort) {
    DescribeWindowsNT();
    station.registry.set(kWindowsKey, simwin::textValue("device", "HP LaserJet 4,winspool,LPT1:"));
    EXPECT_EQ(DefaultPrinter(0), "HP LaserJet 4,winspool,LPT1:");
}

TEST_F(PrintersTest, DefaultPrinterOfWindows9xIsTheCurrentConfigurations) {
    DescribeWindows98();
    station.registry.set(kConfigKey, simwin::textValue("default", "Deskjet"));
    station.registry.set(kWindowsKey, simwin::textValue("device", "of Windows NT"));
    EXPECT_EQ(DefaultPrinter(0), "Deskjet");
}

TEST_F(PrintersTest, DefaultPrinterOfOtherPlatformsIsTheNameInTheProfile) {
    const struct {
        const char* value;
        const char* name;
        int status;
    } rows[] = {
        {"HP LaserJet,winspool,LPT1:", "HP LaserJet", 0},
        {"HP LaserJet", "HP LaserJet", 0},
        {"HP,", "HP", 0},
        {",winspool,LPT1:", "", 0},
        {",", "", 0},
        {"%s%d,winspool", "%s%d", 0},
        {"", "", -1},
    };
    for (const auto& row : rows) {
        station.profile = {{"windows", "device", row.value}};
        for (const std::uint32_t platformId : {0u, 3u}) {
            DescribePlatform(platformId);
            EXPECT_EQ(DefaultPrinter(row.status), row.name) << row.value;
        }
    }
    station.profile.clear();
    EXPECT_EQ(DefaultPrinter(-1), "");
}

TEST_F(PrintersTest, EntryOfTheProfileIsReadUpTo4095Characters) {
    DescribePlatform(3);
    for (const std::size_t length : {4095u, 4096u}) {
        station.profile = {{"windows", "device", std::string(length, 'p')}};
        EXPECT_EQ(DefaultPrinter(0), std::string(4095, 'p'));
    }
}

TEST_F(PrintersTest, MissingOrEmptyDefaultPrinterEmptiesTheMember) {
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribePlatform(platformId);
        for (const bool described : {false, true}) {
            station.registry = {};
            if (described) {
                station.registry.set(kWindowsKey, simwin::textValue("device", ""));
                station.registry.set(kConfigKey, simwin::textValue("default", ""));
            }
            Start();
            Hardware hardware;
            hardware->m_cDefaultPrinter = "from before";
            EXPECT_EQ(hardware->GetDefaultPrinter(), -1);
            EXPECT_STREQ(hardware->m_cDefaultPrinter, "");
        }
    }
}

TEST_F(PrintersTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindowsNT();
    station.registry.set(kWindowsKey, simwin::textValue("device", LongText()));
    EXPECT_EQ(DefaultPrinter(0), LongText());

    DescribeWindows98();
    DescribeMetaFrameSession();
    station.registry.set(kConfigKey, simwin::textValue("default", LongText()));
    EXPECT_EQ(DefaultPrinter(0), LongText());
    const std::string path = std::string(kPrinters) + "\\A";
    for (const char* value : {"Name", "Printer Driver", "Port"})
        SetText(path, value, LongText());
    SetText(path, "Description", LongText());
    DescribePrinter("B", (LongText() + "Auto Created Client Printer").c_str());
    Start();
    Hardware hardware;
    hardware->GetPrinters();
    EXPECT_THAT(Describe(hardware->m_Printers), ElementsAre(LongText() + "|" + LongText() + "|" + LongText()));
    EXPECT_STREQ(hardware->m_cPrinterList, "A");
}

TEST_F(PrintersTest, PrinterOfANameHasNothingElse) {
    Start();
    const CPrinterInformation printer("Laser");
    EXPECT_STREQ(printer.m_cName, "Laser");
    EXPECT_STREQ(printer.m_cPrinterDriver, "");
    EXPECT_STREQ(printer.m_cPort, "");
}

}  // namespace
