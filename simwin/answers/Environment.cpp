#include <algorithm>
#include <cstring>
#include <string_view>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

using SetVariable = MachineState::SetVariable;

SetVariable* findSet(Machine& machine, std::string_view name) {
    std::vector<SetVariable>& variables = machine.state().variables;
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [name](const SetVariable& one) { return equalNoCase(one.name, name); });
    return found != variables.end() ? &*found : nullptr;
}

const std::string* findVariable(Machine& machine, const char* name) {
    if (name == nullptr)
        return nullptr;
    if (const SetVariable* set = findSet(machine, name))
        return set->value ? &*set->value : nullptr;
    for (const Variable& variable : machine.station().environment)
        if (equalNoCase(variable.name, name))
            return &variable.value;
    return nullptr;
}

DWORD getVariable(Machine& machine, const char* name, char* buffer, DWORD size) {
    const std::string* value = findVariable(machine, name);
    if (value == nullptr) {
        machine.setLastError(ERROR_ENVVAR_NOT_FOUND);
        return 0;
    }
    if (buffer == nullptr || size <= value->size())
        return static_cast<DWORD>(value->size() + 1);
    std::memcpy(buffer, value->c_str(), value->size() + 1);
    return static_cast<DWORD>(value->size());
}

int companionGet(Machine& machine, const char* name, char* buffer, int size) {
    const std::string* value = findVariable(machine, name);
    if (buffer != nullptr && size > 0) {
        const std::string_view text = value != nullptr ? std::string_view(*value) : std::string_view();
        const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
        std::copy_n(text.data(), length, buffer);
        buffer[length] = '\0';
    }
    return value != nullptr ? 1 : 0;
}

int companionSet(Machine& machine, const char* name, const char* value) {
    if (name == nullptr || *name == '\0' || std::strchr(name, '=') != nullptr)
        return 0;
    SetVariable* set = findSet(machine, name);
    if (set == nullptr) {
        machine.state().variables.push_back({name, std::nullopt});
        set = &machine.state().variables.back();
    }
    set->value = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    machine.noteVariable(name, value != nullptr ? value : "");
    return 1;
}

// A text that the library's interface takes without const.
struct PlainText {
    char* value;

    struct Kept : KeptNothingOfIt {
        explicit Kept(const char* v) {
            if (v != nullptr)
                copy = v;
        }
        std::optional<std::string> copy;
        char* argument(ReplayState&) { return copy ? copy->data() : nullptr; }
    };
    char* raw() const { return value; }
    Fact fact(bool succeeded) const { return Text{value}.fact(succeeded); }
    Kept keep(Recording&) const { return Kept(value); }
    void input(std::string& text, Machine& machine) const { Text{value}.input(text, machine); }
    void output(std::string&, Machine&) const {}
};

}  // namespace

DWORD WINAPI sim_GetEnvironmentVariableA(LPCSTR name, LPSTR buffer, DWORD size) {
    return makeCall<sim_GetEnvironmentVariableA>(
        "GetEnvironmentVariableA", failsWithZero(ERROR_ENVVAR_NOT_FOUND),
        [&](Machine& machine) { return getVariable(machine, name, buffer, size); }, Text{name},
        TextBuffer{buffer, size}, Value{size});
}

int sim_KVGetEnv(const char* name, char* buffer, int size) {
    const auto empty = [&] {
        if (buffer != nullptr && size > 0)
            *buffer = '\0';
    };
    return makeCall<sim_KVGetEnv>(
        "KVGetEnv", FailureWith{failsWithZero(ERROR_ENVVAR_NOT_FOUND), empty},
        [&](Machine& machine) { return companionGet(machine, name, buffer, size); }, Text{name},
        TextBuffer{buffer, static_cast<std::size_t>(std::max(size, 0))}, Value{size});
}

int sim_KVSetEnv(char* name, char* value) {
    return makeCall<sim_KVSetEnv>(
        "KVSetEnv", failsWithZero(ERROR_NOT_ENOUGH_MEMORY),
        [&](Machine& machine) { return companionSet(machine, name, value); }, PlainText{name}, PlainText{value});
}
