#pragma once

#include <span>

#include "framework/String.h"
#include "framework/Windows.h"

// The name of a number, as an entry of the string table.
struct NameEntry {
    DWORD number;
    unsigned nameId;
};

// The entry's id, or `otherwise` when the table has no such number.
constexpr unsigned FindName(std::span<const NameEntry> table, DWORD number, unsigned otherwise) noexcept {
    for (const NameEntry& entry : table) {
        if (entry.number == number)
            return entry.nameId;
    }
    return otherwise;
}

inline constexpr unsigned kNoName = 0;

// The string table's text; empty for kNoName.
inline CString NameText(unsigned nameId) {
    CString name;
    if (nameId != kNoName)
        name.LoadString(nameId);
    return name;
}
