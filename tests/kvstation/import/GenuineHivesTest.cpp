// Hives of real machines, which are no part of the project: each station's fields are what the hives hold. What is
// expected was read out of them by hand with hivexsh, and with cregexport for Windows Me.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "../RunningProgram.h"
#include "../TemporaryFolder.h"
#include "kvstation/import/HiveImport.h"
#include "kvstation/platform/Files.h"
#include "kvstation/record/FieldTable.h"
#include "tests/kvstation/hives/Keys.h"

namespace kvstation {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

using Fields = std::map<std::string, std::string>;

class GenuineHives : public testing::Test {
  protected:
    // Skips the test where the set is not there.
    void unpack(const std::string& set) {
        const std::filesystem::path place = std::filesystem::path(KV_HIVES) / set;
        if (!std::filesystem::is_directory(place))
            GTEST_SKIP() << "the hives of " << set << " are not beside the project";
        for (const auto& entry : std::filesystem::directory_iterator(place)) {
            const ProgramRun unpacked = runProgram({"/usr/bin/xz", "-dkc", entry.path().string()});
            ASSERT_EQ(unpacked.status, 0) << unpacked.errors;
            writeFile(folder / entry.path().stem().string(), unpacked.output);
        }
    }

    void import(const std::string& version = "") {
        HiveRegistry registry(findHives(folder / "", ""));
        WhatIf whatIf;
        whatIf.version = version;
        imported = importStation(registry, whatIf, Reach::AllBranches);
        const Record record(imported.record);
        for (const Field& field : fields())
            if (const std::string text = record.textOf(findField(field.name)); !text.empty() && text != "0")
                found[std::string(field.name)] = text;
    }

    // Each empty field is named as unknown by the entry of the list, or is one of those of which the hives hold
    // nothing.
    void expectEmpty(const Fields& unknown, const std::set<std::string>& heldEmpty) const {
        std::set<std::string> expected = heldEmpty;
        for (const auto& [field, entry] : unknown) {
            expected.insert(field);
            EXPECT_THAT(imported.station.unknown, testing::Contains(entry)) << field;
        }
        std::set<std::string> empty;
        for (const Field& field : fields())
            if (!found.contains(std::string(field.name)))
                empty.insert(std::string(field.name));
        EXPECT_EQ(empty, expected);
    }
    // The same of a Windows NT whose SOFTWARE is not there, where no interface below Tcpip\Parameters has a mask other
    // than 0.0.0.0 or a gateway.
    void expectEmptyWithoutSoftware(const Fields& unknown) const;

    TemporaryFolder folder;
    ImportedStation imported;
    Fields found;
};

bool isListed(const simwin::Station& station, const std::string& name) {
    return std::ranges::find(station.unknown, name) != station.unknown.end();
}

// Of a disk nobody knows these, whatever it holds.
void expectUnknownSession(const simwin::Station& station) {
    for (const char* name : {"drives", "memory", "keyboard", "user.name", "network.hosts", "environment.CLIENTNAME"})
        EXPECT_TRUE(isListed(station, name)) << name;
    EXPECT_TRUE(
        std::ranges::any_of(station.unknown, [](const std::string& one) { return one.starts_with("session"); }));
}

const std::string kHardware = "HKEY_LOCAL_MACHINE\\HARDWARE";
const std::string kSoftwareKey = "HKEY_LOCAL_MACHINE\\SOFTWARE";
const std::string kUser = "HKEY_CURRENT_USER";

// Empty fields, each with the entry that names its source as unknown.
const Fields kUnknownOfAnyDisk = {{"szUserDisplayedName", "user.displayName"},
                                  {"dwKeyboardType", "keyboard"},
                                  {"dwTotalMemoryMB", "memory"},
                                  {"szCDRomDrives", "drives"},
                                  {"szRemovableDrives", "drives"},
                                  {"szFixedDrives", "drives"},
                                  {"szWorkgroup", "network.lanGroup"},
                                  {"szIPAddress", "network.hosts"},
                                  {"szTSProduct", "environment.CLIENTNAME"},
                                  {"szTSVersion", "environment.CLIENTNAME"},
                                  {"szTSClientName", "environment.CLIENTNAME"},
                                  {"szServerName", "environment.CLIENTNAME"},
                                  {"szServerIPAddress", "environment.CLIENTNAME"},
                                  {"szServerMACAddress", "environment.CLIENTNAME"},
                                  {"dwWinFrame", "environment.CLIENTNAME"},
                                  {"dwMetaFrame", "environment.CLIENTNAME"},
                                  {"dwTSClientSession", "environment.CLIENTNAME"},
                                  {"szDefaultDomainName", "environment.CLIENTNAME"},
                                  {"dwTSDefaultSrvSessions", "environment.KVTSDefaultSrvSessions"},
                                  {"szWinUser", "user.samCompatible"},
                                  {"dwCurrentMhz", "processors.currentMhz"},
                                  {"szVCDVersion", "vcdVersion"}};
const Fields kUnknownOfWindowsNT = {
    {"szSystemIdentifier", kHardware}, {"szDiskDevices", kHardware},  {"szCDRomDevices", kHardware},
    {"szTapeDevices", kHardware},      {"szOtherDevices", kHardware}, {"szBiosVersion", kHardware},
    {"szBiosDate", kHardware},         {"szVideoAdapter", kHardware}, {"szPrinters", kUser},
    {"szDefaultPrinter", kUser},       {"dwSessionId", "process"}};
const Fields kUnknownWithoutSoftware = {{"szKeyboard", "keyboard"},
                                        {"bInternetExplorer", kSoftwareKey},
                                        {"bNetscape", kSoftwareKey},
                                        {"szMailClient", kSoftwareKey},
                                        {"szBrowser", kSoftwareKey},
                                        {"szDefaultBrowser", kSoftwareKey},
                                        {"szNetworkAdapters", kSoftwareKey},
                                        {"bOutlook", kSoftwareKey},
                                        {"bExchange", kSoftwareKey},
                                        {"szICAClient", kSoftwareKey},
                                        {"szRDPClient", "environment.systemRoot"}};

Fields together(std::initializer_list<Fields> all) {
    Fields fields;
    for (const Fields& one : all)
        fields.insert(one.begin(), one.end());
    return fields;
}

void GenuineHives::expectEmptyWithoutSoftware(const Fields& unknown) const {
    expectEmpty(together({kUnknownOfAnyDisk, kUnknownOfWindowsNT, kUnknownWithoutSoftware, unknown}),
                {"szNetworkDrivers", "szDefaultGateway", "szSubnetMask"});
}

TEST_F(GenuineHives, OfWindowsNT4) {
    unpack("nt4");
    if (IsSkipped())
        return;
    import();
    EXPECT_THAT(found,
                testing::UnorderedElementsAreArray(Fields{{"szStation", "SERVER"},
                                                          {"szClientName", "SERVER"},
                                                          {"szUserName", "UNKNOWN"},
                                                          {"szCurrentUser", "unknown"},
                                                          {"szMACAddress", "unknown"},
                                                          {"szMonitor", "unknown"},
                                                          {"szDnsName", "server"},
                                                          {"szOS", "Windows NT 4.0 (Build 1381) Service Pack 3"},
                                                          {"dwOEMCodePage", "437"},
                                                          {"dwNumberOfProcessors", "1"},
                                                          {"szProcessorName", "Intel processor"},
                                                          {"szKeyboard", "PC/AT Enhanced Keyboard (101/102-Key)"},
                                                          {"szNetworkAdapters", "AMD PCNET PCI Ethernet Adapter"},
                                                          {"szProviders", "Microsoft Windows Network"},
                                                          {"szDefaultBrowser", "Microsoft Internet Explorer"}}));
    EXPECT_THAT(imported.warnings, IsEmpty());
    for (const std::string name : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE\\HARDWARE"})
        EXPECT_TRUE(isListed(imported.station, name)) << name;
    expectUnknownSession(imported.station);
    // SOFTWARE has neither Clients nor browsers of others, of the Internet Explorer no more than its value IVer, and no
    // file type .ica; the adapter AMDPCN1 has an empty gateway and the mask 0.0.0.0.
    expectEmpty(together({kUnknownOfAnyDisk,
                          kUnknownOfWindowsNT,
                          {{"szProtocols", kSet + "Services\\NetBT\\Enum"}, {"szRDPClient", "files"}}}),
                {"szNetworkDrivers", "szDefaultGateway", "szSubnetMask", "bInternetExplorer", "bNetscape", "szBrowser",
                 "szMailClient", "bOutlook", "bExchange", "szICAClient"});
    // The processor itself says AuthenticAMD, and level 7.
    EXPECT_EQ(imported.station.processors->level, 7);
    EXPECT_EQ(imported.station.processors->revision, 0x0100);
}

TEST_F(GenuineHives, OfWindowsMe) {
    unpack("winme");
    if (IsSkipped())
        return;
    import();
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(
                           Fields{{"szStation", "TREVOR-PC"},
                                  {"szClientName", "TREVOR-PC"},
                                  {"szUserName", "UNKNOWN"},
                                  {"szCurrentUser", "unknown"},
                                  {"szMACAddress", "unknown"},
                                  {"szOS", "Windows  98  "},  // 4.90 with the sub-version " "
                                  {"dwOEMCodePage", "437"},
                                  {"szSystemIdentifier", "IBM PC/AT"},
                                  {"szBiosDate", "06/23/99"},
                                  {"szKeyboard", "Standard 101/102-Key or Microsoft Natural Keyboard"},
                                  {"szMonitor", "Default Monitor"},
                                  {"szVideoAdapter", "VBE Miniport - Standard PCI Graphics Adapter (VGA)"},
                                  {"szDiskDevices", "1 GENERIC IDE  DISK TYPE47"},
                                  {"szNetworkAdapters", "Dial-Up Adapter"},  // the card lies on the PCI bus
                                  {"szNetworkDrivers", "Dial-Up Adapter"},
                                  {"szProtocols", "TCP/IP;TCP/IP"},
                                  {"szProviders", "Microsoft Network"},
                                  {"szMailClient", "Hotmail;Outlook Express"},
                                  {"bOutlook", "1"},
                                  {"bInternetExplorer", "1"},
                                  {"szBrowser", "Internet Explorer 5.50.4134.0100 "}}));
    EXPECT_THAT(imported.warnings, IsEmpty());
    EXPECT_FALSE(isListed(imported.station, "HKEY_CURRENT_USER"));
    EXPECT_TRUE(isListed(imported.station, "network.hostName"));
    EXPECT_TRUE(isListed(imported.station, "processors"));
    expectUnknownSession(imported.station);
    // CLASSES.DAT is not there. Enum\\ESDI has one disk, Clients\\Mail no Exchange, PNP0C01 an empty BIOSVersion; there
    // are no printers, no Netscape, no gateway, and masks of 0.0.0.0 alone. Sessions came with Windows NT.
    expectEmpty(together({kUnknownOfAnyDisk,
                          {{"szDefaultBrowser", kSoftwareKey + "\\Classes"},
                           {"szICAClient", kSoftwareKey + "\\Classes"},
                           {"szDnsName", "network.hostName"},
                           {"szProcessorName", "processors"},
                           {"dwNumberOfProcessors", "processors"},
                           {"szRDPClient", "environment.systemRoot"}}}),
                {"szCDRomDevices", "szTapeDevices", "szOtherDevices", "szPrinters", "szDefaultPrinter", "bNetscape",
                 "bExchange", "szDefaultGateway", "szSubnetMask", "szBiosVersion", "dwSessionId"});
}

// SYSTEM alone, in the midst of a write whose log is not there. The version is what else was known of the machine.
TEST_F(GenuineHives, OfWindows81InTheMidstOfAWrite) {
    unpack("win81");
    if (IsSkipped())
        return;
    import("6.3.9600");
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(
                           Fields{{"szStation", "SENSEI"},
                                  {"szClientName", "SENSEI"},
                                  {"szUserName", "UNKNOWN"},
                                  {"szCurrentUser", "unknown"},
                                  {"szMACAddress", "unknown"},
                                  {"szMonitor", "unknown"},
                                  {"szDnsName", "sensei"},
                                  {"szOS", "Windows NT 6.3 (Build 9600)"},
                                  {"dwOEMCodePage", "437"},
                                  {"dwNumberOfProcessors", "1"},
                                  {"szProcessorName", "Unknown processor"},
                                  {"szProviders",
                                   "VirtualBox Shared Folders;Microsoft Terminal Services;Microsoft Windows "
                                   "Network;Web Client Network"}}));
    EXPECT_THAT(imported.warnings,
                ElementsAre(EndsWith("SYSTEM was not written to its end; what Windows kept in the log beside it is "
                                     "missing")));
    for (const std::string name : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE\\SOFTWARE"})
        EXPECT_TRUE(isListed(imported.station, name)) << name;
    expectUnknownSession(imported.station);
    expectEmptyWithoutSoftware({{"szProtocols", kSet + "Services\\NetBT\\Enum"}});
}

TEST_F(GenuineHives, OfWindows81WithoutItsVersionSayThatItIsUnknown) {
    unpack("win81");
    if (IsSkipped())
        return;
    import();
    EXPECT_TRUE(isListed(imported.station, "version"));
    EXPECT_FALSE(imported.station.version);
}

TEST_F(GenuineHives, OfWindows10AreFinishedFromTheirLogs) {
    unpack("win10");
    if (IsSkipped())
        return;
    const std::string before = readFile(folder / "SYSTEM", 1 << 24);
    import("10.0.16299");
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(Fields{
                           {"szStation", "DESKTOP-PM6C56D"},
                           {"szClientName", "DESKTOP-PM6C56D"},
                           {"szUserName", "UNKNOWN"},
                           {"szCurrentUser", "unknown"},
                           {"szMACAddress", "unknown"},
                           {"szDnsName", "DESKTOP-PM6C56D"},
                           {"szOS", "Windows NT 10.0 (Build 16299)"},
                           {"dwOEMCodePage", "437"},
                           {"dwNumberOfProcessors", "4"},
                           {"szProcessorName", "Unknown processor"},
                           {"szMonitor", "@monitor.inf,%pnpmonitor.devicedesc%;Generic PnP M"},  // cut to its width
                           {"szProviders",
                            "Microsoft Terminal Services;Microsoft Windows Network;Web Client "
                            "Network"}}));
    EXPECT_THAT(imported.warnings,
                ElementsAre(EndsWith("SYSTEM was not written to its end; applied in memory: entries 2107 to 2110 of "
                                     "SYSTEM.LOG1, entries 2111 to 2130 of SYSTEM.LOG2")));
    EXPECT_EQ(readFile(folder / "SYSTEM", 1 << 24), before);
    expectUnknownSession(imported.station);
    expectEmptyWithoutSoftware({{"szProtocols", kSet + "Services\\NetBT\\Enum"}});
}

// Of 53 keys of Control 43 can be read, of 258 services 198, and of NetworkProvider\Order no value.
TEST_F(GenuineHives, OfADamagedWindowsXPAreReadAsFarAsTheyCanBe) {
    unpack("damaged-xp");
    if (IsSkipped())
        return;
    import("5.1.2600");
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(Fields{{"szStation", "GINEVRA"},
                                                                 {"szClientName", "GINEVRA"},
                                                                 {"szUserName", "UNKNOWN"},
                                                                 {"szCurrentUser", "unknown"},
                                                                 {"szMACAddress", "unknown"},
                                                                 {"szMonitor", "unknown"},
                                                                 {"szDnsName", "ginevra"},
                                                                 {"szOS", "Windows NT 5.1 (Build 2600)"},
                                                                 {"dwOEMCodePage", "437"},
                                                                 {"dwNumberOfProcessors", "1"},
                                                                 {"szProcessorName", "Intel processor"}}));
    for (const std::string& name : {kSet + "Control\\NetworkProvider\\Order", kSet + "Control\\Citrix",
                                    kSet + "Control\\Terminal Server", kSet + "Services\\class"})
        EXPECT_TRUE(isListed(imported.station, name)) << name;
    // These are among the keys that can be read.
    for (const std::string& name : {kSet + "Control\\ComputerName", kSet + "Services\\Tcpip", kSet + "Enum\\Display"})
        EXPECT_FALSE(isListed(imported.station, name)) << name;
    expectUnknownSession(imported.station);
    expectEmptyWithoutSoftware({{"szProtocols", kSet + "Control\\NetworkProvider\\Order"},
                                {"szProviders", kSet + "Control\\NetworkProvider\\Order"}});
}

}  // namespace
}  // namespace kvstation
