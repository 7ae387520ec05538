#include "simwin/machine/Heap.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_map>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"
#include "simwin/machine/Roles.h"

using namespace simwin;

namespace simwin {
namespace {

constexpr std::uintptr_t kProcessHeap = 0xA0000;

// One for all machines, because a text may be made under one machine and released under another. It stands until the
// end of the process: the module's own statics are released then.
std::unordered_map<void*, Machine*>& heapBlocks() {
    static auto* blocks = new std::unordered_map<void*, Machine*>;
    return *blocks;
}

void keepAllocation(Recording& recording, void* block, DWORD flags, SIZE_T size) {
    recording.add([slot = recording.newSlot(asNumber(block)), flags, size](ReplayState& state) {
        state.values[slot] = asNumber(sim_HeapAlloc(sim_GetProcessHeap(), flags, size));
    });
}

// A block of before the recording is not there when the calls are made again.
void keepRelease(Recording& recording, void* block) {
    const std::size_t slot = recording.slotOf(asNumber(block));
    if (slot != Recording::kNoSlot)
        recording.add([slot](ReplayState& state) {
            sim_HeapFree(sim_GetProcessHeap(), 0, asPointer<void*>(state.values[slot]));
        });
}

}  // namespace

void freeHeapBlocks(Machine& machine) {
    if (machine.openHeapBlocks() == 0)
        return;
    std::erase_if(heapBlocks(), [&machine](const auto& block) {
        if (block.second != &machine)
            return false;
        std::free(block.first);
        return true;
    });
}

}  // namespace simwin

namespace {

// All threads share the process heap: Windows forbids to leave its lock aside.
void checkFlags(Machine& machine, const char* call, DWORD flags) {
    if ((flags & HEAP_NO_SERIALIZE) != 0)
        machine.reportMisuse(call, flags, "are no flags for this heap");
}

}  // namespace

HANDLE WINAPI sim_GetProcessHeap() {
    return asPointer<HANDLE>(kProcessHeap);
}

// The process heap is the program's own work: nobody is told of it. It is kept for replay, because it costs time.
LPVOID WINAPI sim_HeapAlloc(HANDLE heap, DWORD flags, SIZE_T size) {
    Machine& machine = Machine::current();
    if (asNumber(heap) != kProcessHeap) {
        machine.reportMisuse("HeapAlloc", asNumber(heap), "is no heap");
        return nullptr;
    }
    checkFlags(machine, "HeapAlloc", flags);
    if (machine.countAllocation() || size > kLargestBlock)
        return nullptr;
    const SIZE_T room = size != 0 ? size : 1;
    void* block = std::malloc(room);
    if (block == nullptr)
        return nullptr;
    std::memset(block, (flags & HEAP_ZERO_MEMORY) != 0 ? 0 : kDirt, room);
    try {
        heapBlocks().emplace(block, &machine);
    } catch (const std::bad_alloc&) {
        std::free(block);
        return nullptr;
    }
    machine.countHeapBlocks(1);
    if (Recording* recording = machine.recording())
        keepAllocation(*recording, block, flags, size);
    return block;
}

BOOL WINAPI sim_HeapFree(HANDLE heap, DWORD flags, LPVOID block) {
    if (block == nullptr)
        return TRUE;
    checkFlags(Machine::current(), "HeapFree", flags);
    const auto found = asNumber(heap) == kProcessHeap ? heapBlocks().find(block) : heapBlocks().end();
    if (found == heapBlocks().end()) {
        Machine::current().reportMisuse("HeapFree", asNumber(block), "is no block of this heap");
        Machine::current().setLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    found->second->countHeapBlocks(-1);
    if (Recording* recording = Machine::current().recording())
        keepRelease(*recording, block);
    heapBlocks().erase(found);
    std::free(block);
    return TRUE;
}
