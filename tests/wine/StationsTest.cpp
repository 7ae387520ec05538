// The real kvcstat64.dll on every described station: it must give what the native build gives, byte for byte, since
// both are held against all the bytes that a station's expectation states.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "simwin/station/StationReader.h"
#include "tests/stations/Leftovers.h"
#include "tests/wine/CrashReport.h"
#include "tests/wine/ProcessUsage.h"
#include "tests/wine/SimulatedModule.h"

namespace {

using kvtest::CollectedStation;
using simwin::HandleKind;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class StationsTest : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
        kvtest::NameStationInCrashes(GetParam());
    }
    void TearDown() override { kvtest::NameStationInCrashes({}); }

    kvtest::SimulatedModule module;
    simwin::Machine machine{simwin::readStation(kvtest::folderOf(GetParam()))};
};

TEST_P(StationsTest, RealLibraryGivesTheRecordEnvironmentTraceAndOutputThatItMust) {
    const CollectedStation found = module.Collect(machine);
    EXPECT_THAT(kvtest::differences(kvtest::readExpectedStation(kvtest::folderOf(GetParam())), found), IsEmpty());
    for (const simwin::TraceLine& line : found.trace)
        EXPECT_EQ(line.component, "KelVor - Station registration (client)");
}

TEST_P(StationsTest, EachCallOfTheRealLibraryLeavesOneProcessAndOneTokenHandleOpenAndNoRealOne) {
    module.Collect(machine);
    const std::size_t before = kvtest::CountOpenHandles().all;
    module.Collect(machine);
    EXPECT_EQ(kvtest::CountOpenHandles().all, before);
    EXPECT_THAT(kvtest::unexpectedLeftovers(machine, 2), IsEmpty());
    EXPECT_THAT(machine.openHandles(HandleKind::Process), SizeIs(2));
    // Windows 9x has processes without tokens.
    const bool hasTokens = machine.station().version->platformId == VER_PLATFORM_WIN32_NT;
    EXPECT_THAT(machine.openHandles(HandleKind::Token), SizeIs(hasTokens ? 2 : 0));
}

INSTANTIATE_TEST_SUITE_P(Stations, StationsTest, ::testing::ValuesIn(kvtest::stationNames()),
                         kvtest::NameOfStationTest());

// What the language's runtime needs for itself, in the compiler's own parts of the library: memory, texts, numbers,
// locks, exceptions. Nothing of it tells anything about the station.
constexpr std::string_view kRuntime[] = {
    "KERNEL32.dll!CloseHandle",
    "KERNEL32.dll!CreateSemaphoreW",
    "KERNEL32.dll!DeleteCriticalSection",
    "KERNEL32.dll!EnterCriticalSection",
    "KERNEL32.dll!GetCurrentThreadId",
    "KERNEL32.dll!InitializeCriticalSection",
    "KERNEL32.dll!LeaveCriticalSection",
    "KERNEL32.dll!RaiseException",
    "KERNEL32.dll!ReleaseSemaphore",
    "KERNEL32.dll!RtlCaptureContext",
    "KERNEL32.dll!RtlLookupFunctionEntry",
    "KERNEL32.dll!RtlUnwindEx",
    "KERNEL32.dll!RtlVirtualUnwind",
    "KERNEL32.dll!SetLastError",
    "KERNEL32.dll!Sleep",
    "KERNEL32.dll!TlsAlloc",
    "KERNEL32.dll!TlsFree",
    "KERNEL32.dll!TlsGetValue",
    "KERNEL32.dll!TlsSetValue",
    "KERNEL32.dll!VirtualProtect",
    "KERNEL32.dll!VirtualQuery",
    "KERNEL32.dll!WaitForSingleObject",
    "msvcrt.dll!__iob_func",
    "msvcrt.dll!_amsg_exit",
    "msvcrt.dll!_initterm",
    "msvcrt.dll!_lock",
    "msvcrt.dll!_unlock",
    "msvcrt.dll!_vscprintf",
    "msvcrt.dll!_vsnprintf",
    "msvcrt.dll!abort",
    "msvcrt.dll!atoi",
    "msvcrt.dll!calloc",
    "msvcrt.dll!free",
    "msvcrt.dll!fwrite",
    "msvcrt.dll!malloc",
    "msvcrt.dll!memmove",
    "msvcrt.dll!printf",
    "msvcrt.dll!realloc",
    "msvcrt.dll!strchr",
    "msvcrt.dll!strcmp",
    "msvcrt.dll!strlen",
    "msvcrt.dll!strncmp",
    "msvcrt.dll!strncpy",
    "msvcrt.dll!strstr",
    "msvcrt.dll!strtok",
    "msvcrt.dll!strtol",
    "msvcrt.dll!vfprintf",
    "USER32.dll!LoadStringA",  // the library's own resources
};

TEST(RedirectionTest, LeavesNothingOfThePlatformUnanswered) {
    const kvtest::SimulatedModule module;
    ASSERT_TRUE(module.IsLoaded());
    std::vector<std::string> unanswered;
    for (const redirect::Import& import : module.Unanswered())
        unanswered.push_back(import.text());
    EXPECT_THAT(unanswered, ::testing::UnorderedElementsAreArray(kRuntime));
}

TEST(RedirectionTest, EndsWithTheLibraryAsItWas) {
    const kvtest::StationModule module(kvtest::ReleaseFolder());
    ASSERT_TRUE(module.IsLoaded());
    const auto addresses = [&] {
        std::vector<ULONG_PTR> all;
        for (const redirect::Import& import : redirect::importsOf(module.Library()))
            all.push_back(*import.slot);
        return all;
    };
    const std::vector<ULONG_PTR> before = addresses();
    {
        const kvtest::SimulatedModule simulated;
        EXPECT_NE(addresses(), before);
    }
    EXPECT_EQ(addresses(), before);
}

TEST(GuardedRecordTest, TakesItsLastByteAndCrashesOnOneBehindIt) {
    kvtest::GuardedRecord record;
    volatile char* bytes = record.data();
    bytes[KVCSTAT_RECORD_SIZE - 1] = 'x';
    EXPECT_EQ(bytes[KVCSTAT_RECORD_SIZE - 1], 'x');
    EXPECT_DEATH(
        {
            kvtest::NameStationInCrashes("a-guarded-record");
            bytes[KVCSTAT_RECORD_SIZE] = 'x';
        },
        "a-guarded-record: exception 0xC0000005 at simulated_test\\.exe\\+0x\\w+, access to 0x\\w+000\n");
}

TEST(CrashReportTest, NamesTheStationAndTheAddress) {
    const kvtest::SimulatedModule module;
    ASSERT_TRUE(module.IsLoaded());
    simwin::Machine machine{simwin::Station()};
    EXPECT_DEATH(
        {
            kvtest::NameStationInCrashes("a-described-station");
            module.CollectInto(nullptr, machine);
        },
        "a-described-station: exception 0xC0000005 at kvcstat64\\.dll\\+0x\\w+, access to 0x0000000000000\\w+");
}

}  // namespace
