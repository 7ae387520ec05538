#pragma once

namespace simwin {

class Machine;

// Frees the blocks that a machine's process heap still has.
void freeHeapBlocks(Machine& machine);

}  // namespace simwin
