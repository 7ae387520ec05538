#include "simwin/station/StationReader.h"

#include <gmock/gmock.h>

#include <fstream>

namespace {

using namespace simwin;
using namespace std::string_literals;
using testing::ElementsAre;

TEST(StationReader, DescribesNothingByAnEmptyObject) {
    const Station station = parseStation("{}", "station.json");
    EXPECT_FALSE(station.collected);
    EXPECT_FALSE(station.version);
    EXPECT_FALSE(station.computerName);
    EXPECT_FALSE(station.process);
    EXPECT_EQ(station.codePages.ansi, 1252u);
    EXPECT_EQ(station.codePages.oem, 437u);
    EXPECT_TRUE(station.drives.empty());
}

constexpr const char* kWhole = R"json({
  "description": "a machine with much",
  "collected": { "at": "2028-02-29T23:59:59Z", "library": "1.2.0.0", "tool": "1.2.0" },
  "codePages": { "ansi": 1252, "oem": 850 },
  "version": { "platformId": 2, "major": 5, "minor": 1, "build": 2600, "servicePack": "Service Pack 3",
               "terminalServices": true },
  "keyboard": { "type": 4, "subType": 2 },
  "computerName": "Pc-Lab3",
  "user": { "name": "jdoe", "samCompatible": "LAB\\jdoe", "displayName": "J\u00f6rg", "principal": "jdoe@lab.example",
            "network": "JDOE", "directory": "CN=jdoe.O=lab" },
  "environment": { "SystemRoot": "C:\\WINDOWS", "KVIP": {"hex": "31 00 32"} },
  "process": { "id": 1234, "sessionId": 1 },
  "processors": { "architecture": 2, "count": 2, "type": 586, "level": 6, "revision": 2054,
                  "currentMhz": [2400, 2401] },
  "memory": { "physical": 5368709120, "virtual": 2147352576 },
  "drives": { "A": { "type": "removable" },
              "C": { "type": 3, "label": "SYSTEM", "fileSystem": "NTFS", "serial": 305419896,
                     "total": 160039235584, "free": 65616084992,
                     "clusters": { "sectorsPerCluster": 8, "bytesPerSector": 512, "free": 1, "total": 2 } },
              "D": { "type": "fixed", "total": 10, "free": 5, "totalFree": 7 } },
  "files": { "C:\\Program Files\\a.exe": { "version": "10.200.2650.0" },
             "C:\\b.exe": { "resource": {"hex": "01-02"} }, "C:\\c.txt": {} },
  "network": {
    "hostName": "pc-lab3",
    "hosts": { "pc-lab3": { "name": "pc-lab3.lab.example", "addresses": ["10.0.0.5", "10.0.0.6"] },
               "odd": { "addressType": 6, "addresses": [{"hex": "0102030405"}] } },
    "addresses": { "10.0.0.5": "pc-lab3.lab.example" },
    "arp": { "10.0.0.5": "00-0C-29-AB-CD-EF", "10.0.0.6": "" },
    "netbios": [ { "lana": 3, "address": "000C29ABCDEF" }, { "lana": 4 } ],
    "lanGroup": "WORKGROUP",
    "domain": "LAB"
  },
  "session": { "clientName": "THIN07", "clientAddress": { "text": "10.9.8.7", "result": 0 }, "id": -1,
               "domain": { "text": "LAB", "terminated": false } },
  "citrix": { "clientName": "THIN08" },
  "vcdVersion": -41,
  "profile": { "windows": { "device": "HP,winspool,LPT1:" } },
  "missing": [ "wsock32.dll", "netapi32.dll!NetWkstaGetInfo" ],
  "fails": { "GetVersionExA": 120 },
  "deniedKeys": [ "HKEY_LOCAL_MACHINE\\HARDWARE" ]
})json";

TEST(StationReader, ReadsTheSystem) {
    const Station station = parseStation(kWhole, "station.json");
    EXPECT_EQ(station.description, "a machine with much");
    EXPECT_EQ(station.collected, (Collected{.at = "2028-02-29T23:59:59Z", .library = "1.2.0.0", .tool = "1.2.0"}));
    EXPECT_EQ(station.codePages.oem, 850u);
    EXPECT_EQ(station.version->platformId, 2u);
    EXPECT_EQ(station.version->major, 5u);
    EXPECT_EQ(station.version->minor, 1u);
    EXPECT_EQ(station.version->build, 2600u);
    EXPECT_EQ(station.version->servicePack, "Service Pack 3");
    EXPECT_TRUE(station.version->terminalServices);
    EXPECT_EQ(station.keyboard->type, 4);
    EXPECT_EQ(station.keyboard->subType, 2);
    EXPECT_EQ(station.process->id, 1234u);
    EXPECT_EQ(station.process->sessionId, 1u);
    EXPECT_EQ(station.processors->architecture, 2);
    EXPECT_EQ(station.processors->count, 2u);
    EXPECT_EQ(station.processors->type, 586u);
    EXPECT_EQ(station.processors->level, 6);
    EXPECT_EQ(station.processors->revision, 2054);
    EXPECT_THAT(station.processors->currentMhz, ElementsAre(2400, 2401));
    EXPECT_EQ(station.memory->physical, 5368709120u);
    EXPECT_EQ(station.memory->virtualSize, 2147352576u);
}

TEST(StationReader, ReadsNamesAndVariables) {
    const Station station = parseStation(kWhole, "station.json");
    EXPECT_EQ(station.computerName, "Pc-Lab3");
    EXPECT_EQ(station.user.name, "jdoe");
    EXPECT_EQ(station.user.samCompatible, "LAB\\jdoe");
    EXPECT_EQ(station.user.displayName, "J\xF6rg");
    EXPECT_EQ(station.user.principal, "jdoe@lab.example");
    EXPECT_EQ(station.user.network, "JDOE");
    EXPECT_EQ(station.user.directory, "CN=jdoe.O=lab");
    ASSERT_EQ(station.environment.size(), 2u);
    EXPECT_EQ(station.environment[0].name, "SystemRoot");
    EXPECT_EQ(station.environment[0].value, "C:\\WINDOWS");
    EXPECT_EQ(station.environment[1].value, "1\0002"s);
}

TEST(StationReader, ReadsDrivesAndFiles) {
    const Station station = parseStation(kWhole, "station.json");
    EXPECT_EQ(station.drives.at('A').type, 2u);
    EXPECT_FALSE(station.drives.at('A').total);
    const Drive& c = station.drives.at('C');
    EXPECT_EQ(c.type, 3u);
    EXPECT_EQ(c.label, "SYSTEM");
    EXPECT_EQ(c.fileSystem, "NTFS");
    EXPECT_EQ(c.serial, 305419896u);
    EXPECT_EQ(c.total, 160039235584u);
    EXPECT_EQ(c.free, 65616084992u);
    EXPECT_FALSE(c.totalFree);
    EXPECT_EQ(c.clusters->sectorsPerCluster, 8u);
    EXPECT_EQ(c.clusters->bytesPerSector, 512u);
    EXPECT_EQ(c.clusters->free, 1u);
    EXPECT_EQ(c.clusters->total, 2u);
    EXPECT_EQ(station.drives.at('D').free, 5u);
    EXPECT_EQ(station.drives.at('D').totalFree, 7u);
    ASSERT_EQ(station.files.size(), 3u);
    EXPECT_EQ(station.files[0].path, "C:\\Program Files\\a.exe");
    EXPECT_THAT(*station.files[0].version, ElementsAre(10, 200, 2650, 0));
    EXPECT_EQ(station.files[1].resource, "\1\2");
    EXPECT_FALSE(station.files[2].version);
}

TEST(StationReader, ReadsTheNetwork) {
    const StationNetwork network = parseStation(kWhole, "station.json").network;
    EXPECT_EQ(network.hostName, "pc-lab3");
    ASSERT_EQ(network.hosts.size(), 2u);
    EXPECT_EQ(network.hosts[0].hostName, "pc-lab3");
    EXPECT_EQ(network.hosts[0].name, "pc-lab3.lab.example");
    EXPECT_EQ(network.hosts[0].addressType, 2);
    EXPECT_THAT(network.hosts[0].addresses, ElementsAre("\x0A\0\0\5"s, "\x0A\0\0\6"s));
    EXPECT_EQ(network.hosts[1].name, "odd");
    EXPECT_EQ(network.hosts[1].addressType, 6);
    EXPECT_THAT(network.hosts[1].addresses, ElementsAre("\1\2\3\4\5"));
    EXPECT_EQ(network.addresses.at(0).address, "10.0.0.5");
    EXPECT_EQ(network.addresses.at(0).name, "pc-lab3.lab.example");
    EXPECT_EQ(network.arp.at(0).physical, "\0\x0C\x29\xAB\xCD\xEF"s);
    EXPECT_EQ(network.arp.at(1).physical, "");
    EXPECT_EQ(network.netbios.at(0).number, 3);
    EXPECT_EQ(network.netbios.at(0).address, "\0\x0C\x29\xAB\xCD\xEF"s);
    EXPECT_FALSE(network.netbios.at(1).address);
    EXPECT_EQ(network.lanGroup, "WORKGROUP");
    EXPECT_EQ(network.domain, "LAB");
}

TEST(StationReader, ReadsSessionAndWhatFails) {
    const Station station = parseStation(kWhole, "station.json");
    EXPECT_EQ(station.session.clientName->text, "THIN07");
    EXPECT_EQ(station.session.clientName->result, 1);
    EXPECT_TRUE(station.session.clientName->terminated);
    EXPECT_EQ(station.session.clientAddress->text, "10.9.8.7");
    EXPECT_EQ(station.session.clientAddress->result, 0);
    EXPECT_FALSE(station.session.domain->terminated);
    EXPECT_EQ(station.session.id, -1);
    EXPECT_EQ(station.citrix->clientName->text, "THIN08");
    EXPECT_EQ(station.vcdVersion, -41);
    EXPECT_EQ(station.profile.at(0).section, "windows");
    EXPECT_EQ(station.profile.at(0).entry, "device");
    EXPECT_EQ(station.profile.at(0).value, "HP,winspool,LPT1:");
    EXPECT_THAT(station.missing, ElementsAre("wsock32.dll", "netapi32.dll!NetWkstaGetInfo"));
    EXPECT_EQ(station.fails.at("GetVersionExA"), 120u);
    EXPECT_THAT(station.deniedKeys, ElementsAre("HKEY_LOCAL_MACHINE\\HARDWARE"));
}

TEST(StationReader, SaysWhereAndWhatIsWrong) {
    struct {
        const char* json;
        const char* error;
    } const cases[] = {
        {"[]", "s.json: /: is no object"},
        {R"({"computername": "A"})", "s.json: /computername: is not known"},
        {R"({"a\nb": 1})", R"(s.json: /a\nb: is not known)"},
        {R"({"version": {"mayor": 5}})", "s.json: /version/mayor: is not known"},
        {R"({"version": 5})", "s.json: /version: is no object"},
        {R"({"version": {"major": -1}})", "s.json: /version/major: is no whole number from 0 to 4294967295"},
        {R"({"version": {"major": 4294967296}})", "s.json: /version/major: is no whole number from 0 to 4294967295"},
        {R"({"version": {"major": 5.5}})", "s.json: /version/major: is no whole number from 0 to 4294967295"},
        {R"({"version": {"major": "5"}})", "s.json: /version/major: is no whole number from 0 to 4294967295"},
        {R"({"version": {"terminalServices": 1}})", "s.json: /version/terminalServices: is neither true nor false"},
        {R"({"keyboard": {"type": 2147483648}})",
         "s.json: /keyboard/type: is no whole number from -2147483648 to 2147483647"},
        {R"({"computerName": 3})", "s.json: /computerName: is no text"},
        {R"({"computerName": "\u4e2d"})", "s.json: /computerName: holds a character that code page 1252 does not have"},
        {R"({"computerName": {"hex": "4"}})",
         "s.json: /computerName/hex: is no row of bytes of two hexadecimal digits each"},
        {R"({"computerName": {"text": "A"}})", "s.json: /computerName/text: is not known"},
        {R"({"codePages": {"ansi": 1249}})",
         "s.json: /codePages/ansi: is none of the known code pages: 437, 850, 874, 932, 936, 949, 950, 1250, 1251, "
         "1252, "
         "1253, 1254, 1255, 1256, 1257, 1258, 65001"},
        {R"({"computerName": "\u0141", "codePages": {"ansi": 1251}})",
         "s.json: /computerName: holds a character that code page 1251 does not have"},
        {R"({"environment": {"A=B": "x"}})", "s.json: /environment/A=B: is no variable's name"},
        {R"({"processors": {"currentMhz": 1}})", "s.json: /processors/currentMhz: is no list"},
        {R"({"processors": {"currentMhz": [1, "x"]}})",
         "s.json: /processors/currentMhz/1: is no whole number from 0 to 4294967295"},
        {R"({"drives": {"c": {}}})", "s.json: /drives/c: is no drive's letter from A to Z"},
        {R"({"drives": {"C": {"type": "hard"}}})",
         "s.json: /drives/C/type: is none of removable, fixed, remote, cdrom, ramdisk and no number"},
        {R"({"files": {"C:\\a": {"version": "1.2.3"}}})",
         "s.json: /files/C:\\a/version: is no version of four numbers up to 65535, such as 10.200.2650.0"},
        {R"({"files": {"C:\\a": {"version": "1.2.3.65536"}}})",
         "s.json: /files/C:\\a/version: is no version of four numbers up to 65535, such as 10.200.2650.0"},
        {R"({"files": {"C:\\a": {"version": "1.2.3.4x"}}})",
         "s.json: /files/C:\\a/version: is no version of four numbers up to 65535, such as 10.200.2650.0"},
        {R"({"files": {"a.exe": {}}})",
         "s.json: /files/a.exe: is no full path of a file, such as C:\\WINDOWS\\notepad.exe"},
        {R"({"files": {"C:\\dir\\": {}}})",
         "s.json: /files/C:\\dir\\: is no full path of a file, such as C:\\WINDOWS\\notepad.exe"},
        {R"({"network": {"addresses": {"10.0.0": "a"}}})",
         "s.json: /network/addresses/10.0.0: is no IPv4 address such as 10.0.0.5"},
        {R"({"network": {"hosts": {"a": {"addresses": ["10.0.0.256"]}}}})",
         "s.json: /network/hosts/a/addresses/0: is no IPv4 address such as 10.0.0.5"},
        {R"({"network": {"hosts": {"a": {"addresses": ["10.0.0.2", {"hex": "01"}]}}}})",
         "s.json: /network/hosts/a/addresses/1: is not as long as the first address"},
        {R"({"network": {"arp": {"10.0.0.5": "0102030405060708090a0b0c0d0e0f1011"}}})",
         "s.json: /network/arp/10.0.0.5: is no physical address of 0 to 16 bytes, such as 00-0C-29-AB-CD-EF"},
        {R"({"network": {"netbios": [{"address": "00-0C"}]}})",
         "s.json: /network/netbios/0/address: is no physical address of 6 bytes, such as 00-0C-29-AB-CD-EF"},
        {R"({"missing": ["wsock23.dll"]})", "s.json: /missing/0: names no library that the module uses"},
        {R"({"missing": ["wsock32.dll!getHostName"]})",
         "s.json: /missing/0: names no function that the module looks up in that library"},
        {R"({"fails": {"GetVersionEx": 120}})", "s.json: /fails/GetVersionEx: is no call that the module makes"},
        {R"({"fails": {"GetVersionExA": 0}})", "s.json: /fails/GetVersionExA: is no error"},
        {R"({"computerName": "A", "computerName": "B"})", "s.json: \"computerName\" stands twice in one object"},
        {"[[[[[[[[[[[[[[[[[[", "s.json: nested deeper than 16 levels"},
    };
    for (const auto& one : cases) {
        try {
            parseStation(one.json, "s.json");
            ADD_FAILURE() << "read: " << one.json;
        } catch (const ReadError& error) {
            EXPECT_STREQ(error.what(), one.error);
        }
    }
}

std::string errorOf(const std::string& json) {
    try {
        parseStation(json, "s.json");
    } catch (const ReadError& error) {
        return error.what();
    }
    return "none";
}

TEST(StationReader, RefusesTimesThatAreNone) {
    for (const char* time : {"", "2026-11-22", "2026-11-22 12:00:00Z", "2026-11-22T12:00:00", "2026-11-22T12:00:00Z ",
                             "2026-11-22T12:00:00.5Z", "2026-1a-22T12:00:00Z", "2026-00-22T12:00:00Z",
                             "2026-13-22T12:00:00Z", "2026-11-31T12:00:00Z", "2027-02-29T12:00:00Z",
                             "2026-11-22T24:00:00Z", "2026-11-22T12:60:00Z", "2026-11-22T12:00:60Z"})
        EXPECT_EQ(errorOf(std::string(R"({"collected": {"at": ")") + time + "\"}}"),
                  "s.json: /collected/at: is no time such as 2026-11-22T12:00:00Z")
            << time;
}

TEST(StationReader, RefusesVersionsThatAreNone) {
    EXPECT_EQ(errorOf(R"({"collected": {"library": "12345678.12345678.12345678.12345"}})"), "none");
    for (const char* version :
         {"", ".", "1.", ".1", "1..2", "1.2 ", "1,2", "v1", "Mustermann", "12345678.12345678.12345678.123456"})
        EXPECT_EQ(errorOf(std::string(R"({"collected": {"library": ")") + version + "\"}}"),
                  "s.json: /collected/library: is no version such as 1.2.0 of at most 32 characters")
            << version;
}

std::string repeated(const char* text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += (i == 0 ? "" : ",") + std::string(text);
    return all;
}

// The outer object, the member's list and the items are the values.
TEST(StationReader, HoldsItsLimits) {
    EXPECT_EQ(errorOf("{\"unknown\": [" + repeated("\"a\"", 9998) + "]}"), "none");
    EXPECT_EQ(errorOf("{\"unknown\": [" + repeated("\"a\"", 9999) + "]}"), "s.json: more than 10000 values");
    EXPECT_EQ(errorOf("{\"unknown\": [" + repeated("{}", 1000000) + "]}"), "s.json: more than 10000 values");
    EXPECT_EQ(errorOf("{\"unknown\": [" + repeated("[]", 1000000) + "]}"), "s.json: more than 10000 values");
    const std::string spaces(16 << 20, ' ');
    EXPECT_EQ(errorOf("{}" + spaces.substr(2)), "none");
    EXPECT_EQ(errorOf("{}" + spaces), "s.json is longer than 16 MiB");
}

TEST(StationReader, SaysWhereTheJsonItselfIsWrong) {
    for (const char* json : {"", "{", "{\n  \"computerName\": \"A\",\n}", "{\"computerName\": \"\xFF\"}", "1e999"}) {
        try {
            parseStation(json, "s.json");
            ADD_FAILURE() << "read: " << json;
        } catch (const ReadError& error) {
            EXPECT_THAT(error.what(), testing::StartsWith("s.json: "));
            EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("json.exception")));
        }
    }
}

class StationFolder : public testing::Test {
  protected:
    StationFolder()
        : m_path(std::filesystem::path(testing::TempDir()) /
                 testing::UnitTest::GetInstance()->current_test_info()->name()) {
        std::filesystem::create_directory(m_path);
    }
    ~StationFolder() override { std::filesystem::remove_all(m_path); }

    void write(const char* name, const std::string& content) {
        std::ofstream(m_path / name, std::ios::binary) << content;
    }

    std::string errorOfReading() {
        try {
            readStation(m_path);
        } catch (const ReadError& error) {
            return std::string(error.what()).substr(m_path.string().size() + 1);
        }
        return "none";
    }

    std::filesystem::path m_path;
};

TEST_F(StationFolder, HoldsDescriptionAndRegistry) {
    write("station.json", R"({"computerName": "A", "deniedKeys": ["HKEY_USERS\\a"]})");
    write("registry.reg", "REGEDIT4\n[HKEY_USERS\\A]\n");
    const Station station = readStation(m_path);
    EXPECT_EQ(station.computerName, "A");
    EXPECT_TRUE(station.registry.find("HKEY_USERS\\A"));
}

TEST_F(StationFolder, NeedsBothFiles) {
    EXPECT_EQ(errorOfReading(), "station.json cannot be read: No such file or directory (error 2)");
    write("station.json", "{}");
    EXPECT_EQ(errorOfReading(), "registry.reg cannot be read: No such file or directory (error 2)");
}

TEST_F(StationFolder, DeniesOnlyKeysThatAreThere) {
    write("station.json", R"({"deniedKeys": ["HKEY_USERS\\B"]})");
    write("registry.reg", "REGEDIT4\n[HKEY_USERS\\A]\n");
    EXPECT_EQ(errorOfReading(), "station.json: /deniedKeys/0: registry.reg has no such key");
}

}  // namespace
