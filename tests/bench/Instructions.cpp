// kvcstat_instructions STATION call|bare: one collection on a described station, or the platform calls of one made
// bare, inside countedPart, which callgrind counts. Instructions repeat exactly, where times do not.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "include/kvcstat.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"
#include "simwin/station/StationReader.h"

namespace {

using StationPointer = std::shared_ptr<const simwin::Station>;

void collect(simwin::Machine& machine) {
    const simwin::Machine::Scope scope(machine);
    std::vector<char> record(KVCSTAT_RECORD_SIZE);
    GetStationData(record.data());
}

}  // namespace

// What is counted, by its name: not inlined, and kept under that name.
extern "C" __attribute__((noinline)) void countedPart(const StationPointer& station, simwin::Recording* bareCalls);
void countedPart(const StationPointer& station, simwin::Recording* bareCalls) {
    simwin::Machine machine(station);
    if (bareCalls != nullptr)
        bareCalls->replay(machine);
    else
        collect(machine);
}

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::fputs("kvcstat_instructions: which station, call or bare?\n", stderr);
        return 2;
    }
    const auto station =
        std::make_shared<const simwin::Station>(simwin::readStation(std::filesystem::path(KV_STATIONS) / arguments[1]));
    simwin::Recording recording(station);
    {
        simwin::Machine machine(station);
        machine.record(&recording);
        collect(machine);
        machine.record(nullptr);
    }
    countedPart(station, std::strcmp(arguments[2], "bare") == 0 ? &recording : nullptr);
}
