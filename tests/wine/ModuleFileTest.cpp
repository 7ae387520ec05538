// What the file kvcstat64.dll promises to the loader: its tables, its hardening, its size.
#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/wine/LoadedModule.h"
#include "tests/wine/StationModule.h"

namespace {

std::string ImportLine(const std::string& library, const std::string& function) {
    std::string line = "import " + library;
    CharLowerA(line.data());
    return line + " " + function;
}

// What simwin answers, and beside it the export and what is not answered, the C runtime's calls above all. A new
// dependency of the library is a reviewed change of either list.
std::vector<std::string> ListedTables() {
    std::vector<std::string> lines = {
#define SIMWIN_CALL(library, name) ImportLine(library, #name),
#define SIMWIN_ORDINAL(library, ordinal, name) ImportLine(library, "#" #ordinal),
#include "simwin/calls/Calls.inc"
    };
    std::ifstream file(KV_MODULE_TABLES);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> TablesOf(HMODULE module) {
    std::vector<std::string> lines;
    for (const Export& entry : ExportsOf(module))
        lines.push_back("export " + entry.name);
    for (const redirect::Import& import : redirect::importsOf(module))
        lines.push_back(ImportLine(std::string(import.library), import.function()));
    return lines;
}

class ModuleFileTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError(); }

    kvtest::StationModule module{kvtest::ReleaseFolder()};
};

TEST_F(ModuleFileTest, ExportsAndImportsAreExactlyTheListedOnes) {
    EXPECT_THAT(TablesOf(module.Library()), ::testing::UnorderedElementsAreArray(ListedTables()));
}

TEST_F(ModuleFileTest, IsHardenedWithHighEntropyAddressesAndNX) {
    constexpr unsigned kExpected = IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA | IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                                   IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    EXPECT_EQ(CharacteristicsOf(module.Library()) & kExpected, kExpected);
}

TEST_F(ModuleFileTest, HasAtMost150Kilobytes) {
    std::ifstream file(kvtest::ReleaseFolder() + "kvcstat64.dll", std::ios::binary | std::ios::ate);
    EXPECT_GT(file.tellg(), 0);
    EXPECT_LE(file.tellg(), 150 * 1024);
}

}  // namespace
