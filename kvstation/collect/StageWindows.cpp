#include <algorithm>

#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/collect/EndingCalls.h"
#include "kvstation/collect/Library.h"
#include "kvstation/collect/LiveCollection.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/collect/VersionOfCaller.h"
#include "kvstation/platform/StreamAside.h"
#include "redirect/Redirection.h"
#include "simwin/calls/CallTable.h"
#include "simwin/machine/Relay.h"

namespace kvstation {
namespace {

// A machine that only watches leaves the library its heap, which its companions share.
std::vector<redirect::Replacement> answers(bool withHeap) {
    std::vector<redirect::Replacement> all;
    for (const simwin::CallEntry& call : simwin::callTable())
        if (call.imported && (withHeap || !simwin::isHeapCall(call.name)))
            all.push_back({call.library, call.name, call.ordinal, call.address});
    return all;
}

void addFunctions(simwin::Relay& relay, HMODULE library) {
    for (const redirect::Import& import : redirect::importsOf(library)) {
        const simwin::CallEntry* call = simwin::findCall(import.library, import.name, import.ordinal);
        if (call != nullptr)
            relay.addFunction(call->name, reinterpret_cast<const void*>(*import.slot));
    }
}

RecordBytes collect(const Library& library, simwin::Machine& machine) {
    const simwin::Machine::Scope scope(machine);
    RecordBytes record{};
    library.getStationData(record);
    return record;
}

RecordBytes collectObserved(const Library& library, simwin::CallObserver& observer) {
    simwin::Relay relay;
    addFunctions(relay, library.handle());
    if (CollectionGuard::terms().asCaller)
        answerAsCaller(relay);
    simwin::Station watched;
    watched.codePages.ansi = simwin::codePageInForce();
    simwin::Machine machine(std::move(watched));
    machine.relayTo(&relay);
    machine.observe(&observer);
    const redirect::Redirection redirection(library.handle(), answers(false));
    return collect(library, machine);
}

}  // namespace

struct Collector::Loaded {
    Loaded() = default;
    explicit Loaded(const std::string& path) : library(path) {}

    StreamAside aside{kStandardOutput};
    Library library;
    redirect::Redirection redirection{library.handle(), answers(true)};
};

Collector::Collector() : m_loaded(std::make_unique<Loaded>()) {}
Collector::Collector(const std::string& library) : m_loaded(std::make_unique<Loaded>(library)) {}
Collector::~Collector() = default;

RecordBytes Collector::collect(simwin::Machine& machine) const {
    return kvstation::collect(m_loaded->library, machine);
}

std::string libraryVersion() {
    return Library::version();
}

RecordBytes collectHereObserved(simwin::CallObserver& observer) {
    LiveCollection live(CollectionGuard::terms().limit, observer);
    live.works("loading kvcstat64.dll");
    const Library library;
    const EndingCalls endings(library);
    live.works("collecting");
    const RecordBytes record = collectObserved(library, live);
    live.works("unloading kvcstat64.dll");
    return record;
}

}  // namespace kvstation
