// The memory that Windows gives out: local, global, of the process's heap.
#include <algorithm>
#include <cstring>
#include <string>

#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

bool isZero(const void* block, std::size_t size) {
    const auto* bytes = static_cast<const char*>(block);
    return std::all_of(bytes, bytes + size, [](char byte) { return byte == 0; });
}

bool takesBytes(void* block, std::size_t size) {
    std::memset(block, 0x5A, size);
    return size == 0 || (static_cast<char*>(block)[0] == 0x5A && static_cast<char*>(block)[size - 1] == 0x5A);
}

constexpr SIZE_T kSizes[] = {1, 7, 260, 70000};
// More than any address space has.
constexpr SIZE_T kTooMuch = SIZE_T{1} << 60;

void testLocal(Suite& suite) {
    const Check allocate = suite.of("LocalAlloc");
    const Check release = suite.of("LocalFree");
    for (const SIZE_T size : kSizes) {
        const std::string at = std::to_string(size) + " bytes: ";
        HLOCAL block = LocalAlloc(LPTR, size);
        allocate.holds(at + "a block", block != nullptr);
        if (block == nullptr)
            continue;
        allocate.holds(at + "cleared", isZero(block, size));
        allocate.holds(at + "to be written", takesBytes(block, size));
        release.holds(at + "null tells success", LocalFree(block) == nullptr);
    }
    HLOCAL empty = LocalAlloc(LPTR, 0);
    allocate.holds("no bytes: a block all the same", empty != nullptr);
    release.holds("no bytes: null tells success", LocalFree(empty) == nullptr);
    const auto null = suite.make([] { return LocalFree(nullptr); });
    release.holds("null: null", null.result == nullptr);
    release.equal("null: the last error stays", null.error, kUntouchedError);
    const auto much = suite.make([] { return LocalAlloc(LPTR, kTooMuch); });
    allocate.holds("too much: none", much.result == nullptr);
    allocate.equal("too much: error", much.error, ERROR_NOT_ENOUGH_MEMORY);
}

void testMoveable(Suite& suite) {
    const Check allocate = suite.of("GlobalAlloc");
    const Check lock = suite.of("GlobalLock");
    const Check unlock = suite.of("GlobalUnlock");
    const Check release = suite.of("GlobalFree");
    for (const SIZE_T size : kSizes) {
        const std::string at = std::to_string(size) + " moveable bytes: ";
        HGLOBAL block = GlobalAlloc(GHND, size);
        allocate.holds(at + "a handle", block != nullptr);
        void* first = GlobalLock(block);
        lock.holds(at + "memory", first != nullptr);
        if (first == nullptr)
            continue;
        allocate.holds(at + "cleared", isZero(first, size));
        allocate.holds(at + "to be written", takesBytes(first, size));
        lock.holds(at + "locked twice at one place", GlobalLock(block) == first);
        unlock.equal(at + "still locked once", GlobalUnlock(block), TRUE);
        const auto last = suite.make([&] { return GlobalUnlock(block); });
        unlock.equal(at + "not locked any more: result", last.result, FALSE);
        unlock.equal(at + "not locked any more: error", last.error, NO_ERROR);
        release.holds(at + "null tells success", GlobalFree(block) == nullptr);
    }
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 16);
    const auto unlocked = suite.make([&] { return GlobalUnlock(block); });
    unlock.equal("never locked: result", unlocked.result, FALSE);
    unlock.equal("never locked: error", unlocked.error, ERROR_NOT_LOCKED);
    GlobalLock(block);
    release.holds("while it is locked: null tells success", GlobalFree(block) == nullptr);
    HGLOBAL empty = GlobalAlloc(GMEM_MOVEABLE, 0);
    allocate.holds("no moveable bytes: a handle all the same", empty != nullptr);
    const auto discarded = suite.make([&] { return GlobalLock(empty); });
    lock.holds("no moveable bytes: no memory", discarded.result == nullptr);
    lock.equal("no moveable bytes: error", discarded.error, ERROR_DISCARDED);
    release.holds("no moveable bytes: null tells success", GlobalFree(empty) == nullptr);
}

void testFixed(Suite& suite) {
    const Check allocate = suite.of("GlobalAlloc");
    HGLOBAL block = GlobalAlloc(GPTR, 260);
    allocate.holds("fixed bytes: a block", block != nullptr);
    allocate.holds("fixed bytes: cleared", block != nullptr && isZero(block, 260));
    suite.of("GlobalLock").holds("fixed bytes: the block itself", GlobalLock(block) == block);
    suite.of("GlobalUnlock").equal("fixed bytes: result", GlobalUnlock(block), TRUE);
    suite.of("GlobalFree").holds("fixed bytes: null tells success", GlobalFree(block) == nullptr);
    const auto much = suite.make([] { return GlobalAlloc(GHND, kTooMuch); });
    allocate.holds("too much: none", much.result == nullptr);
    allocate.equal("too much: error", much.error, ERROR_NOT_ENOUGH_MEMORY);

    const auto null = suite.make([] { return GlobalFree(nullptr); });
    suite.of("GlobalFree").holds("null: null", null.result == nullptr);
    suite.of("GlobalFree").equal("null: the last error stays", null.error, kUntouchedError);
    const auto locked = suite.make([] { return GlobalLock(nullptr); });
    suite.of("GlobalLock").holds("null: none", locked.result == nullptr);
}

void testHeap(Suite& suite) {
    const Check process = suite.of("GetProcessHeap");
    const Check allocate = suite.of("HeapAlloc");
    const Check release = suite.of("HeapFree");
    HANDLE heap = GetProcessHeap();
    process.holds("a heap", heap != nullptr);
    process.holds("the same again", GetProcessHeap() == heap);
    for (const SIZE_T size : kSizes) {
        const std::string at = std::to_string(size) + " bytes: ";
        void* block = HeapAlloc(heap, HEAP_ZERO_MEMORY, size);
        allocate.holds(at + "a block", block != nullptr);
        if (block == nullptr)
            continue;
        allocate.holds(at + "cleared", isZero(block, size));
        allocate.holds(at + "to be written", takesBytes(block, size));
        void* other = HeapAlloc(heap, 0, size);
        allocate.holds(at + "another block", other != nullptr && other != block);
        release.equal(at + "result", HeapFree(heap, 0, block), TRUE);
        release.equal(at + "the other block: result", HeapFree(heap, 0, other), TRUE);
    }
    void* empty = HeapAlloc(heap, 0, 0);
    allocate.holds("no bytes: a block all the same", empty != nullptr);
    release.equal("no bytes: result", HeapFree(heap, 0, empty), TRUE);
    release.equal("null: result", HeapFree(heap, 0, nullptr), TRUE);
    allocate.holds("too much: none", HeapAlloc(heap, 0, kTooMuch) == nullptr);
}

}  // namespace

void testMemory(Suite& suite) {
    testLocal(suite);
    testMoveable(suite);
    testFixed(suite);
    testHeap(suite);
}

}  // namespace conformance
