// What a loaded library takes by malloc, which its `new` is made of: counted, kept account of, and failed on purpose.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "redirect/Redirection.h"

namespace kvtest {

// The library must stay loaded for as long. One at a time.
class LibraryMemory {
  public:
    explicit LibraryMemory(HMODULE library);
    LibraryMemory(const LibraryMemory&) = delete;
    LibraryMemory& operator=(const LibraryMemory&) = delete;
    ~LibraryMemory();

    // Forgets what was. The n-th allocation from now on answers null; 0: none does.
    void Restart(std::uint64_t allocationToFail = 0);

    std::uint64_t Allocations() const { return m_allocations; }
    // Sizes of the blocks that are not freed, by address.
    const std::map<void*, std::size_t>& Blocks() const { return m_blocks; }

  private:
    static void* Allocate(std::size_t size);
    static void Free(void* block);

    static LibraryMemory* s_current;

    std::uint64_t m_allocations = 0;
    std::uint64_t m_allocationToFail = 0;
    std::map<void*, std::size_t> m_blocks;
    std::optional<redirect::Redirection> m_redirection;
};

}  // namespace kvtest
