// What this process holds of Windows, for tests of what calls leave behind.
#pragma once

#include <cstddef>

namespace kvtest {

struct ProcessUsage {
    std::size_t handles = 0;
    std::size_t heapBlocks = 0;  // in use, on all heaps of the process
    std::size_t heapBytes = 0;   // of those blocks
    std::size_t privateBytes = 0;
    std::size_t freeTlsIndexes = 0;
};

ProcessUsage MeasureUsage();

}  // namespace kvtest
