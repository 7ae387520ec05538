#pragma once

#include <cstdint>
#include <optional>

#include "framework/Windows.h"

namespace simwin {

// The handle of a library, by its number in `libraries()`; the same for every load.
std::uintptr_t libraryHandle(std::size_t number);

std::optional<std::size_t> findLibraryByHandle(std::uintptr_t handle);

}  // namespace simwin
