// The functions that a loaded library imports, each with the slot through which the library calls it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Windows.h"

namespace redirect {

// Texts lie in the library's image: they are valid as long as it is loaded.
struct Import {
    std::string_view library;  // as the image spells it, such as "KERNEL32.dll"
    std::string_view name;     // empty: imported by ordinal
    std::uint16_t ordinal;     // 0: imported by name
    ULONG_PTR* slot;           // holds the function's address

    std::string function() const;  // "GetVersion" or "#2"
    std::string text() const;      // "KERNEL32.dll!GetVersion" or "kvenv64.dll!#2"
};

// In the order of the image. Delay-loaded functions are not among them, nor those that an old linker's image names only
// in the slots, which the load has overwritten.
std::vector<Import> importsOf(HMODULE library);

}  // namespace redirect
