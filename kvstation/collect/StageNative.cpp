#include "framework/Windows.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/StreamAside.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

namespace kvstation {
namespace {

// The library loaded, as Windows tells it.
class LoadedModule {
  public:
    LoadedModule() { DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule() { DllMain(nullptr, DLL_PROCESS_DETACH, nullptr); }
};

}  // namespace

struct Collector::Loaded {
    StreamAside aside{kStandardOutput};
};

Collector::Collector() : m_loaded(std::make_unique<Loaded>()) {}
Collector::Collector(const std::string& library) {
    throw Failure(library + ": a library is loaded on Windows alone; here the module is a part of the tool");
}
Collector::~Collector() = default;

RecordBytes Collector::collect(simwin::Machine& machine) const {
    const simwin::Machine::Scope scope(machine);
    const LoadedModule module;
    RecordBytes record{};
    GetStationData(record.data());
    return record;
}

// The module is of the tool's own build, and its version resource would say this.
std::string libraryVersion() {
    return KVSTATION_VERSION ".0";
}

RecordBytes collectHereObserved(simwin::CallObserver&) {
    throw Failure(kNeedsWindows);
}

}  // namespace kvstation
