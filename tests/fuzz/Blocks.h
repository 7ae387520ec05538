// Counts the program's C++ allocations and knows those of one size, by replacing operator new and delete.
#pragma once

#include <cstddef>
#include <vector>

namespace kvfuzz {

// Blocks that are allocated and not yet freed.
std::size_t liveBlocks() noexcept;

// From now on blocks of this size are kept in mind; 0 ends that and forgets them.
void watchBlocks(std::size_t size) noexcept;

// Those that were allocated since and still live, at most some dozens, oldest first.
std::vector<void*> watchedBlocks();

}  // namespace kvfuzz
