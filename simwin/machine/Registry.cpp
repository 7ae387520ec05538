#include "simwin/machine/Registry.h"

#include <cstring>

#include "simwin/machine/Machine.h"
#include "simwin/machine/MachineState.h"
#include "simwin/machine/Roles.h"

namespace simwin {

HKEY handleOf(Hive hive) {
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(named(hive).handle)));
}

std::optional<KeyId> findKey(Machine& machine, std::uintptr_t handle) {
    if (const KeyId* key = machine.state().keys.find(handle))
        return *key;
    if (const NamedHive* hive = hiveOfHandle(handle))
        return machine.station().registry.root(hive->hive);
    return std::nullopt;
}

std::optional<KeyId> useKey(Machine& machine, const char* call, HKEY handle) {
    const std::optional<KeyId> key = findKey(machine, asNumber(handle));
    if (!key && handle != nullptr)
        machine.reportMisuse(call, asNumber(handle), "is no open key");
    return key;
}

void spoilName(char* name, DWORD size) {
    if (name != nullptr && size > 1)
        std::memcpy(name, "?", 2);
}

}  // namespace simwin
