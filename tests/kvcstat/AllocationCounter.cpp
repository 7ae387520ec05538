#include "tests/kvcstat/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t g_live = 0;
std::size_t g_countdown = 0;  // 0: none is to fail, or it has failed

void* Allocate(std::size_t size) noexcept {
    if (g_countdown != 0 && --g_countdown == 0)
        return nullptr;
    void* block = std::malloc(size != 0 ? size : 1);
    g_live += block != nullptr ? 1 : 0;
    return block;
}

void* AllocateOrThrow(std::size_t size) {
    void* block = Allocate(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void Free(void* block) noexcept {
    g_live -= block != nullptr ? 1 : 0;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    Free(block);
}
void operator delete[](void* block) noexcept {
    Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    Free(block);
}

namespace kvtest {

std::size_t LiveAllocations() noexcept {
    return g_live;
}

FailingAllocation::FailingAllocation(std::size_t n) noexcept {
    g_countdown = n;
}

FailingAllocation::~FailingAllocation() {
    g_countdown = 0;
}

bool FailingAllocation::hasFailed() const noexcept {
    return g_countdown == 0;
}

}  // namespace kvtest
