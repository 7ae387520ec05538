#include "simwin/machine/Machine.h"

#include <algorithm>

#include "simwin/calls/CallTable.h"
#include "simwin/machine/Heap.h"
#include "simwin/machine/Libraries.h"
#include "simwin/machine/MachineState.h"
#include "simwin/machine/Registry.h"
#include "simwin/machine/Relay.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace simwin {
namespace {

Machine* g_current = nullptr;

// Stands until the end of the process, because texts of the module that were made before any machine do too.
Machine& undescribedMachine() {
    static auto* machine = new Machine(Station());
    return *machine;
}

std::vector<KeyId> findDeniedKeys(const Station& station) {
    std::vector<KeyId> denied;
    for (const std::string& path : station.deniedKeys)
        if (const std::optional<KeyId> key = station.registry.find(path))
            denied.push_back(*key);
    return denied;
}

}  // namespace

Machine::Machine(Station station) : Machine(std::make_shared<const Station>(std::move(station))) {}

Machine::Machine(std::shared_ptr<const Station> station)
    : m_station(std::move(station)), m_state(std::make_unique<MachineState>()), m_mayFail(!m_station->fails.empty()) {
    m_state->libraries.loads.resize(libraries().size());
    const CodePageScope scope(m_station->codePages.ansi);
    m_state->deniedKeys = findDeniedKeys(*m_station);
}

Machine::~Machine() {
    freeHeapBlocks(*this);
    if (g_current == this)
        g_current = nullptr;
}

Machine& Machine::current() noexcept {
    return g_current != nullptr ? *g_current : undescribedMachine();
}

Machine::Scope::Scope(Machine& machine)
    : m_codePage(machine.answering().station().codePages.ansi), m_previous(std::exchange(g_current, &machine)) {}

Machine::Scope::~Scope() {
    g_current = m_previous;
}

std::vector<OpenHandle> Machine::openHandles() const {
    std::vector<OpenHandle> all;
    std::apply([&](const auto&... table) { (table.tell(all, *m_station), ...); }, tablesOf(*m_state));
    return all;
}

std::vector<OpenHandle> Machine::openHandles(HandleKind kind) const {
    std::vector<OpenHandle> open = openHandles();
    std::erase_if(open, [kind](const OpenHandle& one) { return one.kind != kind; });
    return open;
}

void Machine::failCall(std::uint64_t n) noexcept {
    m_callToFail = n;
    m_mayFail = true;
}

void Machine::keepLog(bool keep) noexcept {
    m_keepsLog = keep;
    noteWatch();
}

void Machine::record(Recording* recording) noexcept {
    m_recording = recording;
    noteWatch();
}

void Machine::observe(CallObserver* observer) noexcept {
    m_observer = observer;
    noteWatch();
}

void Machine::relayTo(Relay* relay) noexcept {
    m_relay = relay;
    noteWatch();
}

void Machine::noteWatch() noexcept {
    m_isTold = m_keepsLog || m_recording != nullptr || m_observer != nullptr || m_relay != nullptr;
    m_isWatched = m_isTold || m_questions != nullptr;
}

void Machine::noteQuestions(AskedQuestions* questions) noexcept {
    m_questions = questions;
    noteWatch();
}

std::uint64_t Machine::identify(std::uintptr_t handle) {
    const std::optional<KeyId> key = findKey(*this, handle);
    return key ? static_cast<std::uint64_t>(*key) : handle;
}

const Machine& Machine::answering() const noexcept {
    return m_relay != nullptr && m_relay->behind() != nullptr ? *m_relay->behind() : *this;
}

bool Machine::decideFailure(std::string_view name, Failure& failure) {
    if (m_faultableCalls == m_callToFail) {
        m_failedCall = name;
        return true;
    }
    const auto found = m_station->fails.find(name);
    if (found == m_station->fails.end())
        return false;
    if (found->second != 0)
        failure.code = found->second;
    return true;
}

void Machine::reportMisuse(std::string_view call, std::uintptr_t handle, std::string_view what) {
    m_misuses.push_back(std::string(call) + ": 0x" + hexDigits(handle) + " " + std::string(what));
}

void Machine::trace(TraceLine line) {
    if (m_keepsTrace)
        m_traceLines.push_back(std::move(line));
}

void Machine::noteVariable(std::string_view name, std::string_view value) {
    const auto found = std::find_if(m_variablesSet.begin(), m_variablesSet.end(),
                                    [&](const Variable& variable) { return equalNoCase(variable.name, name); });
    if (found != m_variablesSet.end())
        *found = {std::string(name), std::string(value)};
    else
        m_variablesSet.push_back({std::string(name), std::string(value)});
}

bool Machine::isOpen(std::uintptr_t value) {
    // Whatever a real function gives may come back to one.
    if (m_relay != nullptr)
        return m_relay->behind() != nullptr ? m_relay->behind()->isOpen(value) : value != 0;
    return std::apply([value](const auto&... table) { return (table.isOpen(value) || ...); }, tablesOf(*m_state));
}

std::string Machine::describe(std::uintptr_t handle) {
    if (m_relay != nullptr)
        return m_relay->nameOf(handle);
    if (const std::optional<KeyId> key = findKey(*this, handle))
        return m_station->registry.path(*key);
    if (const std::optional<std::size_t> library = findLibraryByHandle(handle))
        return std::string(libraries()[*library].name);
    for (const OpenHandle& open : openHandles())
        if (open.value == handle)
            return open.what;
    return {};
}

}  // namespace simwin
