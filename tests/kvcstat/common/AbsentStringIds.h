// Ids without a text in the module's string table.
#pragma once

#include <set>
#include <vector>

namespace kvtest {

// The first and the last id that there can be, and those beside and between the table's own. Sixteen ids with one that
// has a text are kept as one resource.
inline std::vector<unsigned> absentStringIds() {
    const std::set<unsigned> present = {
#define KV_STRING(id, text) id,
#include "kvcstat/common/StringTable.inc"
    };
    std::vector<unsigned> absent = {0, 65535};
    for (unsigned id = *present.begin() / 16 * 16 - 1; id <= (*present.rbegin() / 16 + 1) * 16; ++id) {
        if (!present.contains(id))
            absent.push_back(id);
    }
    return absent;
}

}  // namespace kvtest
