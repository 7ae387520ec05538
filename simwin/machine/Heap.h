#pragma once

#include <cstddef>

namespace simwin {

class Machine;

// More than this no machine of the time has; a larger block is answered as in a full address space.
inline constexpr std::size_t kLargestBlock = std::size_t{1} << 31;

// What stands in every byte of a block that is not asked to be zeroed.
inline constexpr unsigned char kDirt = 0xA5;

// Frees the blocks that a machine's process heap still has.
void freeHeapBlocks(Machine& machine);

}  // namespace simwin
