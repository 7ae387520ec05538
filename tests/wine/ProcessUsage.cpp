#include "tests/wine/ProcessUsage.h"

#define PSAPI_VERSION 2  // the functions of KERNEL32
#include "framework/Windows.h"

#include <psapi.h>
#include <winternl.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace kvtest {
namespace {

constexpr std::size_t kMostHeaps = 64;
constexpr std::size_t kMostTlsIndexes = 1088;
constexpr ULONG_PTR kHandlesEnd = ULONG_PTR{1} << 26;  // Windows opens no more for a process

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

constexpr NTSTATUS kStatusInfoLengthMismatch = static_cast<NTSTATUS>(0xC0000004);

// A row of SYSTEM_PROCESS_INFORMATION, each with its distance to the next.
std::vector<std::byte> AllProcesses() {
    std::vector<std::byte> list(std::size_t{1} << 16);
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(SystemProcessInformation, list.data(), static_cast<ULONG>(list.size()),
                                              nullptr)) == kStatusInfoLengthMismatch)
        list.resize(2 * list.size());
    if (status < 0)
        throw std::runtime_error("Windows does not list its processes");
    return list;
}

// What the list of processes tells of this one: on Windows the number of its handles, on Wine the room for them.
ULONG ListedHandleCount() {
    const std::vector<std::byte> list = AllProcesses();
    const auto self = static_cast<ULONG_PTR>(GetCurrentProcessId());
    for (std::size_t place = 0;;) {
        SYSTEM_PROCESS_INFORMATION process;
        std::memcpy(&process, list.data() + place, sizeof process);
        if (reinterpret_cast<ULONG_PTR>(process.UniqueProcessId) == self)
            return process.HandleCount;
        if (process.NextEntryOffset == 0)
            throw std::runtime_error("Windows lists this process nowhere");
        place += process.NextEntryOffset;
    }
}

DWORD OpenHandleCount() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

// Handles are multiples of 4, and Wine's the lowest ones for which there is room. The list of all handles
// (SystemExtendedHandleInformation) would be quicker, but Wine's server crashes from it while a process starts.
std::vector<HANDLE> OpenHandles() {
    const ULONG_PTR room = ULONG_PTR{4} * ListedHandleCount();
    const DWORD count = OpenHandleCount();  // 0 on Wine
    std::vector<HANDLE> open;
    for (ULONG_PTR value = 4; value <= room || (open.size() < count && value < kHandlesEnd); value += 4) {
        const auto handle = reinterpret_cast<HANDLE>(value);
        DWORD flags = 0;
        if (GetHandleInformation(handle, &flags) != FALSE)
            open.push_back(handle);
    }
    return open;
}

bool IsToken(HANDLE handle) {
    TOKEN_TYPE type;
    DWORD size = 0;
    return GetTokenInformation(handle, TokenType, &type, sizeof type, &size) != FALSE;
}

}  // namespace

HandleCounts CountOpenHandles() {
    HandleCounts counts;
    for (const HANDLE handle : OpenHandles()) {
        ++counts.all;
        if (GetProcessId(handle) != 0)
            ++counts.processes;
        else if (IsToken(handle))
            ++counts.tokens;
    }
    return counts;
}

ProcessUsage MeasureUsage() {
    ProcessUsage usage;
    usage.handles = CountOpenHandles();
    // PagefileUsage counts the same bytes as PrivateUsage, which Wine leaves 0.
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    usage.privateBytes = memory.PagefileUsage;
    usage.freeTlsIndexes = CountFreeTlsIndexes();
    AddHeaps(usage);
    return usage;
}

}  // namespace kvtest
