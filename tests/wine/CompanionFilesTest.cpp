// What the companions' files promise to the loader.
#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"
#include "tests/wine/LoadedModule.h"

namespace {

using testing::ElementsAre;
using testing::IsSubsetOf;

class Library {
  public:
    explicit Library(const char* name) : m_module(LoadLibraryA(name)) {
        EXPECT_NE(nullptr, m_module) << name << ": error " << GetLastError();
    }

    operator HMODULE() const { return m_module.get(); }

  private:
    UniqueLibrary m_module;
};

std::vector<std::string> NamesOf(HMODULE module) {
    std::vector<std::string> names;
    for (const Export& item : ExportsOf(module))
        names.push_back(item.name);
    return names;
}

TEST(CompanionFiles, EnvironmentLibraryExportsOrdinalsTwoAndThreeWithoutNames) {
    EXPECT_THAT(ExportsOf(Library("kvenv64.dll")), ElementsAre(Export{2, ""}, Export{3, ""}));
}

TEST(CompanionFiles, TheOthersExportTheirOperationsByName) {
    EXPECT_THAT(NamesOf(Library("KVTSWRP64.dll")),
                testing::UnorderedElementsAre("ZRTSWRPInit", "ZRTSWRPFree", "ZRTSQueryClientName", "ZRTSQueryIPAddress",
                                              "ZRTSQuerySessionID", "ZRTSDomainName"));
    EXPECT_THAT(NamesOf(Library("kvnetapi64.dll")),
                testing::UnorderedElementsAre("KVGetUserName", "KVNDSWhoAmI", "KVGetDomainName"));
    EXPECT_THAT(NamesOf(Library("ZRtrc64.dll")), ElementsAre("ZRTrace"));
}

class EveryCompanion : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(CompanionFiles, EveryCompanion,
                         testing::Values("kvenv64.dll", "KVTSWRP64.dll", "kvnetapi64.dll", "ZRtrc64.dll"),
                         [](const auto& test) { return std::string(test.param, std::strcspn(test.param, ".")); });

TEST_P(EveryCompanion, NeedsNothingButWindowsAndItsRuntime) {
    std::vector<std::string> libraries;
    for (const auto& [library, functions] : ImportsOf(Library(GetParam())))
        libraries.push_back(library);
    EXPECT_THAT(libraries,
                IsSubsetOf({"kernel32.dll", "msvcrt.dll", "mpr.dll", "netapi32.dll", "user32.dll", "ws2_32.dll"}));
}

TEST_P(EveryCompanion, IsHardened) {
    constexpr unsigned kExpected = IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA | IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                                   IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    EXPECT_EQ(kExpected, CharacteristicsOf(Library(GetParam())) & kExpected);
}

TEST_P(EveryCompanion, TellsItsVersionAndName) {
    std::vector<char> block(GetFileVersionInfoSizeA(GetParam(), nullptr));
    ASSERT_FALSE(block.empty());
    ASSERT_TRUE(GetFileVersionInfoA(GetParam(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* name = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\StringFileInfo\\040904E4\\OriginalFilename", &name, &length));
    EXPECT_STREQ(GetParam(), static_cast<const char*>(name));
}

// The first thread-local index and the number of handles that are in use: what a library keeps when it is unloaded.
std::pair<DWORD, DWORD> Kept() {
    const DWORD index = TlsAlloc();
    TlsFree(index);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {index, handles};
}

TEST_P(EveryCompanion, KeepsNothingWhenItIsUnloaded) {
    // What Windows itself keeps, it keeps from the first load on.
    FreeLibrary(LoadLibraryA(GetParam()));
    const auto before = Kept();
    for (int load = 0; load < 10; ++load) {
        FreeLibrary(LoadLibraryA(GetParam()));
        EXPECT_EQ(nullptr, GetModuleHandleA(GetParam()));
    }
    EXPECT_EQ(before, Kept());
}

}  // namespace
