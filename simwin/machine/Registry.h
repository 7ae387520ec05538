#pragma once

#include <cstdint>
#include <optional>

#include "framework/Windows.h"
#include "simwin/station/RegistryTree.h"

namespace simwin {

class Machine;

// The predefined handle that programs name a hive by.
HKEY handleOf(Hive hive);

// The key behind a predefined or open handle.
std::optional<KeyId> findKey(Machine& machine, std::uintptr_t handle);

// The same for a call that uses it: a handle that is none is reported as misused, but for null, which is what a program
// passes on when an open failed.
std::optional<KeyId> useKey(Machine& machine, const char* call, HKEY handle);

// What an enumeration that fails leaves in the room for the name.
void spoilName(char* name, DWORD size);

}  // namespace simwin
