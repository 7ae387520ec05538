// The module's own new and delete, apart from those of the tests and of the simulated machine: counted, kept account
// of, and failed on purpose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace kvtest {

struct ModuleBlock {
    std::size_t size;
    bool isArray;
};

struct ModuleMemory {
    std::uint64_t allocations = 0;        // so far
    std::uint64_t allocationToFail = 0;   // counted from 1, as `allocations` is; it throws std::bad_alloc
    std::map<void*, ModuleBlock> blocks;  // that are not deleted yet
};

ModuleMemory& moduleMemory();

}  // namespace kvtest
