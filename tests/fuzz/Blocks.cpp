#include "tests/fuzz/Blocks.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace kvfuzz {
namespace {

std::size_t g_live = 0;
std::size_t g_watchedSize = 0;
std::array<void*, 64> g_watched{};
std::size_t g_watchedCount = 0;

void* allocateOrNull(std::size_t size) noexcept {
    void* block = std::malloc(size);
    if (block == nullptr)
        return nullptr;
    ++g_live;
    if (size == g_watchedSize && g_watchedCount < g_watched.size())
        g_watched[g_watchedCount++] = block;
    return block;
}

void* allocate(std::size_t size) {
    if (void* block = allocateOrNull(size))
        return block;
    throw std::bad_alloc();
}

void release(void* block) noexcept {
    if (block == nullptr)
        return;
    --g_live;
    if (g_watchedCount != 0) {
        const auto end = g_watched.begin() + static_cast<std::ptrdiff_t>(g_watchedCount);
        g_watchedCount = static_cast<std::size_t>(std::remove(g_watched.begin(), end, block) - g_watched.begin());
    }
    std::free(block);
}

}  // namespace

std::size_t liveBlocks() noexcept {
    return g_live;
}

void watchBlocks(std::size_t size) noexcept {
    g_watchedSize = size;
    g_watchedCount = 0;
}

std::vector<void*> watchedBlocks() {
    return std::vector<void*>(g_watched.begin(), g_watched.begin() + static_cast<std::ptrdiff_t>(g_watchedCount));
}

}  // namespace kvfuzz

void* operator new(std::size_t size) {
    return kvfuzz::allocate(size);
}
void* operator new[](std::size_t size) {
    return kvfuzz::allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return kvfuzz::allocateOrNull(size);
}
void operator delete(void* block) noexcept {
    kvfuzz::release(block);
}
void operator delete[](void* block) noexcept {
    kvfuzz::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    kvfuzz::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    kvfuzz::release(block);
}
