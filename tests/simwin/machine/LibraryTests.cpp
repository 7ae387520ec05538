// Libraries and memory.
#include <gmock/gmock.h>

#include <cstring>

#include "simwin/calls/CallTable.h"
#include "simwin/calls/Calls.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(LoadLibraryA, LoadsByAnyLetterCaseWithAndWithoutTheEnding) {
    Running running;
    const HMODULE first = LoadLibraryA("WS2_32.DLL");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(LoadLibraryA("ws2_32"), first);
    EXPECT_EQ(LoadLibraryA("C:\\WINDOWS\\system32\\ws2_32.dll"), first);
    EXPECT_THAT(running.machine.openHandles(HandleKind::Library), SizeIs(3));
    EXPECT_EQ(running.machine.openHandles(HandleKind::Library).front().what, "WS2_32.dll");
}

TEST(LoadLibraryA, DoesNotFindWhatIsMissingOrUnknown) {
    Station station;
    station.missing = {"WSOCK32.dll"};
    const Running running(station);
    for (const char* name :
         {"wsock32.dll", "wfapi64.dll", "KVVCD32.dll", "other.dll", "", "\\", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(LoadLibraryA(name), nullptr);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    }
}

TEST(LoadLibraryA, FindsTheOptionalLibrariesWhereTheyAreDescribed) {
    Station station;
    station.citrix.emplace();
    station.vcdVersion = -41;
    const Running running(station);
    EXPECT_NE(LoadLibraryA("wfapi64.dll"), nullptr);
    const HMODULE library = LoadLibraryA("KVVCD32.dll");
    ASSERT_NE(library, nullptr);
    const auto version =
        reinterpret_cast<int (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "KVGetVCDVersion")));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version(), -41);
}

TEST(GetModuleHandleA, FindsOnlyWhatIsLoaded) {
    Running running;
    EXPECT_NE(GetModuleHandleA("KERNEL32.DLL"), nullptr);
    EXPECT_NE(GetModuleHandleA("ntdll.dll"), nullptr);
    EXPECT_NE(GetModuleHandleA(nullptr), nullptr);
    EXPECT_EQ(GetModuleHandleA("powrprof.dll"), nullptr);
    const HMODULE library = LoadLibraryA("powrprof.dll");
    EXPECT_EQ(GetModuleHandleA("powrprof.dll"), library);
    EXPECT_THAT(running.machine.openHandles(HandleKind::Library), SizeIs(1));
}

TEST(FreeLibrary, FreesEachLoadOnce) {
    Running running;
    const HMODULE library = LoadLibraryA("powrprof.dll");
    LoadLibraryA("powrprof.dll");
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_FALSE(FreeLibrary(library));
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
    EXPECT_FALSE(FreeLibrary(nullptr));
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
    EXPECT_FALSE(FreeLibrary(GetModuleHandleA("KERNEL32.DLL")));
    EXPECT_THAT(running.machine.misuses(), SizeIs(2));
}

TEST(GetProcAddress, HeedsTheLetterCaseOfAFunctionAndTheListOfWhatIsMissing) {
    Station station;
    station.missing = {"netapi32.dll!NetWkstaGetInfo"};
    Running running(station);
    const HMODULE library = LoadLibraryA("netapi32.dll");
    EXPECT_EQ(GetProcAddress(library, "NetWkstaGetInfo"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_NE(GetProcAddress(library, "NetApiBufferFree"), nullptr);
    EXPECT_EQ(GetProcAddress(library, "netapibufferfree"), nullptr);
    EXPECT_EQ(GetProcAddress(library, "gethostname"), nullptr);
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_EQ(GetProcAddress(nullptr, "NetApiBufferFree"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_THAT(running.machine.misuses(), SizeIs(1)) << "the program itself may have a function of the name";
    const HMODULE unloaded = LoadLibraryA("powrprof.dll");
    FreeLibrary(unloaded);
    EXPECT_EQ(GetProcAddress(unloaded, "CallNtPowerInformation"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(GetProcAddress, FindsTheEnvironmentLibrarysFunctionsByOrdinalAlone) {
    const Running running;
    const HMODULE library = LoadLibraryA("kvenv64.dll");
    const auto ordinal = [](std::uintptr_t number) { return reinterpret_cast<const char*>(number); };
    EXPECT_EQ(reinterpret_cast<const void*>(GetProcAddress(library, ordinal(2))),
              reinterpret_cast<const void*>(&sim_KVSetEnv));
    EXPECT_EQ(reinterpret_cast<const void*>(GetProcAddress(library, ordinal(3))),
              reinterpret_cast<const void*>(&sim_KVGetEnv));
    EXPECT_EQ(GetProcAddress(library, ordinal(4)), nullptr);
    EXPECT_EQ(GetProcAddress(library, ordinal(0)), nullptr);
    EXPECT_EQ(GetProcAddress(library, "KVSetEnv"), nullptr);
}

TEST(CallTable, NamesEveryFunctionOfALibraryOnce) {
    for (const CallEntry& one : callTable()) {
        int same = 0;
        for (const CallEntry& other : callTable())
            if (one.library == other.library && one.name == other.name)
                ++same;
        EXPECT_EQ(same, 1) << one.library << " " << one.name;
        EXPECT_NE(one.address, nullptr);
    }
}

TEST(LocalAlloc, GivesZeroedMemoryThatIsFreedOnce) {
    Running running;
    auto* block = static_cast<char*>(LocalAlloc(LPTR, 3));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::string(block, 3), std::string(3, '\0'));
    EXPECT_THAT(running.machine.openHandles(HandleKind::LocalBlock), SizeIs(1));
    EXPECT_EQ(LocalFree(block), nullptr);
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
    EXPECT_EQ(LocalFree(block), static_cast<void*>(block));
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
    EXPECT_EQ(LocalFree(nullptr), nullptr);
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
}

// What a block holds that was just allocated.
std::string freshGlobal(UINT flags, SIZE_T size, char fill) {
    const HGLOBAL block = GlobalAlloc(flags, size);
    auto* memory = static_cast<char*>(GlobalLock(block));
    std::string held(memory, size);
    std::memset(memory, fill, size);
    GlobalUnlock(block);
    GlobalFree(block);
    return held;
}

TEST(GlobalAlloc, GivesNoZerosThatItIsNotAskedForButWhatTheLastBlockHeld) {
    const Running running;
    EXPECT_EQ(freshGlobal(GMEM_MOVEABLE, 2, 'a'), "\xA5\xA5");
    EXPECT_EQ(freshGlobal(GMEM_MOVEABLE, 3, 'b'), "aa\xA5");
    EXPECT_EQ(freshGlobal(GHND, 3, 'c'), std::string(3, '\0'));
    EXPECT_EQ(freshGlobal(GMEM_MOVEABLE, 2, 'd'), "cc");
    EXPECT_EQ(freshGlobal(GMEM_FIXED, 4, 'e'), "dd\xA5\xA5");
    EXPECT_EQ(freshGlobal(GPTR, 3, 'f'), std::string(3, '\0'));
}

TEST(GlobalAlloc, GivesMovableMemoryBehindAHandle) {
    Running running;
    const HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, 8);
    ASSERT_NE(handle, nullptr);
    void* memory = GlobalLock(handle);
    ASSERT_NE(memory, nullptr);
    EXPECT_NE(memory, handle);
    std::memset(memory, 1, 8);
    EXPECT_EQ(GlobalLock(handle), memory);
    EXPECT_TRUE(GlobalUnlock(handle));
    EXPECT_FALSE(GlobalUnlock(handle));
    EXPECT_EQ(GetLastError(), DWORD{NO_ERROR});
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_FALSE(GlobalUnlock(handle));
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
    EXPECT_EQ(GlobalFree(handle), nullptr);
    EXPECT_EQ(GlobalLock(handle), nullptr);
    EXPECT_THAT(running.machine.misuses(), SizeIs(2));
}

TEST(GlobalAlloc, RefusesWhatNoMachineHas) {
    const Running running;
    volatile SIZE_T size = SIZE_T{1} << 40;  // the compiler knows better than to let a constant pass
    EXPECT_EQ(GlobalAlloc(GMEM_MOVEABLE, size), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_ENOUGH_MEMORY});
    EXPECT_EQ(LocalAlloc(LPTR, size), nullptr);
    EXPECT_EQ(HeapAlloc(GetProcessHeap(), 0, size), nullptr);
}

TEST(HeapAlloc, GivesZerosWhereItIsAskedForThem) {
    const Running running;
    for (const DWORD flags : {DWORD{0}, DWORD{HEAP_ZERO_MEMORY}}) {
        auto* block = static_cast<char*>(HeapAlloc(GetProcessHeap(), flags, 3));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(std::string(block, 3), std::string(3, flags != 0 ? '\0' : '\xA5'));
        HeapFree(GetProcessHeap(), 0, block);
    }
}

TEST(HeapAlloc, CountsBlocksAndNoticesAStrangeOne) {
    Running running;
    void* block = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 4);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::string(static_cast<char*>(block), 4), std::string(4, '\0'));
    EXPECT_EQ(running.machine.openHeapBlocks(), 1u);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, block));
    EXPECT_EQ(running.machine.openHeapBlocks(), 0u);
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
    EXPECT_FALSE(HeapFree(GetProcessHeap(), 0, block));
    EXPECT_FALSE(HeapFree(nullptr, 0, block));
    EXPECT_THAT(running.machine.misuses(), SizeIs(2));
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, nullptr));
}

TEST(HeapAlloc, GivesBackToTheMachineThatItCameFrom) {
    Running first;
    void* block = HeapAlloc(GetProcessHeap(), 0, 0);
    {
        Running second;
        EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, block));
        EXPECT_EQ(second.machine.openHeapBlocks(), 0u);
        EXPECT_THAT(second.machine.misuses(), IsEmpty());
    }
    EXPECT_EQ(first.machine.openHeapBlocks(), 0u);
}

TEST(HeapAlloc, WorksWithoutAMachine) {
    void* block = HeapAlloc(GetProcessHeap(), 0, 4);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, block));
}

TEST(HeapAlloc, AnswersNullOnceOnPurpose) {
    Running running;
    running.machine.failAllocation(2);
    void* first = HeapAlloc(GetProcessHeap(), 0, 1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(HeapAlloc(GetProcessHeap(), 0, 1), nullptr);
    void* third = HeapAlloc(GetProcessHeap(), 0, 1);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(running.machine.allocations(), 3u);
    EXPECT_EQ(running.machine.calls(), 0u);
    HeapFree(GetProcessHeap(), 0, first);
    HeapFree(GetProcessHeap(), 0, third);
}

}  // namespace
