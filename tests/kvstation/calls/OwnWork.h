// The module's own work.
#pragma once

#include <algorithm>
#include <string_view>

namespace kvtest {

// Work on what the module has already: its own texts and memory, letters of another kind, the parts of a version that
// it was told. No station answers them, and where one fails, fields can be others all the same.
inline constexpr std::string_view kOwnWork[] = {"GlobalAlloc", "GlobalLock", "LoadStringA", "VerQueryValueA",
                                                "WideCharToMultiByte"};

inline bool isOwnWork(std::string_view call) {
    return std::ranges::find(kOwnWork, call) != std::end(kOwnWork);
}

}  // namespace kvtest
