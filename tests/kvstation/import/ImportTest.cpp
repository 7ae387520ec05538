// The Windows on a disk as a described station.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "kvstation/capture/StationFolder.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/import/HiveImport.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/RunningProgram.h"
#include "tests/kvstation/TemporaryFolder.h"
#include "tests/kvstation/hives/HiveWriter.h"
#include "tests/kvstation/hives/Keys.h"
#include "tests/stations/ExpectedStation.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::textValue;
using testing::HasSubstr;
using testing::Not;

const std::string kSoftware = "HKEY_LOCAL_MACHINE\\SOFTWARE\\";
const std::string kUserVersion = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion";

void addSystem(RegistryTree& tree) {
    tree.set(kSet + "Control\\ComputerName\\ComputerName", textValue("ComputerName", "Lager-04"));
    tree.set(kSet + "Control\\Nls\\CodePage", textValue("ACP", "1252"));
    tree.set(kSet + "Control\\Nls\\CodePage", textValue("OEMCP", "850"));
    tree.set(kSet + "Control\\NetworkProvider\\Order", textValue("ProviderOrder", "RDPNP,LanmanWorkstation"));
    tree.set(kEnvironment, textValue("PROCESSOR_ARCHITECTURE", "AMD64"));
    tree.set(kEnvironment, textValue("NUMBER_OF_PROCESSORS", "4"));
    tree.set(kEnvironment, textValue("PROCESSOR_LEVEL", "6"));
    tree.set(kEnvironment, textValue("PROCESSOR_REVISION", "3a09"));
    tree.set(kEnvironment, textValue("KVStationType", "1"));
    tree.set(kEnvironment, textValue("TEMP", "C:\\Temp"));
    tree.set(kSet + "Services\\Tcpip\\Parameters", textValue("Hostname", "lager-04"));
    tree.set(kSet + "Services\\RDPNP\\NetworkProvider", textValue("Name", "Microsoft Terminal Services"));
    tree.set(kSet + "Services\\LanmanWorkstation\\NetworkProvider", textValue("Name", "Microsoft Windows Network"));
    tree.set(kSet + "Services\\LanmanWorkstation\\Linkage",
             simwin::multiTextValue("Bind", {"\\Device\\NetBT_Tcpip_{1}"}));
    tree.create(kSet + "Services\\NetBT\\Adapters\\NIC1");
    tree.set(kSet + "Services\\NIC1\\Parameters\\Tcpip", simwin::multiTextValue("IPAddress", {"192.168.7.20"}));
    tree.set(kSet + "Services\\NIC1\\Parameters\\Tcpip", simwin::multiTextValue("SubNetMask", {"255.255.255.0"}));
    tree.set(kSet + "Services\\NIC1\\Parameters\\Tcpip", simwin::multiTextValue("DefaultGateway", {"192.168.7.1"}));
    tree.set(kSet + "Control\\IDConfigDB", simwin::dwordValue("CurrentConfig", 1));
    tree.create(kSet + "Hardware Profiles\\0001\\System");
    tree.set(kSet + "Enum\\Display\\Default_Monitor\\1", textValue("DeviceDesc", "Standard"));
    tree.set(kSet + "Enum\\Display\\DEL4001\\5&1", textValue("DeviceDesc", "Dell P2419H"));
}

void addSoftware(RegistryTree& tree) {
    tree.set(kVersion, textValue("CurrentVersion", "6.1"));
    tree.set(kVersion, textValue("CurrentBuildNumber", "7601"));
    tree.set(kVersion, textValue("CSDVersion", "Service Pack 1"));
    tree.set(kVersion, textValue("SystemRoot", "C:\\Windows"));
    tree.set(kVersion + "\\NetworkCards\\2", textValue("Description", "Intel 82579LM"));
    tree.set(kVersion + "\\NetworkCards\\9", textValue("Description", "Intel 82574L"));
    tree.create(kSoftware + "Clients\\Mail\\Microsoft Outlook");
    tree.create(kSoftware + "Clients\\Mail\\Windows Mail");
    tree.set(kSoftware + "Classes\\.html", textValue("", "FirefoxHTML"));
    tree.set(kSoftware + "Classes\\FirefoxHTML\\shell\\open\\command", textValue("", "C:\\Firefox\\FIREFOX.EXE %1"));
    tree.set(kSoftware + "Mozilla\\Mozilla Firefox", textValue("CurrentVersion", "78.9.0"));
    tree.set(kSoftware + "Unasked", textValue("Secret", "secret"));
}

RegistryTree warehouse() {
    RegistryTree tree;
    addSystem(tree);
    addSoftware(tree);
    tree.set("HKEY_CURRENT_USER\\Environment", textValue("KVUser", "lager"));
    tree.set(kUserVersion + "\\Devices", textValue("B\xFCrodrucker", "winspool,Ne00:"));
    tree.set(kUserVersion + "\\Devices", textValue("Etiketten", "winspool,Ne01:"));
    tree.set(kUserVersion + "\\Windows", textValue("Device", "B\xFCrodrucker,winspool,Ne00:"));
    return tree;
}

class Import : public testing::Test {
  protected:
    Import() {
        std::filesystem::create_directory(hives);
        writeHives(hives, warehouse());
    }
    ProgramRun run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {KVSTATION_PROGRAM, "import"});
        return runProgram(arguments);
    }
    void expectRefusal(const std::string& line) {
        const ProgramRun refused = run({hives, station});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.output, "");
        EXPECT_EQ(refused.errors, "kvstation: " + line + "\n");
        EXPECT_FALSE(std::filesystem::exists(station));
    }
    std::string field(const std::string& name) {
        const ProgramRun shown = runProgram({KVSTATION_PROGRAM, "simulate", station, "--field", name});
        EXPECT_EQ(shown.status, 0) << shown.errors;
        return shown.output.substr(0, shown.output.size() - 1);
    }

    TemporaryFolder folder;
    const std::string hives = folder / "hives";
    const std::string station = folder / "station";
};

TEST_F(Import, MakesAStationThatIsSimulatedAsTheHivesTell) {
    const ProgramRun imported = run({hives, station});
    EXPECT_EQ(imported.output, station + "\n");
    ASSERT_EQ(imported.status, 0) << imported.errors;

    EXPECT_EQ(field("szStation"), "LAGER-04");
    EXPECT_EQ(field("szClientName"), "LAGER-04");
    EXPECT_EQ(field("szDnsName"), "lager-04");
    EXPECT_EQ(field("szIPAddress"), "");
    EXPECT_EQ(field("szMACAddress"), "unknown");
    EXPECT_EQ(field("szUserName"), "lager");
    EXPECT_EQ(field("szCurrentUser"), "unknown");
    EXPECT_EQ(field("szOS"), "Windows NT 6.1 (Build 7601) Service Pack 1");
    EXPECT_EQ(field("dwOEMCodePage"), "850");
    EXPECT_EQ(field("dwNumberOfProcessors"), "4");
    EXPECT_EQ(field("szProcessorName"), "Unknown processor");
    EXPECT_EQ(field("szProviders"), "Microsoft Terminal Services;Microsoft Windows Network");
    EXPECT_EQ(field("szProtocols"), "");
    EXPECT_EQ(field("szNetworkAdapters"), "Intel 82579LM;Intel 82574L");
    EXPECT_EQ(field("szSubnetMask"), "255.255.255.0");
    EXPECT_EQ(field("szDefaultGateway"), "192.168.7.1");
    EXPECT_EQ(field("szMonitor"), "Dell P2419H");
    EXPECT_EQ(field("szMailClient"), "Microsoft Outlook;Windows Mail");
    EXPECT_EQ(field("bOutlook"), "1");
    EXPECT_EQ(field("szDefaultBrowser"), "Firefox");
    EXPECT_EQ(field("szBrowser"), "Mozilla Firefox 78.9.0");
    EXPECT_EQ(field("szPrinters"), "B\xC3\xBCrodrucker;Etiketten");
    EXPECT_EQ(field("szDefaultPrinter"), "B\xC3\xBCrodrucker,winspool,Ne00:");
}

TEST_F(Import, PutsStandInsInThePlaceOfNames) {
    const ProgramRun imported = run({hives, station, "--redact"});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors, HasSubstr("  Etiketten   registry.reg [HKEY_CURRENT_USER\\Software"));
    EXPECT_THAT(field("szStation"), testing::MatchesRegex("[A-Z]{5}-[0-9][0-9]"));
    EXPECT_NE(field("szStation"), "LAGER-04");
    EXPECT_THAT(field("szDefaultGateway"), testing::MatchesRegex("192\\.168\\.[1-9]\\.[2-9]"));
    EXPECT_EQ(field("szSubnetMask"), "255.255.255.0");
    EXPECT_EQ(field("szPrinters"), "B\xC3\xBCrodrucker;Etiketten");
}

TEST_F(Import, PutsStandInsInThePlaceOfEverythingElseToo) {
    const ProgramRun imported = run({hives, station, "--redact=all"});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors, Not(HasSubstr("registry.reg [")));
    EXPECT_THAT(field("szPrinters"), Not(HasSubstr("Etiketten")));
    EXPECT_EQ(field("szDefaultBrowser"), "Firefox");
    EXPECT_EQ(field("szOS"), "Windows NT 6.1 (Build 7601) Service Pack 1");
    EXPECT_EQ(run({hives, station, "--redact=much"}).status, 2);
}

TEST_F(Import, WritesNoMoreThanTheModuleAsksFor) {
    ASSERT_EQ(run({hives, station}).status, 0);
    const std::string registry = readFile(station + "/registry.reg", 1 << 20);
    EXPECT_THAT(registry, Not(HasSubstr("ecret")));
    EXPECT_THAT(registry, Not(HasSubstr("ControlSet001")));
    EXPECT_THAT(registry, Not(HasSubstr("PROCESSOR_LEVEL")));
    EXPECT_THAT(registry, HasSubstr("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.html]\n@=\"FirefoxHTML\"\n"));
    const std::string json = readFile(station + "/station.json", 1 << 20);
    EXPECT_THAT(json, HasSubstr("\"description\": \"imported from the registry hives of Windows 7\""));
    EXPECT_THAT(json, HasSubstr("\"computerName\": \"Lager-04\""));
    EXPECT_THAT(json, HasSubstr("\"KVUser\": \"lager\""));
    EXPECT_THAT(json, Not(HasSubstr("TEMP")));
    for (const char* guess : {"\"keyboard\": ", "\"memory\": ", "\"drives\": ", "\"process\": ", "\"user\": ", "fails"})
        EXPECT_THAT(json, Not(HasSubstr(guess)));
    EXPECT_THAT(json, HasSubstr("\"unknown\": "));
}

TEST_F(Import, ListsWhatNoHiveTells) {
    const ProgramRun imported = run({hives, station});
    EXPECT_THAT(imported.errors, testing::StartsWith("kvstation: left undescribed, since no hive tells it:\n"
                                                     "  HKEY_LOCAL_MACHINE\\HARDWARE, "));
    for (const char* line :
         {"\\Enum: in no hive, since Windows makes it at each start\n", "  keyboard: the keyboard's type\n",
          "  drives: the kind of the drive\n", "  memory: the memory\n", "user.name: the Windows account\n",
          "  network.hosts: the addresses of the host's name\n", "  files: whether the file "})
        EXPECT_THAT(imported.errors, HasSubstr(line));
    for (const char* told : {"computerName", "version:", "processors:", "hostName", "oem", "HKEY_CURRENT_USER"})
        EXPECT_THAT(imported.errors, Not(HasSubstr(told)));
}

TEST_F(Import, ListsTheHivesThatAreNotThere) {
    std::filesystem::remove(hives + "/NTUSER.DAT");
    std::filesystem::remove(hives + "/SOFTWARE");
    const ProgramRun imported = run({hives, station});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors,
                HasSubstr("  HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE\\SOFTWARE: there is no hive of it\n"));
    EXPECT_THAT(imported.errors, HasSubstr("  version: the version of Windows\n"));
}

TEST_F(Import, SaysWhenTheHivesAreNotWhole) {
    std::string system = readFile(hives + "/SYSTEM", 1 << 24);
    // The second sequence number, and with it the header's sum, one bit off.
    system[8] = static_cast<char>(system[8] ^ 0x40);
    system[508] = static_cast<char>(system[508] ^ 0x40);
    writeFile(hives + "/SYSTEM", system);
    const ProgramRun imported = run({hives, station});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors, testing::StartsWith("kvstation: " + hives +
                                                     "/SYSTEM was not written to its end; what "
                                                     "Windows kept in the log beside it is missing\n"));
}

TEST_F(Import, TakesTheCodePageOfTheDisk) {
    RegistryTree tree = warehouse();
    tree.set(kSet + "Control\\Nls\\CodePage", textValue("ACP", "1251"));
    tree.set(kSet + "Control\\ComputerName\\ComputerName", textValue("ComputerName", "\xD1\xCA\xCB\xC0\xC4"));
    {
        const simwin::CodePageScope scope(1251);
        writeHives(hives, tree);
    }
    EXPECT_EQ(run({hives, station}).status, 0);
    const simwin::Station imported = readStationFolder(station);
    EXPECT_EQ(imported.codePages.ansi, 1251u);
    EXPECT_EQ(imported.computerName, "\xD1\xCA\xCB\xC0\xC4");
    simwin::useCodePage(simwin::kDefaultCodePage);
}

TEST_F(Import, SaysWhenItDoesNotKnowTheCodePage) {
    RegistryTree tree = warehouse();
    tree.set(kSet + "Control\\Nls\\CodePage", textValue("ACP", "1361"));
    writeHives(hives, tree);
    const ProgramRun imported = run({hives, station});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(
        imported.errors,
        testing::StartsWith("kvstation: this Windows has the ANSI code page 1361, which is none of the known "
                            "ones (437, 850, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, "
                            "1257, 1258, 65001); its texts are taken for those of 1252\n"));
    EXPECT_THAT(readStationFolder(station).unknown, testing::Contains("codePages.ansi"));
}

TEST_F(Import, TakesTheUserThatIsNamed) {
    const std::string disk = folder / "disk";
    for (const char* place : {"/Windows/System32", "/Users/anna", "/Users/bernd"})
        std::filesystem::create_directories(disk + place);
    std::filesystem::rename(hives, disk + "/Windows/System32/config");
    std::filesystem::rename(disk + "/Windows/System32/config/NTUSER.DAT", disk + "/Users/anna/NTUSER.DAT");
    RegistryTree bernd;
    bernd.set("HKEY_CURRENT_USER\\Environment", textValue("KVUser", "bernd"));
    writeHive(disk + "/Users/bernd/NTUSER.DAT", bernd, "HKEY_CURRENT_USER");
    const ProgramRun refused = run({disk, station});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors,
              "kvstation: " + disk + " holds several profiles; choose one with --user NAME: anna, bernd\n");
    EXPECT_EQ(run({disk, station, "--user", "Bernd"}).status, 0);
    EXPECT_EQ(field("szUserName"), "bernd");
}

TEST_F(Import, TakesASystemByItselfAndNobody) {
    ASSERT_EQ(run({hives + "/SYSTEM", station}).status, 0);
    EXPECT_EQ(field("szStation"), "LAGER-04");
    EXPECT_EQ(field("szOS"), "");
    std::filesystem::remove_all(station);
    const ProgramRun imported = run({hives, station, "--user", "none"});
    ASSERT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors, HasSubstr("HKEY_CURRENT_USER: left out, since --user none asked for that\n"));
    EXPECT_EQ(field("szUserName"), "UNKNOWN");
}

TEST_F(Import, PageSaysOfNoDiskThatSomebodySatAtIt) {
    ASSERT_EQ(run({hives, station, "--set", "CLIENTNAME=Console"}).status, 0);
    const std::string page = folder / "page.html";
    ASSERT_EQ(runProgram({KVSTATION_PROGRAM, "simulate", station, "--html", page}).status, 0);
    EXPECT_THAT(readFile(page, 1 << 24), Not(HasSubstr("At the station itself")));
    EXPECT_THAT(readFile(page, 1 << 24), Not(HasSubstr("session 0")));
}

TEST_F(Import, WritesOverNoStation) {
    ASSERT_EQ(run({hives, station}).status, 0);
    const ProgramRun again = run({hives, station});
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.output, "");
    EXPECT_EQ(again.errors,
              "kvstation: " + station + "/registry.reg is there already; name a folder that holds no station\n");
}

TEST_F(Import, AnEmptyNameOfTheStationIsWrongUse) {
    const ProgramRun refused = run({hives, ""});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errors, "kvstation: STATION: the file name is empty\n");
}

TEST_F(Import, RefusesAFileThatIsNoHive) {
    writeFile(hives + "/SOFTWARE", "Windows Registry Editor Version 5.00\n");
    expectRefusal(hives + "/SOFTWARE is no registry hive: it begins with neither \"regf\" nor \"CREG\"");
    writeFile(hives + "/SOFTWARE", "");
    expectRefusal(hives + "/SOFTWARE is no registry hive: it begins with neither \"regf\" nor \"CREG\"");
    std::filesystem::remove(hives + "/SOFTWARE");
    std::filesystem::create_directory(hives + "/SOFTWARE");
    expectRefusal(hives + "/SOFTWARE cannot be read: Is a directory (error 21)");
}

TEST_F(Import, ReadsOnInAHiveThatIsCutShort) {
    RegistryTree tree;  // whose root keys stand in the first page
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::dwordValue("Current", 1));
    addSystem(tree);
    writeHive(hives + "/SYSTEM", tree, "HKEY_LOCAL_MACHINE\\SYSTEM");
    const std::string whole = readFile(hives + "/SYSTEM", 1 << 24);
    writeFile(hives + "/SYSTEM", whole.substr(0, whole.size() - 4096));
    const ProgramRun imported = run({hives, station});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.errors,
                testing::StartsWith("kvstation: " + hives + "/SYSTEM is cut short: it has " +
                                    std::to_string(whole.size() - 4096) + " of " + std::to_string(whole.size()) +
                                    " bytes; what stood behind them is missing\n"));
}

TEST_F(Import, RefusesAHiveOfWhichNothingIsLeft) {
    const std::string whole = readFile(hives + "/SYSTEM", 1 << 24);
    writeFile(hives + "/SYSTEM", whole.substr(0, 5000));
    expectRefusal(hives + "/SYSTEM is cut short: it has 5000 of " + std::to_string(whole.size()) + " bytes");
    writeFile(hives + "/SYSTEM", whole.substr(0, 100));
    expectRefusal(hives + "/SYSTEM is cut short: it has 100 bytes");
}

TEST_F(Import, RefusesAFolderWithoutHives) {
    std::filesystem::remove(hives + "/SYSTEM");
    expectRefusal(hives + " holds no SYSTEM hive, neither itself nor in Windows/System32/config, and no SYSTEM.DAT");
}

// Fields that the described machines take from the registry alone.
constexpr const char* kRegistryFields[] = {"szOS",
                                           "szProviders",
                                           "szNetworkAdapters",
                                           "szMailClient",
                                           "szMonitor",
                                           "szPrinters",
                                           "szDefaultPrinter",
                                           "szSubnetMask",
                                           "szDefaultGateway",
                                           "szDefaultBrowser",
                                           "bInternetExplorer",
                                           "bOutlook"};

class ImportOfStation : public testing::TestWithParam<std::string> {};

TEST_P(ImportOfStation, HasTheFieldsThatTheHivesTell) {
    TemporaryFolder folder;
    const std::string source = std::string(KV_STATIONS) + "/" + GetParam();
    writeHives(folder / "", readStationFolder(source).registry);
    HiveRegistry registry(findHives(folder / "", ""));
    const ImportedStation imported = importStation(registry, {}, Reach::StationItself);
    const kvtest::Fields expected = kvtest::readExpectedStation(source).record;
    const kvtest::Fields found = kvtest::fieldsOf({imported.record.begin(), imported.record.end()});
    for (const char* name : kRegistryFields) {
        const auto isField = [&](const auto& field) { return field.first == name; };
        EXPECT_EQ(std::ranges::find_if(found, isField)->second, std::ranges::find_if(expected, isField)->second)
            << name;
    }
    writeStationFolder(imported.station, folder / "station");
    simwin::Machine replayed(readStationFolder(folder / "station"));
    EXPECT_EQ(collectOn(replayed), imported.record);
}

INSTANTIATE_TEST_SUITE_P(Stations, ImportOfStation,
                         testing::Values("nt4-workstation", "nt4-alpha-workstation", "windows-2000-workstation",
                                         "windows-7-workstation", "windows-11-notebook", "windows-xp-console"),
                         kvtest::NameOfStationTest());

}  // namespace
}  // namespace kvstation
