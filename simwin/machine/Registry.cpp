#include "simwin/machine/Registry.h"

#include <cstring>

#include "simwin/machine/Machine.h"
#include "simwin/machine/MachineState.h"
#include "simwin/machine/Roles.h"

namespace simwin {

// Windows looks at the lower half of a predefined handle alone.
std::optional<Hive> hiveOf(std::uintptr_t handle) {
    switch (static_cast<std::uint32_t>(handle)) {
        case 0x80000000:
            return Hive::ClassesRoot;
        case 0x80000001:
            return Hive::CurrentUser;
        case 0x80000002:
            return Hive::LocalMachine;
        case 0x80000003:
            return Hive::Users;
        case 0x80000004:
            return Hive::PerformanceData;
        case 0x80000005:
            return Hive::CurrentConfig;
        case 0x80000006:
            return Hive::DynData;
        default:
            return std::nullopt;
    }
}

std::optional<KeyId> findKey(Machine& machine, std::uintptr_t handle) {
    if (const KeyId* key = machine.state().keys.find(handle))
        return *key;
    if (const std::optional<Hive> hive = hiveOf(handle))
        return machine.station().registry.root(*hive);
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
