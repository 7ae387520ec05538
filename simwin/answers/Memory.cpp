#include <cstring>
#include <memory>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/Heap.h"
#include "simwin/machine/MachineState.h"

using namespace simwin;

namespace {

HGLOBAL failAllocation(Machine& machine) {
    machine.setLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

// A block that is not to be zeroed begins with what the last one held; the rest is no zeros either.
void soil(const MachineState& state, char* memory, std::size_t size) {
    std::memset(memory, kDirt, size);
    state.lastGlobalBlock.copy(memory, size);
}

HGLOBAL allocateGlobal(Machine& machine, UINT flags, SIZE_T size) {
    if (size > kLargestBlock)
        return failAllocation(machine);
    MachineState& state = machine.state();
    const bool isDirty = (flags & GMEM_ZEROINIT) == 0;
    if ((flags & GMEM_MOVEABLE) == 0) {
        void* block = state.fixedBlocks.open(size);
        if (isDirty)
            soil(state, static_cast<char*>(block), size);
        return block;
    }
    // Windows counts a moveable block of no bytes as one whose memory was taken away.
    GlobalBlock block{size != 0 ? std::make_unique<char[]>(size) : nullptr, size};
    if (isDirty && block.memory != nullptr)
        soil(state, block.memory.get(), size);
    return asPointer<HGLOBAL>(state.globalBlocks.open(std::move(block)));
}

// A program that was refused a block may pass its null on.
void refuse(Machine& machine, const char* call, HGLOBAL handle) {
    if (handle != nullptr)
        machine.reportMisuse(call, asNumber(handle), "is no open block");
    machine.setLastError(ERROR_INVALID_HANDLE);
}

LPVOID lockGlobal(Machine& machine, HGLOBAL handle) {
    if (GlobalBlock* block = machine.state().globalBlocks.find(asNumber(handle))) {
        if (block->memory == nullptr)
            machine.setLastError(ERROR_DISCARDED);
        else
            ++block->locks;
        return block->memory.get();
    }
    if (machine.state().fixedBlocks.isOpen(asNumber(handle)))
        return handle;
    refuse(machine, "GlobalLock", handle);
    return nullptr;
}

BOOL unlockGlobal(Machine& machine, HGLOBAL handle) {
    if (GlobalBlock* block = machine.state().globalBlocks.find(asNumber(handle))) {
        if (block->locks == 0) {
            machine.reportMisuse("GlobalUnlock", asNumber(handle), "is not locked");
            machine.setLastError(ERROR_NOT_LOCKED);
            return FALSE;
        }
        machine.setLastError(NO_ERROR);
        return --block->locks > 0 ? TRUE : FALSE;
    }
    if (machine.state().fixedBlocks.isOpen(asNumber(handle)))
        return TRUE;
    refuse(machine, "GlobalUnlock", handle);
    return FALSE;
}

bool closeGlobal(MachineState& state, HGLOBAL handle) {
    const GlobalBlock* block = state.globalBlocks.find(asNumber(handle));
    if (block != nullptr && block->memory != nullptr)
        state.lastGlobalBlock.assign(block->memory.get(), block->size);
    return state.globalBlocks.close(asNumber(handle));
}

// Null tells success, as Windows has it; freeing null does nothing.
HGLOBAL freeBlock(Machine& machine, const char* call, HGLOBAL handle) {
    if (handle == nullptr || closeGlobal(machine.state(), handle) ||
        machine.state().fixedBlocks.close(asNumber(handle)))
        return nullptr;
    refuse(machine, call, handle);
    return handle;
}

}  // namespace

HLOCAL WINAPI sim_LocalAlloc(UINT flags, SIZE_T size) {
    return makeCall<sim_LocalAlloc>(
        "LocalAlloc", failsWithZero(ERROR_NOT_ENOUGH_MEMORY),
        [&](Machine& machine) { return allocateGlobal(machine, flags, size); }, Value{flags}, Value{size});
}

HLOCAL WINAPI sim_LocalFree(HLOCAL block) {
    return makeCall<sim_LocalFree>(
        "LocalFree", kNeverFails, [&](Machine& machine) { return freeBlock(machine, "LocalFree", block); },
        Handle{block});
}

HGLOBAL WINAPI sim_GlobalAlloc(UINT flags, SIZE_T size) {
    return makeCall<sim_GlobalAlloc>(
        "GlobalAlloc", failsWithZero(ERROR_NOT_ENOUGH_MEMORY),
        [&](Machine& machine) { return allocateGlobal(machine, flags, size); }, Value{flags}, Value{size});
}

LPVOID WINAPI sim_GlobalLock(HGLOBAL block) {
    return makeCall<sim_GlobalLock>(
        "GlobalLock", failsWithZero(ERROR_NOT_ENOUGH_MEMORY),
        [&](Machine& machine) { return lockGlobal(machine, block); }, Handle{block});
}

BOOL WINAPI sim_GlobalUnlock(HGLOBAL block) {
    return makeCall<sim_GlobalUnlock>(
        "GlobalUnlock", kNeverFails, [&](Machine& machine) { return unlockGlobal(machine, block); }, Handle{block});
}

HGLOBAL WINAPI sim_GlobalFree(HGLOBAL block) {
    return makeCall<sim_GlobalFree>(
        "GlobalFree", kNeverFails, [&](Machine& machine) { return freeBlock(machine, "GlobalFree", block); },
        Handle{block});
}
