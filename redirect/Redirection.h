// Functions in the place of those that a loaded library imports.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "framework/Windows.h"
#include "redirect/ImportTable.h"

namespace redirect {

struct Replacement {
    std::string_view library;  // without regard to case
    std::string_view name;     // exactly; not asked when there is an ordinal
    std::uint16_t ordinal;     // 0: imported by name
    const void* address;
};

// For this object's life the library's calls go to the replacements; then they go where they went before. The library
// must stay loaded for as long. Slots are written one by one: no other thread may be calling through them.
class Redirection {
  public:
    // A replacement that the library does not import is no error. Throws std::system_error when a slot cannot be
    // written; then none is changed.
    Redirection(HMODULE library, std::span<const Replacement> replacements);
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
    ~Redirection();

    // The imports that have no replacement.
    const std::vector<Import>& untouched() const noexcept { return m_untouched; }
    std::size_t replaced() const noexcept { return m_originals.size(); }

  private:
    struct Original {
        ULONG_PTR* slot;
        ULONG_PTR address;
    };

    Redirection() = default;

    std::vector<Original> m_originals;
    std::vector<Import> m_untouched;
};

}  // namespace redirect
