#include "tests/wine/ProcessUsage.h"

#define PSAPI_VERSION 2  // the functions of KERNEL32
#include "framework/Windows.h"

#include <psapi.h>

#include <array>

namespace kvtest {
namespace {

constexpr std::size_t kMostHeaps = 64;
constexpr std::size_t kMostTlsIndexes = 1088;

void AddHeap(HANDLE heap, ProcessUsage& usage) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0)
            continue;
        ++usage.heapBlocks;
        usage.heapBytes += entry.cbData;
    }
    HeapUnlock(heap);
}

void AddHeaps(ProcessUsage& usage) {
    std::array<HANDLE, kMostHeaps> heaps{};
    const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
    for (DWORD i = 0; i < count && i < heaps.size(); ++i)
        AddHeap(heaps[i], usage);
}

std::size_t CountFreeTlsIndexes() {
    std::array<DWORD, kMostTlsIndexes> taken{};
    std::size_t count = 0;
    while (count < taken.size() && (taken[count] = TlsAlloc()) != TLS_OUT_OF_INDEXES)
        ++count;
    for (std::size_t i = 0; i < count; ++i)
        TlsFree(taken[i]);
    return count;
}

}  // namespace

ProcessUsage MeasureUsage() {
    ProcessUsage usage;
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    usage.handles = handles;
    PROCESS_MEMORY_COUNTERS_EX memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
    usage.privateBytes = memory.PrivateUsage;
    usage.freeTlsIndexes = CountFreeTlsIndexes();
    AddHeaps(usage);
    return usage;
}

}  // namespace kvtest
