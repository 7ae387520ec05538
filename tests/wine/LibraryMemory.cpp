#include "tests/wine/LibraryMemory.h"

#include <array>
#include <cstdlib>

namespace kvtest {

LibraryMemory* LibraryMemory::s_current = nullptr;

LibraryMemory::LibraryMemory(HMODULE library) {
    const std::array replacements{
        redirect::Replacement{"msvcrt.dll", "malloc", 0, reinterpret_cast<const void*>(&Allocate)},
        redirect::Replacement{"msvcrt.dll", "free", 0, reinterpret_cast<const void*>(&Free)},
    };
    s_current = this;
    m_redirection.emplace(library, replacements);
}

LibraryMemory::~LibraryMemory() {
    m_redirection.reset();
    s_current = nullptr;
}

void LibraryMemory::Restart(std::uint64_t allocationToFail) {
    m_allocations = 0;
    m_allocationToFail = allocationToFail;
    m_blocks.clear();
}

void* LibraryMemory::Allocate(std::size_t size) {
    if (++s_current->m_allocations == s_current->m_allocationToFail)
        return nullptr;
    void* block = std::malloc(size);
    if (block != nullptr)
        s_current->m_blocks[block] = size;
    return block;
}

// A block of before, or of calloc, stands in no account.
void LibraryMemory::Free(void* block) {
    s_current->m_blocks.erase(block);
    std::free(block);
}

}  // namespace kvtest
