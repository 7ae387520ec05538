// Very many calls, loads and unloads in one process: what each leaves behind, and that nothing else does.
// KV_SOAK says how many (200 unless told).
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "simwin/station/StationReader.h"
#include "tests/stations/QuietOutput.h"
#include "tests/wine/CrashReport.h"
#include "tests/wine/NetworkAdapters.h"
#include "tests/wine/ProcessUsage.h"
#include "tests/wine/SimulatedModule.h"
#include "tests/wine/StableFields.h"

namespace {

using kvtest::MeasureUsage;
using kvtest::ProcessUsage;
using kvtest::StableFields;
using testing::IsEmpty;

// Windows and Wine keep things of their own in the first rounds: library data, caches, a resolver.
constexpr std::size_t kWarmUps = 10;

// A heap takes its memory in large pieces.
constexpr std::size_t kHeapPiece = std::size_t{256} * 1024;

std::size_t Rounds() {
    const char* wanted = std::getenv("KV_SOAK");
    const long rounds = wanted != nullptr ? std::strtol(wanted, nullptr, 10) : 0;
    return rounds > 0 ? static_cast<std::size_t>(rounds) : 200;
}

double Growth(std::size_t before, std::size_t after, std::size_t rounds) {
    return (static_cast<double>(after) - static_cast<double>(before)) / static_cast<double>(rounds);
}

class Clock {
  public:
    double MillisecondsPer(std::size_t rounds) const {
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - m_start;
        return passed.count() / static_cast<double>(rounds);
    }

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

void Print(const char* what, std::size_t rounds, const Clock& clock, const ProcessUsage& before,
           const ProcessUsage& after) {
    std::printf(
        "%zu %s: %.2f ms, %+.3f handles, %+.3f heap blocks of %+.1f bytes, %+.1f private bytes, "
        "%+.3f thread-local indexes for each (%zu private bytes in the end)\n",
        rounds, what, clock.MillisecondsPer(rounds), Growth(before.handles.all, after.handles.all, rounds),
        Growth(before.heapBlocks, after.heapBlocks, rounds), Growth(before.heapBytes, after.heapBytes, rounds),
        Growth(before.privateBytes, after.privateBytes, rounds),
        Growth(after.freeTlsIndexes, before.freeTlsIndexes, rounds), after.privateBytes);
}

std::string CollectHere(const kvtest::StationModule& module, kvtest::GuardedRecord& record) {
    record.Fill('\0');
    module.Collect(record.data());
    return std::string(record.data(), KVCSTAT_RECORD_SIZE);
}

// The stable fields that change among that many calls, of which a change makes the last.
std::vector<std::string> ChangedFields(std::size_t rounds, const kvtest::StationModule& module,
                                       kvtest::GuardedRecord& record) {
    const kvtest::QuietOutput quiet;
    const std::vector<std::string> first = StableFields(CollectHere(module, record));
    std::vector<std::string> changed;
    for (std::size_t i = 1; i < rounds && changed.empty(); ++i) {
        const std::vector<std::string> fields = StableFields(CollectHere(module, record));
        for (std::size_t k = 0; k < first.size(); ++k)
            if (fields[k] != first[k])
                changed.push_back("call " + std::to_string(i + 1) + ": " + fields[k] + ", was " + first[k]);
    }
    return changed;
}

// What the library keeps of one call, when everything around it has settled.
ProcessUsage UsageOfOneCall(const kvtest::StationModule& module, kvtest::GuardedRecord& record) {
    const ProcessUsage before = MeasureUsage();
    CollectHere(module, record);
    const ProcessUsage after = MeasureUsage();
    return {{}, after.heapBlocks - before.heapBlocks, after.heapBytes - before.heapBytes, 0, 0};
}

TEST(SoakTest, EachCallOnThisStationLeavesTwoHandlesAndItsHardwareCollectorAndTheRecordStays) {
    const kvtest::StationModule module(kvtest::ReleaseFolder());
    ASSERT_TRUE(module.IsLoaded());
    kvtest::GuardedRecord record;
    kvtest::AwaitNetworkAdapters();
    ASSERT_THAT(ChangedFields(kWarmUps, module, record), IsEmpty());
    const ProcessUsage one = UsageOfOneCall(module, record);

    const std::size_t rounds = Rounds();
    const ProcessUsage before = MeasureUsage();
    const Clock clock;
    EXPECT_THAT(ChangedFields(rounds, module, record), IsEmpty());
    const ProcessUsage after = MeasureUsage();
    Print("calls of the real library on this station", rounds, clock, before, after);

    EXPECT_EQ(after.handles.processes - before.handles.processes, rounds);
    EXPECT_EQ(after.handles.tokens - before.handles.tokens, rounds);
    EXPECT_EQ(after.handles.all - before.handles.all, 2 * rounds);
    EXPECT_LE(after.heapBlocks - before.heapBlocks, one.heapBlocks * rounds);
    EXPECT_LE(after.heapBytes - before.heapBytes, one.heapBytes * rounds);
    // A heap's own bytes for each block are at most as many again.
    EXPECT_LE(after.privateBytes, before.privateBytes + 2 * one.heapBytes * rounds + kHeapPiece);
    EXPECT_EQ(after.freeTlsIndexes, before.freeTlsIndexes);
}

// Windows' libraries that ours import.
constexpr std::array kWindowsLibraries = {"iphlpapi.dll", "mpr.dll",     "netapi32.dll", "secur32.dll",
                                          "user32.dll",   "version.dll", "ws2_32.dll"};

// They stay loaded for this object's life.
class WindowsLibraries {
  public:
    WindowsLibraries() {
        for (const char* name : kWindowsLibraries)
            m_libraries.push_back(LoadLibraryA(name));
    }
    WindowsLibraries(const WindowsLibraries&) = delete;
    WindowsLibraries& operator=(const WindowsLibraries&) = delete;
    ~WindowsLibraries() {
        for (const HMODULE library : m_libraries)
            FreeLibrary(library);
    }

    bool AreLoaded() const { return std::ranges::count(m_libraries, nullptr) == 0; }

  private:
    std::vector<HMODULE> m_libraries;
};

struct Usages {
    ProcessUsage before;
    ProcessUsage after;
};

template <class Cycle>
Usages RunCycles(const char* what, const Cycle& cycle) {
    for (std::size_t i = 0; i < kWarmUps; ++i)
        cycle();
    const std::size_t rounds = Rounds();
    Usages usages;
    usages.before = MeasureUsage();
    const Clock clock;
    for (std::size_t i = 0; i < rounds; ++i)
        cycle();
    usages.after = MeasureUsage();
    Print(what, rounds, clock, usages.before, usages.after);
    return usages;
}

void ExpectNothingLost(const Usages& usages) {
    const auto& [before, after] = usages;
    EXPECT_EQ(after.handles.all, before.handles.all);
    EXPECT_EQ(after.heapBlocks, before.heapBlocks);
    EXPECT_EQ(after.heapBytes, before.heapBytes);
    EXPECT_LE(after.privateBytes, before.privateBytes + kHeapPiece);
    EXPECT_EQ(after.freeTlsIndexes, before.freeTlsIndexes);
}

void LoadAndUnload() {
    const kvtest::StationModule module(kvtest::ReleaseFolder());
    ASSERT_TRUE(module.IsLoaded());
}

void LoadAndUnloadWindowsLibraries() {
    const WindowsLibraries libraries;
    ASSERT_TRUE(libraries.AreLoaded());
}

TEST(SoakTest, LoadAndUnloadLoseNoHandleNoHeapBlockAndNoThreadLocalIndex) {
    const WindowsLibraries held;
    ASSERT_TRUE(held.AreLoaded());
    ExpectNothingLost(RunCycles("loads and unloads of the real library", LoadAndUnload));
}

// One call whose first text finds no memory.
void LoadThrowAndUnload() {
    kvtest::SimulatedModule module;
    ASSERT_TRUE(module.IsLoaded());
    simwin::Machine machine{simwin::Station()};
    machine.failAllocation(1);
    EXPECT_THROW(module.CollectRecord(machine), std::bad_alloc);
}

TEST(SoakTest, LoadThrowAndUnloadLoseNoHandleNoHeapBlockAndNoThreadLocalIndex) {
    const WindowsLibraries held;
    ASSERT_TRUE(held.AreLoaded());
    ExpectNothingLost(RunCycles("loads, throws and unloads of the real library", LoadThrowAndUnload));
}

// Each load of Wine's secur32.dll, with nothing of ours in the process, loses three heap blocks.
TEST(SoakTest, LoadAndUnloadTogetherWithWindowsLibrariesLoseWhatThoseLoseAlone) {
    const auto [aloneBefore, aloneAfter] =
        RunCycles("loads and unloads of Windows' libraries alone", LoadAndUnloadWindowsLibraries);
    const auto [before, after] = RunCycles("loads and unloads of the real library and Windows'", LoadAndUnload);
    EXPECT_EQ(after.handles.all, before.handles.all);
    EXPECT_EQ(after.heapBlocks - before.heapBlocks, aloneAfter.heapBlocks - aloneBefore.heapBlocks);
    EXPECT_EQ(after.heapBytes - before.heapBytes, aloneAfter.heapBytes - aloneBefore.heapBytes);
    EXPECT_EQ(after.freeTlsIndexes, before.freeTlsIndexes);
}

// A described station, its whole record, and the machine that answers for it.
struct Station {
    explicit Station(const std::string& stationName)
        : name(stationName),
          described(std::make_shared<const simwin::Station>(simwin::readStation(folder()))),
          record(kvtest::recordBytes(kvtest::readExpectedStation(folder()).record)) {}

    std::filesystem::path folder() const { return std::filesystem::path(KV_STATIONS) / name; }

    std::string name;
    std::shared_ptr<const simwin::Station> described;
    std::string record;
};

// One call on each station, on a machine of its own. The first station whose record is not as it must be, or none.
std::string CollectAll(const std::vector<Station>& stations, kvtest::SimulatedModule& module) {
    for (const Station& station : stations) {
        kvtest::NameStationInCrashes(station.name);
        simwin::Machine machine(station.described);
        if (module.CollectRecord(machine) != station.record)
            return station.name;
    }
    return {};
}

std::string CollectAll(std::size_t passes, const std::vector<Station>& stations, kvtest::SimulatedModule& module) {
    const kvtest::QuietOutput quiet;
    std::string wrong;
    for (std::size_t i = 0; i < passes && wrong.empty(); ++i)
        wrong = CollectAll(stations, module);
    return wrong;
}

TEST(SoakTest, CallsOnTheDescribedStationsLeaveNothingButTheirHardwareCollectors) {
    kvtest::SimulatedModule module(kvtest::SimulatedModule::Heap::Real);
    ASSERT_TRUE(module.IsLoaded());
    std::vector<Station> stations;
    for (const std::string& name : kvtest::stationNames())
        stations.emplace_back(name);
    ASSERT_EQ(CollectAll(1, stations, module), "");
    const ProcessUsage first = MeasureUsage();
    ASSERT_EQ(CollectAll(1, stations, module), "");
    const ProcessUsage before = MeasureUsage();

    const std::size_t passes = Rounds() / stations.size() + 1;
    const Clock clock;
    EXPECT_EQ(CollectAll(passes, stations, module), "");
    const ProcessUsage after = MeasureUsage();
    kvtest::NameStationInCrashes({});
    Print("calls of the real library on the described stations", passes * stations.size(), clock, before, after);

    EXPECT_EQ(after.handles.all, before.handles.all);
    EXPECT_EQ(after.heapBlocks - before.heapBlocks, passes * (before.heapBlocks - first.heapBlocks));
    EXPECT_EQ(after.freeTlsIndexes, before.freeTlsIndexes);
}

}  // namespace
