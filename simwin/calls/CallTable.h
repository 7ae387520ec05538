// The answers by library and name, for GetProcAddress and for whoever puts them in the place of the real functions.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace simwin {

struct CallEntry {
    std::string_view library;  // its file name, such as "KERNEL32.dll"
    std::string_view name;
    std::uint16_t ordinal;  // 0: exported by name
    bool imported;          // false: only looked up at run time
    const void* address;
};

std::span<const CallEntry> callTable();

// The answer for a function of a library, without regard to the case of the library's name; null when there is none.
const CallEntry* findCall(std::string_view library, std::string_view name);
const CallEntry* findCall(std::string_view library, std::uint16_t ordinal);
// The same for an import: by its ordinal, or by its name when the ordinal is 0.
const CallEntry* findCall(std::string_view library, std::string_view name, std::uint16_t ordinal);

// Whether it is a call on the process heap, which a library shares with its companions.
bool isHeapCall(std::string_view name);

struct LibraryEntry {
    std::string_view name;
    bool loadedAtStart;  // with the module, or by Windows itself
};

// Every library once, in the order of the table.
std::span<const LibraryEntry> libraries();

// A library's number in `libraries()`, without regard to case.
std::optional<std::size_t> findLibrary(std::string_view fileName);

}  // namespace simwin
