// A damaged hive is read or refused in one line that names its file; nothing else happens.
#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "kvstation/import/HiveImport.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "tests/kvstation/TemporaryFolder.h"
#include "tests/kvstation/hives/HiveWriter.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::textValue;

const std::string kCurrentSet = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet";

constexpr std::size_t kSum = 508;

RegistryTree smallRegistry() {
    RegistryTree tree;
    tree.set(kCurrentSet + "\\Control\\ComputerName\\ComputerName", textValue("ComputerName", "LAGER-04"));
    tree.set(kCurrentSet + "\\Control\\NetworkProvider\\Order", textValue("ProviderOrder", "RDPNP"));
    tree.set(kCurrentSet + "\\Services\\RDPNP\\NetworkProvider", textValue("Name", "Microsoft Terminal Services"));
    tree.set(kCurrentSet + "\\Services\\RDPNP\\Linkage", simwin::multiTextValue("Bind", {"\\Device\\A_B", "C"}));
    tree.set(kCurrentSet + "\\Enum\\Display\\DEL4001\\5", textValue("DeviceDesc", "Dell P2419H"));
    return tree;
}

// The sum is right again, or nothing behind the header would ever be looked at.
void correctSum(std::string& hive) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < kSum; i += sizeof sum) {
        std::uint32_t word = 0;
        std::memcpy(&word, hive.data() + i, sizeof word);
        sum ^= word;
    }
    std::memcpy(hive.data() + kSum, &sum, sizeof sum);
}

class DamagedHive : public testing::Test {
  protected:
    DamagedHive() {
        writeHives(folder / "", smallRegistry());
        whole = readFile(folder / "SYSTEM", 1 << 24);
    }

    // Every key and value below a key.
    static void readAll(HiveRegistry& registry, const std::string& path, int depth) {
        RegistryTree tree;
        if (!registry.copyKey(path, tree) || depth == 0)
            return;
        const auto key = tree.find(path);
        for (std::size_t i = 0; const std::string* name = key ? tree.subKeyName(*key, i) : nullptr; ++i)
            readAll(registry, path + "\\" + *name, depth - 1);
    }

    template <class Read>
    void expectReadOrRefused(std::string hive, Read read) {
        if (hive.size() > kSum + sizeof(std::uint32_t))
            correctSum(hive);
        writeFile(folder / "SYSTEM", hive);
        try {
            HiveRegistry registry(findHives(folder / "", ""));
            read(registry);
        } catch (const Failure& error) {
            EXPECT_THAT(error.what(), testing::StartsWith(folder / "SYSTEM"));
            EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
        }
    }

    TemporaryFolder folder;
    std::string whole;
};

constexpr std::array<unsigned char, 3> kMasks = {0xFF, 0x01, 0x80};

// Behind its sum a hive's first page holds nothing that anybody reads: there a few places stand for all.
std::size_t nextPlace(std::size_t place) {
    constexpr std::size_t kPage = 4096;
    return place > kSum + sizeof(std::uint32_t) && place < kPage ? place + 64 : place + 1;
}

TEST_F(DamagedHive, InAnyByteIsReadOrRefused) {
    for (std::size_t i = 0; i < whole.size(); i = nextPlace(i)) {
        SCOPED_TRACE("byte " + std::to_string(i));
        std::string hive = whole;
        hive[i] = static_cast<char>(hive[i] ^ kMasks[i % kMasks.size()]);
        expectReadOrRefused(hive, [](HiveRegistry& registry) { readAll(registry, kCurrentSet, 8); });
    }
}

TEST_F(DamagedHive, InManyBytesIsImportedOrRefused) {
    for (std::size_t i = 0; i < whole.size(); i += 31) {
        SCOPED_TRACE("byte " + std::to_string(i));
        std::string hive = whole;
        hive[i] = static_cast<char>(hive[i] ^ 0xFF);
        expectReadOrRefused(hive, [](HiveRegistry& registry) { importStation(registry, {}, Reach::StationItself); });
    }
}

// Each 32-bit word as another place of the file: keys that are their own sub-keys, lists that go round in circles,
// values that lie over each other, sizes beyond the end.
TEST_F(DamagedHive, WithWordsThatPointElsewhereIsReadOrRefused) {
    constexpr std::array<std::uint32_t, 5> kWords = {0x20, 0x1000, 0x7FFFFFFF, 0x80000004, 0xFFFFFFFF};
    for (std::size_t i = 0x20; i + sizeof(std::uint32_t) <= whole.size(); i += sizeof(std::uint32_t)) {
        const std::uint32_t word = kWords[i / sizeof word % kWords.size()];
        SCOPED_TRACE("word " + std::to_string(word) + " at byte " + std::to_string(i));
        std::string hive = whole;
        std::memcpy(hive.data() + i, &word, sizeof word);
        expectReadOrRefused(hive, [](HiveRegistry& registry) { readAll(registry, kCurrentSet, 8); });
    }
}

TEST_F(DamagedHive, CutAtAnyLengthIsReadOrRefused) {
    for (std::size_t length = 0; length < whole.size(); length += 100)
        expectReadOrRefused(whole.substr(0, length), [](HiveRegistry& registry) { readAll(registry, kCurrentSet, 8); });
}

// A key of the list is none any more, as where a disk has lost a block of it.
TEST_F(DamagedHive, LosesTheKeysThatAreNone) {
    const std::size_t name = whole.find("NetworkProvider");
    constexpr std::size_t kBeforeName = 76;  // of a key, which begins with "nk"
    ASSERT_EQ(whole.substr(name - kBeforeName, 2), "nk");
    std::string hive = whole;
    hive.replace(name - kBeforeName, 2, "xx");
    writeFile(folder / "SYSTEM", hive);
    HiveRegistry registry(findHives(folder / "", ""));
    using Part = HiveRegistry::Part;
    const std::string order = kCurrentSet + "\\Control\\NetworkProvider\\Order";
    EXPECT_EQ(registry.lossAt(order, Part::Values), kCurrentSet + "\\Control\\NetworkProvider");
    EXPECT_EQ(registry.lossAt(kCurrentSet + "\\Control", Part::SubKeys), kCurrentSet + "\\Control");
    EXPECT_EQ(registry.lossAt(kCurrentSet + "\\Control", Part::Values), std::nullopt);
    EXPECT_EQ(registry.lossAt(kCurrentSet + "\\Control\\ComputerName", Part::Itself), std::nullopt);
    EXPECT_EQ(registry.lossAt(kCurrentSet + "\\Nothing", Part::Itself), std::nullopt);
    const ImportedStation imported = importStation(registry, {}, Reach::StationItself);
    EXPECT_EQ(imported.station.computerName, "LAGER-04");
    EXPECT_THAT(imported.station.unknown, testing::Contains(kCurrentSet + "\\Control\\NetworkProvider"));
    EXPECT_THAT(imported.undescribed.front(),
                testing::AllOf(testing::HasSubstr(kCurrentSet + "\\Control\\NetworkProvider, "),
                               testing::EndsWith(": lost where the hive is damaged")));
}

// A value of the list is none any more.
void breakValue(const std::string& file, const std::string& name) {
    std::string hive = readFile(file, 1 << 24);
    constexpr std::size_t kBeforeName = 20;  // of a value, which begins with "vk"
    const std::size_t place = hive.find(name) - kBeforeName;
    ASSERT_EQ(hive.substr(place, 2), "vk");
    hive.replace(place, 2, "xx");
    writeFile(file, hive);
}

TEST_F(DamagedHive, LosesTheVersionsPartsWhoseValuesAreNone) {
    const std::string version = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
    RegistryTree tree = smallRegistry();
    tree.set(version, textValue("CurrentVersion", "4.0"));
    tree.set(version, textValue("CurrentBuildNumber", "1381"));
    tree.set(version, textValue("CSDVersion", "Service Pack 6"));
    tree.set(kCurrentSet + "\\Control\\ProductOptions", simwin::multiTextValue("ProductSuite", {"Terminal Server"}));
    writeHives(folder / "", tree);
    const auto imported = [&] {
        HiveRegistry registry(findHives(folder / "", ""));
        return importStation(registry, {}, Reach::StationItself);
    };
    const auto ofVersion = testing::Contains(testing::StartsWith("version"));
    EXPECT_THAT(imported().station.unknown, testing::Not(ofVersion));
    breakValue(folder / "SOFTWARE", "CSDVersion");
    breakValue(folder / "SYSTEM", "ProductSuite");
    const ImportedStation damaged = imported();
    EXPECT_EQ(damaged.station.version->build, 1381u);
    EXPECT_THAT(damaged.station.unknown, testing::IsSupersetOf({"version.servicePack", "version.terminalServices"}));
    EXPECT_THAT(damaged.undescribed,
                testing::Contains(testing::AllOf(testing::HasSubstr("version.servicePack"),
                                                 testing::EndsWith(": lost where the hive is damaged"))));
}

// Lists of lists of lists, each of which a short file can have in endless number.
TEST_F(DamagedHive, WithNestedListsEnds) {
    std::string hive = whole;
    const auto list = static_cast<std::uint32_t>(hive.size() - 4096);
    hive.resize(hive.size() + 4096);
    const auto put = [&](std::size_t place, std::uint32_t number) { std::memcpy(hive.data() + place, &number, 4); };
    put(40, list + 4096);
    std::memcpy(hive.data() + 4096 + list, "hbin", 4);
    put(4096 + list + 4, list);
    put(4096 + list + 8, 4096);
    constexpr std::uint32_t kEntries = 900;
    put(4096 + list + 32, 0U - 4064U);
    put(4096 + list + 36, kEntries << 16 | 0x6972);  // "ri"
    for (std::uint32_t i = 0; i < kEntries; ++i)
        put(4096 + list + 40 + i * 4, list + 32);
    put(4096 + 32 + 32, list + 32);  // the root's list
    expectReadOrRefused(hive, [](HiveRegistry& registry) { readAll(registry, kCurrentSet, 8); });
}

TEST_F(DamagedHive, WholeIsNot) {
    HiveRegistry registry(findHives(folder / "", ""));
    EXPECT_EQ(importStation(registry, {}, Reach::StationItself).station.computerName, "LAGER-04");
}

}  // namespace
}  // namespace kvstation
