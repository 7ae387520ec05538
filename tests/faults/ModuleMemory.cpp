#include "tests/faults/ModuleMemory.h"

#include <new>

namespace kvtest {
namespace {

void countAllocation() {
    if (++moduleMemory().allocations == moduleMemory().allocationToFail)
        throw std::bad_alloc();
}

void* keep(void* block, std::size_t size, bool isArray) {
    moduleMemory().blocks[block] = {size, isArray};
    return block;
}

void forget(void* block) {
    moduleMemory().blocks.erase(block);
}

}  // namespace

// It stands until the end of the process: the module's statics are destroyed then.
ModuleMemory& moduleMemory() {
    static auto* memory = new ModuleMemory;
    return *memory;
}

}  // namespace kvtest

// The link names of the module's calls. They end in the language's own functions, under the sanitizer's eye.
extern "C" {
void* ModuleNew(std::size_t size);
void* ModuleNewArray(std::size_t size);
void ModuleDelete(void* block) noexcept;
void ModuleDeleteSized(void* block, std::size_t size) noexcept;
void ModuleDeleteArray(void* block) noexcept;
void ModuleDeleteArraySized(void* block, std::size_t size) noexcept;
}

void* ModuleNew(std::size_t size) {
    kvtest::countAllocation();
    return kvtest::keep(::operator new(size), size, false);
}

void* ModuleNewArray(std::size_t size) {
    kvtest::countAllocation();
    return kvtest::keep(::operator new[](size), size, true);
}

void ModuleDelete(void* block) noexcept {
    kvtest::forget(block);
    ::operator delete(block);
}

void ModuleDeleteSized(void* block, std::size_t size) noexcept {
    kvtest::forget(block);
    ::operator delete(block, size);
}

void ModuleDeleteArray(void* block) noexcept {
    kvtest::forget(block);
    ::operator delete[](block);
}

void ModuleDeleteArraySized(void* block, std::size_t size) noexcept {
    kvtest::forget(block);
    ::operator delete[](block, size);
}
