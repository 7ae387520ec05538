// Counts what operator new gives, for tests that tell what stays allocated, and makes one allocation fail.
#pragma once

#include <cstddef>

namespace kvtest {

// Blocks of operator new that nobody has deleted yet.
std::size_t LiveAllocations() noexcept;

// While it lives, the n-th allocation from its making on, counted from 1, throws std::bad_alloc.
class FailingAllocation {
  public:
    explicit FailingAllocation(std::size_t n) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    // False: there were fewer allocations than that.
    bool hasFailed() const noexcept;
};

}  // namespace kvtest
