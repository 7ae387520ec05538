#include "simwin/machine/Registry.h"

#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"

using namespace simwin;

namespace simwin {
namespace {

// The path of a sub-key as the registry takes it: no backslash may stand in front, but one below the classes.
std::optional<std::string_view> properPath(HKEY handle, const char* subKey) {
    std::string_view path = subKey != nullptr ? subKey : "";
    const NamedHive* hive = hiveOfHandle(asNumber(handle));
    if (path.starts_with('\\') && hive != nullptr && hive->hive == Hive::ClassesRoot)
        path.remove_prefix(1);
    return path.starts_with('\\') ? std::nullopt : std::optional(path);
}

LSTATUS findSubKey(Machine& machine, HKEY handle, KeyId from, const char* subKey, HKEY* result) {
    const std::optional<std::string_view> path = properPath(handle, subKey);
    if (!path)
        return ERROR_BAD_PATHNAME;
    const std::optional<KeyId> key = machine.station().registry.find(from, *path);
    if (!key)
        return ERROR_FILE_NOT_FOUND;
    const std::vector<KeyId>& denied = machine.state().deniedKeys;
    if (std::find(denied.begin(), denied.end(), *key) != denied.end())
        return ERROR_ACCESS_DENIED;
    *result = asPointer<HKEY>(machine.state().keys.open(*key));
    return ERROR_SUCCESS;
}

// Where nothing is opened the place becomes null; a handle of null leaves it.
LSTATUS openKey(Machine& machine, const char* call, HKEY handle, const char* subKey, HKEY* result) {
    if (handle != nullptr)
        *result = nullptr;
    const std::optional<KeyId> from = useKey(machine, call, handle);
    return from ? findSubKey(machine, handle, *from, subKey, result) : ERROR_INVALID_HANDLE;
}

bool isEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

LSTATUS enumKey(Machine& machine, HKEY handle, DWORD index, char* name, DWORD size) {
    const std::optional<KeyId> key = useKey(machine, "RegEnumKeyA", handle);
    if (!key)
        return ERROR_INVALID_HANDLE;
    const std::string* found = machine.station().registry.subKeyName(*key, index);
    if (found == nullptr)
        return ERROR_NO_MORE_ITEMS;
    if (name == nullptr || found->size() >= size)
        return ERROR_MORE_DATA;
    std::memcpy(name, found->c_str(), found->size() + 1);
    return ERROR_SUCCESS;
}

LSTATUS closeKey(Machine& machine, HKEY handle) {
    if (hiveOfHandle(asNumber(handle)) != nullptr)
        return ERROR_SUCCESS;
    if (machine.state().keys.close(asNumber(handle)))
        return ERROR_SUCCESS;
    machine.reportMisuse("RegCloseKey", asNumber(handle), "is no open key");
    return ERROR_INVALID_HANDLE;
}

}  // namespace

}  // namespace simwin

LSTATUS WINAPI sim_RegOpenKeyA(HKEY key, LPCSTR subKey, PHKEY result) {
    return makeCall<sim_RegOpenKeyA>(
        "RegOpenKeyA", failsWithCode(ERROR_ACCESS_DENIED),
        [&](Machine& machine) -> LSTATUS {
            if (result == nullptr)
                return ERROR_INVALID_PARAMETER;
            // The old call answers the same handle, not a new one, when no sub-key is asked for.
            if (isEmpty(subKey)) {
                *result = key;
                return ERROR_SUCCESS;
            }
            return openKey(machine, "RegOpenKeyA", key, subKey, result);
        },
        Handle{key}, Text{subKey}, NewHandle{result});
}

LSTATUS WINAPI sim_RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result) {
    return makeCall<sim_RegOpenKeyExA>(
        "RegOpenKeyExA", failsWithCode(ERROR_ACCESS_DENIED),
        [&](Machine& machine) -> LSTATUS {
            if (result == nullptr)
                return ERROR_INVALID_PARAMETER;
            if (isEmpty(subKey) && hiveOfHandle(asNumber(key)) != nullptr) {
                *result = key;
                return ERROR_SUCCESS;
            }
            return openKey(machine, "RegOpenKeyExA", key, subKey, result);
        },
        Handle{key}, Text{subKey}, Value{options}, Value{access}, NewHandle{result});
}

LSTATUS WINAPI sim_RegEnumKeyA(HKEY key, DWORD index, LPSTR name, DWORD size) {
    const auto spoil = [&] { spoilName(name, size); };
    return makeCall<sim_RegEnumKeyA>(
        "RegEnumKeyA", FailureWith{failsWithCode(ERROR_ACCESS_DENIED), spoil},
        [&](Machine& machine) { return enumKey(machine, key, index, name, size); }, Handle{key}, Value{index},
        TextBuffer{name, size}, Value{size});
}

LSTATUS WINAPI sim_RegCloseKey(HKEY key) {
    return makeCall<sim_RegCloseKey>(
        "RegCloseKey", kNeverFails, [&](Machine& machine) { return closeKey(machine, key); }, Handle{key});
}
