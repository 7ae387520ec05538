// What tests ask of a loaded library: its exports and imports, and functions in the place of imported ones.
#pragma once

#include "framework/Windows.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include "redirect/Redirection.h"

struct Export {
    DWORD ordinal;
    std::string name;  // empty: exported by ordinal only

    bool operator==(const Export&) const = default;
};

// In the order of their ordinals.
std::vector<Export> ExportsOf(HMODULE module);

// Functions by library, whose name is in lower case; "#2" is an import by ordinal.
std::map<std::string, std::set<std::string>> ImportsOf(HMODULE module);

// IMAGE_DLLCHARACTERISTICS_... of the library.
unsigned CharacteristicsOf(HMODULE module);

// Puts a function in the place of one that a module imports by name, as long as it lives. The test fails when the
// module does not import it.
class ImportOverride {
  public:
    template <typename Function>
    ImportOverride(HMODULE module, const char* library, const char* name, Function* replacement)
        : ImportOverride(module, {library, name, 0, reinterpret_cast<const void*>(replacement)}) {}

  private:
    ImportOverride(HMODULE module, const redirect::Replacement& replacement);

    redirect::Redirection m_redirection;
};
