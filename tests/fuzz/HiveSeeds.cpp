// hive-seeds FOLDER: writes hives, logs and files of Windows 9x into the folders fuzz_hive and fuzz_log in it, for the
// fuzzers to begin with.
#include <cstdio>
#include <filesystem>
#include <string>

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/platform/Files.h"
#include "tests/kvstation/hives/HiveWriter.h"
#include "tests/kvstation/hives/LogWriter.h"
#include "tests/kvstation/hives/OldHiveWriter.h"

namespace {

constexpr const char* kSystem = "HKEY_LOCAL_MACHINE\\SYSTEM";

simwin::RegistryTree smallTree() {
    const std::string set = std::string(kSystem) + "\\ControlSet001";
    simwin::RegistryTree tree;
    tree.set(std::string(kSystem) + "\\Select", simwin::dwordValue("Current", 1));
    tree.set(set + "\\Control\\ComputerName\\ComputerName", simwin::textValue("ComputerName", "LAGER-04"));
    tree.set(set + "\\Services\\RDPNP\\Linkage", simwin::multiTextValue("Bind", {"\\Device\\A_B", "C"}));
    tree.set(set + "\\Enum", simwin::binaryValue("", "\x01\x02"));
    return tree;
}

// A list of 600 keys lies in several parts, and a long value in several cells.
simwin::RegistryTree largeTree() {
    simwin::RegistryTree tree = smallTree();
    for (int i = 0; i < 600; ++i)
        tree.create(std::string(kSystem) + "\\ControlSet001\\Services\\Service" + std::to_string(i));
    tree.set(std::string(kSystem) + "\\Setup", simwin::binaryValue("Long", std::string(20000, 'x')));
    return tree;
}

void writeHiveSeeds(const std::string& folder) {
    std::filesystem::create_directories(folder);
    kvstation::writeFile(folder + "/empty", kvstation::emptyHive());
    kvstation::writeHive(folder + "/small", smallTree(), kSystem);
    kvstation::writeHive(folder + "/large", largeTree(), kSystem);
    kvstation::writeFile(folder + "/old-small", kvstation::oldHive(smallTree(), "HKEY_LOCAL_MACHINE"));
    kvstation::writeFile(folder + "/old-large", kvstation::oldHive(largeTree(), "HKEY_LOCAL_MACHINE"));
}

std::string firstOf(std::size_t sectors, const std::string& logs) {
    return std::string{static_cast<char>(sectors & 0xFF), static_cast<char>(sectors >> 8)} + logs;
}

void writeLogSeeds(const std::string& folder) {
    std::filesystem::create_directories(folder);
    const std::string hive = kvstation::unfinished(kvstation::emptyHive());
    const std::string page(kvstation::kPage, 'x');
    const std::uint32_t had = kvstation::BaseBlock(hive).secondSequence();
    const std::string first = kvstation::logOfEntries(hive, {{had, {{0, page}}}});
    const std::string second = kvstation::logOfEntries(hive, {{had + 1, {{0, page}}}, {had + 2, {}}});
    kvstation::writeFile(folder + "/entries", firstOf(first.size() / kvstation::kSector, first + second));
    kvstation::writeFile(folder + "/pages", firstOf(0xFFFF, kvstation::logOfPages(hive, {{512, page.substr(0, 512)}})));
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("hive-seeds: which folder?\n", stderr);
        return 2;
    }
    writeHiveSeeds(std::string(arguments[1]) + "/fuzz_hive");
    writeLogSeeds(std::string(arguments[1]) + "/fuzz_log");
    return 0;
}
