#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "framework/Windows.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/ProductName.h"
#include "kvstation/Simulation.h"
#include "simwin/Machine.h"
#include "simwin/StationReader.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

namespace kvstation {
namespace {

// The module writes to standard output, which belongs to the result alone.
class StandardOutputAside {
  public:
    StandardOutputAside() : m_kept(dup(STDOUT_FILENO)) {
        const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    StandardOutputAside(const StandardOutputAside&) = delete;
    StandardOutputAside& operator=(const StandardOutputAside&) = delete;
    ~StandardOutputAside() {
        std::fflush(stdout);
        dup2(m_kept, STDOUT_FILENO);
        close(m_kept);
    }

  private:
    int m_kept;
};

// The library loaded, as Windows tells it.
class LoadedModule {
  public:
    LoadedModule() { DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule() { DllMain(nullptr, DLL_PROCESS_DETACH, nullptr); }
};

simwin::Station readStation(const std::string& folder) {
    if (!isFolder(folder))
        throw Failure(folder + " is no folder; a station is a folder with registry.reg and station.json");
    return simwin::readStation(folder);
}

RecordBytes collectOn(simwin::Machine& machine) {
    const simwin::Machine::Scope scope(machine);
    const StandardOutputAside aside;
    const LoadedModule module;
    RecordBytes record{};
    GetStationData(record.data());
    return record;
}

std::string productOf(const simwin::Station& station) {
    if (!station.version)
        return {};
    return productName({.platform = station.version->platformId,
                        .major = station.version->major,
                        .minor = station.version->minor,
                        .build = station.version->build & 0xFFFF,
                        .isServer = false});
}

}  // namespace

Report simulateStation(const std::string& folder) {
    simwin::Machine machine(readStation(folder));
    const RecordBytes bytes = collectOn(machine);
    return {.record = Record(bytes), .bytes = bytes, .product = productOf(machine.station()), .origin = folder};
}

}  // namespace kvstation
