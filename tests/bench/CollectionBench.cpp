// One whole GetStationData on a described station beside the same platform calls replayed with no module around them.
// Their ratio is what the module itself costs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "include/kvcstat.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"
#include "simwin/station/StationReader.h"
#include "tests/stations/StationNames.h"

namespace {

using StationPointer = std::shared_ptr<const simwin::Station>;

void CollectOnce(benchmark::State& state, const StationPointer& station) {
    std::vector<char> record(KVCSTAT_RECORD_SIZE);
    for (auto _ : state) {
        simwin::Machine machine(station);
        const simwin::Machine::Scope scope(machine);
        std::fill(record.begin(), record.end(), '\0');
        GetStationData(record.data());
        benchmark::DoNotOptimize(record.data());
    }
}

void ReplayCalls(benchmark::State& state, const StationPointer& station) {
    simwin::Recording recording(station);
    {
        simwin::Machine machine(station);
        const simwin::Machine::Scope scope(machine);
        std::vector<char> record(KVCSTAT_RECORD_SIZE);
        machine.record(&recording);
        GetStationData(record.data());
        machine.record(nullptr);
    }
    for (auto _ : state)
        recording.replay();
    state.counters["calls"] = static_cast<double>(recording.size());
}

// Prints the usual table and keeps the medians for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
    }

    void PrintRatio(const std::string& station) const {
        const auto call = m_medians.find(station + ": GetStationData");
        const auto bare = m_medians.find(station + ": bare calls");
        if (call != m_medians.end() && bare != m_medians.end())
            std::printf("%-34s GetStationData %9.1f us, bare calls %9.1f us, ratio %.3f\n", station.c_str(),
                        call->second, bare->second, call->second / bare->second);
    }

  private:
    std::map<std::string, double> m_medians;
};

void Register(const std::string& name, const StationPointer& station) {
    const auto configure = [](benchmark::internal::Benchmark* bench) {
        bench->Unit(benchmark::kMicrosecond)->MinTime(0.2)->Repetitions(5)->ReportAggregatesOnly(true);
    };
    configure(benchmark::RegisterBenchmark((name + ": GetStationData").c_str(), CollectOnce, station));
    configure(benchmark::RegisterBenchmark((name + ": bare calls").c_str(), ReplayCalls, station));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const std::vector<std::string> names = kvtest::stationNames();
    for (const std::string& name : names)
        Register(name, std::make_shared<const simwin::Station>(
                           simwin::readStation(std::filesystem::path(KV_STATIONS) / name)));
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::puts("");
    for (const std::string& name : names)
        reporter.PrintRatio(name);
}
