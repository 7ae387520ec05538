#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "simwin/machine/HandleTable.h"

namespace simwin {

// The handle of a library, by its number in `libraries()`; the same for every load.
std::uintptr_t libraryHandle(std::size_t number);

std::optional<std::size_t> findLibraryByHandle(std::uintptr_t handle);

// The libraries that the program loaded, each as often as it did; those that are there at its start are none.
struct LibraryTable {
    std::vector<unsigned> loads;  // by the library's number

    bool isOpen(std::uintptr_t value) const;
    void tell(std::vector<OpenHandle>& all, const Station& station) const;
};

}  // namespace simwin
