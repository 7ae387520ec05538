// The registry of Windows 95, 98 and Me.
#include <gmock/gmock.h>

#include <cstring>

#include "../TemporaryFolder.h"
#include "kvstation/import/HiveFacts.h"
#include "kvstation/import/HiveImport.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "tests/kvstation/hives/OldHiveWriter.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::textValue;

const std::string kMachine = "HKEY_LOCAL_MACHINE\\";
const std::string kOldVersion = kMachine + "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
const std::string kOldControl = kMachine + "System\\CurrentControlSet\\Control\\";

RegistryTree smallOldRegistry() {
    RegistryTree tree;
    tree.set(kOldVersion, textValue("VersionNumber", "4.10.2222"));
    tree.set(kOldVersion, textValue("SubVersionNumber", " A "));
    tree.set(kOldVersion, textValue("SystemRoot", "C:\\WIN98"));
    tree.set(kOldVersion, textValue("RegisteredOwner", "Petra Z\xF6llner"));
    tree.set(kOldVersion, textValue("", "default"));
    tree.set(kOldVersion, simwin::binaryValue("Bytes", std::string("\0\x01", 2)));
    tree.set(kOldVersion, simwin::multiTextValue("Several", {"a", "b"}));
    tree.set(kOldControl + "ComputerName\\ComputerName", textValue("ComputerName", "B\xDCRO-4"));
    tree.set(kOldControl + "Nls\\Codepage", textValue("OEMCP", "850"));
    tree.set(kOldControl + "IDConfigDB", textValue("CurrentConfig", "0002"));
    tree.set(kOldControl + "Print\\Printers\\Laser", textValue("Description", "Laser"));
    tree.set(kMachine + "Config\\0001\\Display", textValue("Name", "one"));
    tree.set(kMachine + "Config\\0002\\System\\CurrentControlSet\\Control\\Print\\Printers",
             textValue("default", "Laser"));
    tree.set(kMachine + "Enum\\Monitor\\Default_Monitor\\0001", textValue("DeviceDesc", "Multiscan 200"));
    tree.set("HKEY_USERS\\.DEFAULT\\Software\\Opera Software", textValue("Last Directory3", "C:\\OPERA"));
    return tree;
}

class OldHives : public testing::Test {
  protected:
    HiveRegistry written(const std::string& user = "") {
        writeOldHives(folder / "", tree);
        return HiveRegistry(findHives(folder / "", user));
    }
    static std::string text(HiveRegistry& registry, const std::string& key, const std::string& name) {
        RegistryTree found;
        if (!registry.copyKey(key, found))
            return "no key";
        const simwin::RegistryValue* value = found.findValue(*found.find(key), name);
        return value != nullptr ? value->bytes : "no value";
    }

    TemporaryFolder folder;
    RegistryTree tree = smallOldRegistry();
};

TEST_F(OldHives, HoldTheMachineAndTheDefaultUser) {
    HiveRegistry registry = written();
    EXPECT_TRUE(registry.isWindows9x());
    EXPECT_EQ(text(registry, kOldVersion, "RegisteredOwner"), std::string("Petra Z\xF6llner\0", 14));
    EXPECT_EQ(text(registry, kOldVersion, ""), std::string("default\0", 8));
    EXPECT_EQ(text(registry, kOldVersion, "Bytes"), std::string("\0\x01", 2));
    EXPECT_EQ(text(registry, kOldVersion, "Several"), std::string("a\0b\0\0", 5));
    EXPECT_EQ(text(registry, "HKEY_CURRENT_USER\\Software\\Opera Software", "Last Directory3"),
              std::string("C:\\OPERA\0", 9));
    EXPECT_EQ(text(registry, "HKEY_USERS\\.DEFAULT\\Software\\Opera Software", "Last Directory3"),
              std::string("C:\\OPERA\0", 9));
    EXPECT_EQ(text(registry, kMachine + "Nothing", ""), "no key");
}

TEST_F(OldHives, CurrentConfigurationIsTheOneThatTheMachineNames) {
    HiveRegistry registry = written();
    EXPECT_EQ(text(registry, "HKEY_CURRENT_CONFIG\\System\\CurrentControlSet\\Control\\Print\\Printers", "default"),
              std::string("Laser\0", 6));
    EXPECT_EQ(text(registry, "HKEY_CURRENT_CONFIG\\Display", "Name"), "no key");
}

TEST_F(OldHives, TellVersionNamesAndVariables) {
    tree.set(kOldControl + "SessionManager\\Environment", textValue("TEMP", "C:\\TEMP"));
    HiveRegistry registry = written();
    const simwin::Station station = factsOf(registry).station;
    ASSERT_TRUE(station.version);
    EXPECT_EQ(station.version->platformId, 1U);
    EXPECT_EQ(station.version->major, 4U);
    EXPECT_EQ(station.version->minor, 10U);
    EXPECT_EQ(station.version->build, 2222U);
    EXPECT_EQ(station.version->servicePack, " A ");
    EXPECT_EQ(station.computerName, "B\xDCRO-4");
    EXPECT_EQ(station.codePages.oem, 850U);
    ASSERT_EQ(station.environment.size(), 2U);
    EXPECT_EQ(station.environment[0].name + "=" + station.environment[0].value, "windir=C:\\WIN98");
    EXPECT_EQ(station.environment[1].name + "=" + station.environment[1].value, "TEMP=C:\\TEMP");
}

TEST_F(OldHives, VersionThatIsNoneIsNotDescribed) {
    for (const char* text : {"", "4", "4.10", "4.10.", "x.10.2222", "4.10.2222.1"}) {
        tree.set(kOldVersion, textValue("VersionNumber", text));
        HiveRegistry registry = written();
        EXPECT_FALSE(factsOf(registry).station.version) << text;
    }
}

TEST_F(OldHives, FileTypesOfWindowsMeLieInAFileOfTheirOwn) {
    RegistryTree types;
    types.set("HKEY_LOCAL_MACHINE\\.html", textValue("", "htmlfile"));
    types.create("HKEY_LOCAL_MACHINE\\CLSID");
    writeFile(folder / "Classes.dat", oldHive(types, "HKEY_LOCAL_MACHINE"));
    HiveRegistry registry = written();
    EXPECT_EQ(text(registry, "HKEY_CLASSES_ROOT\\.html", ""), std::string("htmlfile\0", 9));
}

TEST_F(OldHives, ProfileHasAUserOfItsOwn) {
    RegistryTree anna;
    anna.set("HKEY_USERS\\Software\\Opera Software", textValue("Last Directory3", "C:\\ANNA"));
    anna.create("HKEY_USERS\\Control Panel");
    std::filesystem::create_directories(folder / "Profiles/anna");
    writeFile(folder / "Profiles/anna/user.dat", oldHive(anna, "HKEY_USERS"));
    const std::string opera = "HKEY_CURRENT_USER\\Software\\Opera Software";
    HiveRegistry chosen = written("Anna");
    EXPECT_EQ(text(chosen, opera, "Last Directory3"), std::string("C:\\ANNA\0", 8));
    HiveRegistry other = written(".default");
    EXPECT_EQ(text(other, opera, "Last Directory3"), std::string("C:\\OPERA\0", 9));
    HiveRegistry none = written("none");
    EXPECT_EQ(text(none, opera, "Last Directory3"), "no key");
    EXPECT_THROW(written(), Failure);
}

TEST_F(OldHives, AreImportedTheModulesWayFor9x) {
    HiveRegistry registry = written();
    const ImportedStation imported = importStation(registry, {}, Reach::StationItself);
    EXPECT_EQ(imported.station.description, "imported from the registry hives of Windows 98");
    const Record record(imported.record);
    EXPECT_EQ(record.at("szStation").text, "B\xC3\x9CRO-4");
    EXPECT_EQ(record.at("szMonitor").text, "Multiscan 200");
    EXPECT_EQ(record.at("szPrinters").text, "Laser");
    EXPECT_EQ(record.at("szDefaultPrinter").text, "Laser");
}

TEST_F(OldHives, UserInTheSystemsPlaceIsRefused) {
    written();
    std::filesystem::copy_file(folder / "USER.DAT", folder / "SYSTEM.DAT",
                               std::filesystem::copy_options::overwrite_existing);
    try {
        HiveRegistry registry(findHives(folder / "", ""));
        FAIL();
    } catch (const Failure& error) {
        EXPECT_THAT(error.what(),
                    testing::EndsWith("SYSTEM.DAT is no SYSTEM.DAT hive: its keys are those of USER.DAT"));
    }
}

class DamagedOldHive : public OldHives {
  protected:
    DamagedOldHive() {
        written();
        whole = readFile(folder / "SYSTEM.DAT", 1 << 20);
    }
    static void readAll(HiveRegistry& registry, const std::string& path, int depth) {
        RegistryTree found;
        if (depth == 0 || !registry.copyKey(path, found))
            return;
        const auto key = found.find(path);
        for (std::size_t i = 0; const std::string* name = key ? found.subKeyName(*key, i) : nullptr; ++i)
            readAll(registry, path + "\\" + *name, depth - 1);
    }
    void expectReadOrRefused(const std::string& bytes) {
        writeFile(folder / "SYSTEM.DAT", bytes);
        try {
            HiveRegistry registry(findHives(folder / "", ""));
            readAll(registry, "HKEY_LOCAL_MACHINE", 8);
        } catch (const Failure& error) {
            EXPECT_THAT(error.what(), testing::StartsWith((folder / "SYSTEM.DAT")));
        }
    }
    std::optional<std::string> loss(const std::string& bytes, const std::string& key, HiveRegistry::Part part) {
        writeFile(folder / "SYSTEM.DAT", bytes);
        HiveRegistry registry(findHives(folder / "", ""));
        return registry.lossAt(key, part);
    }

    std::string whole;
};

TEST_F(DamagedOldHive, InAnyByteIsReadOrRefused) {
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string bytes = whole;
        bytes[i] = static_cast<char>(bytes[i] ^ (i % 2 == 0 ? 0xFF : 0x01));
        expectReadOrRefused(bytes);
    }
}

TEST_F(DamagedOldHive, CutAtAnyLengthIsReadOrRefused) {
    for (std::size_t length = 0; length < whole.size(); length += 7)
        expectReadOrRefused(whole.substr(0, length));
}

TEST_F(DamagedOldHive, WithoutABlockIsToldOrRefused) {
    std::string bytes = whole;
    bytes[16] = '\x02';  // as if there were a second one
    writeFile(folder / "SYSTEM.DAT", bytes);
    EXPECT_THAT(
        HiveRegistry(findHives(folder / "", "")).remarks(),
        testing::ElementsAre(folder / "SYSTEM.DAT is cut short: 1 of its 2 blocks can be read; what stood in the "
                                      "others is missing"));
    writeFile(folder / "SYSTEM.DAT", whole.substr(0, whole.size() - 1));
    EXPECT_THROW(HiveRegistry(findHives(folder / "", "")), Failure);
}

TEST_F(DamagedOldHive, WithLinksThatPointElsewhereIsReadOrRefused) {
    for (std::size_t i = 64; i + 4 <= whole.size(); i += 4)
        for (const std::uint32_t word : {0x20U, 0x3CU, 0x7FFFFFFFU}) {
            std::string bytes = whole;
            std::memcpy(bytes.data() + i, &word, sizeof word);
            expectReadOrRefused(bytes);
        }
}

// The first sub-key of the root names itself as the next one.
TEST_F(DamagedOldHive, RoundOfKeysIsCutAndWhatStoodBehindItIsLost) {
    constexpr std::size_t kFirstKey = 64 + 28;
    const std::uint32_t itself = kFirstKey - 32;
    std::string bytes = whole;
    std::memcpy(bytes.data() + kFirstKey + 20, &itself, sizeof itself);
    EXPECT_EQ(loss(bytes, kMachine + "System\\CurrentControlSet", HiveRegistry::Part::Itself), kMachine + "System");
    EXPECT_EQ(loss(bytes, kOldVersion, HiveRegistry::Part::Values), std::nullopt);
    EXPECT_EQ(loss(whole, kMachine + "Nothing", HiveRegistry::Part::Itself), std::nullopt);
}

// The root's first sub-key is at 60; what it names as the next one names a key at 57. That one's next is beyond the
// file, and what ends it there stands in the first one's link too: it would become 255, whose next is 60 again.
TEST_F(DamagedOldHive, KeyThatBeginsWithinAnotherIsCut) {
    struct Word {
        std::size_t place;  // counted from the tree's begin, as links are
        std::uint32_t word;
    };
    constexpr std::uint32_t kNowhere = 0xFFFFFFFF;
    constexpr Word kWords[] = {{60 + 12, kNowhere}, {60 + 16, kNowhere},  {60 + 20, 200}, {200 + 16, kNowhere},
                               {200 + 20, 57},      {255 + 16, kNowhere}, {255 + 20, 60}};
    std::string bytes = whole;
    for (const Word& one : kWords)
        std::memcpy(bytes.data() + 32 + one.place, &one.word, sizeof one.word);
    EXPECT_EQ(loss(bytes, kMachine + "System\\CurrentControlSet", HiveRegistry::Part::Itself), kMachine + "System");
}

TEST_F(DamagedOldHive, ValuesThatReachBeyondTheirKeyAreLost) {
    const std::size_t name = whole.find("VersionNumber4.10.2222");
    ASSERT_NE(name, std::string::npos);
    std::string bytes = whole;
    bytes[name - 1] = '\x7F';  // the upper half of the data's size
    EXPECT_EQ(loss(bytes, kOldVersion, HiveRegistry::Part::Values), kOldVersion);
    EXPECT_EQ(loss(bytes, kOldVersion, HiveRegistry::Part::Itself), std::nullopt);
}

}  // namespace
}  // namespace kvstation
