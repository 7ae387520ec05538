#include "simwin/machine/Relay.h"

#include <optional>

#include "framework/Windows.h"
#include "simwin/calls/CallTable.h"
#include "simwin/machine/Machine.h"
#include "simwin/station/Hives.h"

namespace simwin {
namespace {

std::string_view fileNameOf(std::string_view path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

}  // namespace

const void* Relay::function(std::string_view name) const {
    const auto found = m_functions.find(name);
    return found != m_functions.end() ? found->second : nullptr;
}

void Relay::learn(const ObservedCall& call) {
    const auto give = [this](const Fact& handle, std::string name) {
        if (numberOf(handle) != 0)
            m_names[static_cast<std::uintptr_t>(numberOf(handle))] = std::move(name);
    };
    if (!call.succeeded)
        return;
    if (call.name == "RegOpenKeyA" || call.name == "RegOpenKeyExA")
        give(call.parameters.back(), openedKey(call));
    else if (call.name == "LoadLibraryA" || call.name == "GetModuleHandleA")
        give(call.result, std::string(fileNameOf(textOf(call.parameters[0]))));
    else if (call.name == "OpenProcess")
        give(call.result, "process " + std::to_string(numberOf(call.parameters[2])));
    else if (call.name == "OpenProcessToken")
        give(call.parameters[2], "token of " + call.subject);
    else if (call.name == "FindFirstFileA")
        give(call.result, std::string(textOf(call.parameters[0])));
}

std::string Relay::nameOf(std::uintptr_t handle) const {
    if (const NamedHive* hive = hiveOfHandle(handle))
        return std::string(hive->name);
    const auto found = m_names.find(handle);
    return found != m_names.end() ? found->second : std::string();
}

const void* Relay::watched(std::uintptr_t library, const char* function, const void* found) {
    if (found == nullptr || reinterpret_cast<std::uintptr_t>(function) <= 0xFFFF)
        return found;
    const CallEntry* entry = findCall(nameOf(library), std::string_view(function));
    if (entry == nullptr)
        return found;
    addFunction(function, found);
    return entry->address;
}

std::uint32_t LastErrorKeeper::error(const Machine& machine) const {
    return m_isReal ? m_errorOfCall : machine.answering().errorOfCall();
}

#ifdef _WIN32

namespace {
// An error of no program: that it still stands behind a call tells that the call set none.
constexpr DWORD kUntouched = 0x20000000 | 0x4B56;
}  // namespace

LastErrorKeeper::LastErrorKeeper(const Relay* relay) : m_isReal(relay != nullptr && relay->behind() == nullptr) {
    if (m_isReal)
        m_error = GetLastError();
}

void LastErrorKeeper::begin(bool canFail) const {
    if (m_isReal)
        SetLastError(canFail ? kUntouched : m_error);
}

void LastErrorKeeper::restore() const {
    if (m_isReal)
        SetLastError(m_error);
}

void LastErrorKeeper::take() {
    if (!m_isReal)
        return;
    const DWORD error = GetLastError();
    m_errorOfCall = error != kUntouched ? error : 0;
    if (error != kUntouched)
        m_error = error;
}

#else

// Natively there is no thread's last error; each machine has its own.
LastErrorKeeper::LastErrorKeeper(const Relay*) : m_isReal(false) {}
void LastErrorKeeper::restore() const {}
void LastErrorKeeper::begin(bool) const {}
void LastErrorKeeper::take() {}

#endif

}  // namespace simwin
