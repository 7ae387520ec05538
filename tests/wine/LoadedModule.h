// What tests ask of a loaded library: its exports and imports, and functions in the place of imported ones.
#pragma once

#include "framework/Windows.h"

#include <map>
#include <set>
#include <string>
#include <vector>

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

// Puts a function in the place of one that a module imports (the library's name in lower case), as long as it lives.
class ImportOverride {
  public:
    template <typename Function>
    ImportOverride(HMODULE module, const char* library, const char* name, Function* replacement)
        : ImportOverride(module, library, name, reinterpret_cast<ULONG_PTR>(replacement)) {}
    ImportOverride(const ImportOverride&) = delete;
    ImportOverride& operator=(const ImportOverride&) = delete;
    ~ImportOverride();

  private:
    ImportOverride(HMODULE module, const char* library, const char* name, ULONG_PTR replacement);

    ULONG_PTR* m_slot = nullptr;
    ULONG_PTR m_original = 0;
};
