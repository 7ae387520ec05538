// What this process holds of Windows, for tests of what calls leave behind.
#pragma once

#include <cstddef>

namespace kvtest {

// Handles of this process, of kernel objects.
struct HandleCounts {
    std::size_t all = 0;
    std::size_t processes = 0;
    std::size_t tokens = 0;
};

// Found by trying values: Wine does not tell their number (GetProcessHandleCount gives 0).
HandleCounts CountOpenHandles();

struct ProcessUsage {
    HandleCounts handles;
    std::size_t heapBlocks = 0;  // in use, on all heaps of the process
    std::size_t heapBytes = 0;   // of those blocks
    std::size_t privateBytes = 0;
    std::size_t freeTlsIndexes = 0;
};

ProcessUsage MeasureUsage();

}  // namespace kvtest
