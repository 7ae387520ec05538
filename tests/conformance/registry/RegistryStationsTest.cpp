// The real kvcstat64.dll with a real registry: the described stations' as Wine's regedit imports it, and those of the
// fuzzer's generator. Everything else is answered by simwin.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>

#include "simwin/station/RegistryReader.h"
#include "simwin/station/StationReader.h"
#include "tests/conformance/registry/RealRegistry.h"
#include "tests/fuzz/FuzzedStation.h"
#include "tests/stations/QuietOutput.h"
#include "tests/wine/CrashReport.h"
#include "tests/wine/SimulatedModule.h"
#include "tests/wine/WineTools.h"

namespace {

using conformance::RealRegistry;
using kvtest::SimulatedModule;
using ::testing::IsEmpty;

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

class RegistryStationsTest : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        kvtest::NameStationInCrashes(GetParam());
        const unsigned page = simwin::codePageInForce();
        if (page != GetACP())
            GTEST_SKIP() << "the station's ANSI code page is " << page << ", this process's is " << GetACP();
    }
    void TearDown() override { kvtest::NameStationInCrashes({}); }

    const simwin::Station station = simwin::readStation(kvtest::folderOf(GetParam()));
    const simwin::CodePageScope codePage{station.codePages.ansi};
};

TEST_P(RegistryStationsTest, ImportedByRegeditGivesTheRecordEnvironmentTraceAndOutputThatItMust) {
    SimulatedModule module(SimulatedModule::Heap::Simulated, RealRegistry::functions());
    ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
    simwin::Machine machine(station);
    RealRegistry registry(machine.station());
    kvtest::importRegistry(
        conformance::movedExport(ContentOf(kvtest::folderOf(GetParam()) / "registry.reg"), registry.path()));
    registry.enter();
    const kvtest::CollectedStation found = module.Collect(machine);
    EXPECT_THAT(kvtest::differences(kvtest::readExpectedStation(kvtest::folderOf(GetParam())), found), IsEmpty());
    EXPECT_THAT(machine.openHandles(simwin::HandleKind::RegistryKey), IsEmpty()) << "simwin answered of the registry";
}

// One line for each key and value of `wanted` that `found` lacks or has otherwise; every key there lies below `prefix`.
void CompareKeys(std::vector<std::string>& lines, const simwin::RegistryTree& wanted, simwin::KeyId from,
                 const simwin::RegistryTree& found, const std::string& prefix) {
    const std::string path = wanted.path(from);
    const std::optional<simwin::KeyId> key = found.find(prefix + path);
    if (!key) {
        lines.push_back(path + ": missing");
        return;
    }
    const simwin::RegistryValue* value = nullptr;
    for (std::size_t index = 0; (value = wanted.value(from, index)) != nullptr; ++index) {
        const simwin::RegistryValue* other = found.findValue(*key, value->name);
        if (other == nullptr || other->type != value->type || other->bytes != value->bytes)
            lines.push_back(path + ": value \"" + value->name + (other != nullptr ? "\" is another" : "\" is missing"));
    }
    const std::string* name = nullptr;
    for (std::size_t index = 0; (name = wanted.subKeyName(from, index)) != nullptr; ++index)
        CompareKeys(lines, wanted, *wanted.find(from, *name), found, prefix);
}

TEST_P(RegistryStationsTest, ExportedByRegeditReadsAsTheSameKeysAndValues) {
    RealRegistry registry(station);
    kvtest::importRegistry(
        conformance::movedExport(ContentOf(kvtest::folderOf(GetParam()) / "registry.reg"), registry.path()));
    const std::string file = kvtest::ReleaseFolder() + "registry-" + std::to_string(GetCurrentProcessId()) + ".reg";
    kvtest::outputOf("regedit /E \"" + file + "\" \"" + registry.path() + "\"");
    const simwin::RegistryTree exported = simwin::readRegistry(ContentOf(file), "exported.reg");
    std::filesystem::remove(file);
    std::vector<std::string> lines;
    for (const simwin::Hive hive : simwin::kOwnHives)
        if (station.registry.subKeyName(station.registry.root(hive), 0) != nullptr)
            CompareKeys(lines, station.registry, station.registry.root(hive), exported, registry.path() + "\\");
    EXPECT_THAT(lines, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stations, RegistryStationsTest, ::testing::ValuesIn(kvtest::stationNames()),
                         kvtest::NameOfStationTest());

constexpr unsigned kFuzzedStations = 500;

// The station of a number, the same in each run.
std::shared_ptr<const simwin::Station> FuzzedStation(unsigned number) {
    std::mt19937 random(number);
    std::string bytes(64 + random() % 512, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() & 0xFF); });
    kvfuzz::InputReader input(bytes);
    auto station = std::make_shared<simwin::Station>(kvfuzz::readFuzzedStation(input, GetACP()));
    // Behind an address that is shorter than its length stands what stood there by chance.
    for (simwin::Host& host : station->network.hosts)
        host.lengthSaid.reset();
    return station;
}

struct Outcome {
    std::string record;
    std::vector<std::string> variables;
    std::vector<std::string> trace;

    bool operator==(const Outcome&) const = default;
};

Outcome Collect(SimulatedModule& module, simwin::Machine& machine) {
    Outcome outcome;
    outcome.record = module.CollectRecord(machine);
    for (const simwin::Variable& variable : machine.variablesSet())
        outcome.variables.push_back(variable.name + "=" + variable.value);
    for (const simwin::TraceLine& line : machine.traceLines())
        outcome.trace.push_back(std::to_string(line.level) + " " + line.text);
    return outcome;
}

std::vector<Outcome> CollectSimulated() {
    SimulatedModule module;
    std::vector<Outcome> all;
    for (unsigned number = 0; number < kFuzzedStations; ++number) {
        simwin::Machine machine(FuzzedStation(number));
        all.push_back(Collect(module, machine));
    }
    return all;
}

std::vector<std::string> FieldLines(const std::string& record) {
    std::vector<std::string> lines;
    for (const auto& [name, value] : kvtest::fieldsOf(record)) {
        const auto* text = std::get_if<std::string>(&value);
        lines.push_back(name + " " + (text != nullptr ? *text : std::to_string(std::get<std::int64_t>(value))));
    }
    return lines;
}

std::string FirstDifference(const std::vector<std::string>& simulated, const std::vector<std::string>& real) {
    const auto [one, other] = std::mismatch(simulated.begin(), simulated.end(), real.begin(), real.end());
    return (one != simulated.end() ? "simwin " + *one : std::string("simwin nothing")) + ", registry " +
           (other != real.end() ? *other : std::string("nothing"));
}

// Nothing where the two agree.
std::string Difference(const Outcome& simulated, const Outcome& real) {
    if (simulated.record != real.record)
        return FirstDifference(FieldLines(simulated.record), FieldLines(real.record));
    if (simulated.variables != real.variables)
        return FirstDifference(simulated.variables, real.variables);
    return simulated.trace != real.trace ? FirstDifference(simulated.trace, real.trace) : "";
}

TEST(FuzzedRegistryTest, GivesTheSameRecordVariablesAndTraceAsSimwinOn500Stations) {
    std::vector<std::string> lines;
    unsigned compared = 0;
    std::size_t refused = 0;
    {
        const kvtest::QuietOutput quiet;
        const std::vector<Outcome> simulated = CollectSimulated();
        SimulatedModule module(SimulatedModule::Heap::Simulated, RealRegistry::functions());
        ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
        for (unsigned number = 0; number < kFuzzedStations; ++number) {
            simwin::Machine machine(FuzzedStation(number));
            kvtest::NameStationInCrashes("fuzzed station " + std::to_string(number));
            RealRegistry registry(machine.station());
            // A station with a key that no registry can hold is left out; most have none.
            if (!registry.write().empty()) {
                ++refused;
                continue;
            }
            registry.enter();
            const Outcome real = Collect(module, machine);
            const std::string difference = Difference(simulated[number], real);
            if (!difference.empty())
                lines.push_back("station " + std::to_string(number) + ": " + difference);
            ++compared;
        }
    }
    kvtest::NameStationInCrashes({});
    EXPECT_THAT(lines, IsEmpty());
    EXPECT_EQ(compared + refused, kFuzzedStations);
    EXPECT_GE(compared, 450u);
    std::printf("%u stations compared, %zu left out for a key's name of more than 255 characters\n", compared, refused);
}

}  // namespace
