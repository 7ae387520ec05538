#pragma once

#include <cstdint>
#include <optional>

#include "simwin/RegistryTree.h"

namespace simwin {

class Machine;

// The key behind a predefined or open handle.
std::optional<KeyId> findKey(Machine& machine, std::uintptr_t handle);

}  // namespace simwin
