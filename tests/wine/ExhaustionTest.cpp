// The real kvcstat64.dll when memory has run out for good: not one allocation fails but every one.
#include <gtest/gtest.h>

#include <array>
#include <exception>
#include <new>

#include "redirect/Redirection.h"
#include "tests/wine/StationModule.h"

namespace {

LPVOID WINAPI NoHeapBlock(HANDLE, DWORD, SIZE_T) {
    return nullptr;
}

void* NoMemory(std::size_t) {
    return nullptr;
}

void* NoItems(std::size_t, std::size_t) {
    return nullptr;
}

void* NoMoreMemory(void*, std::size_t) {
    return nullptr;
}

const std::array kExhausted = {
    redirect::Replacement{"KERNEL32.dll", "HeapAlloc", 0, reinterpret_cast<const void*>(NoHeapBlock)},
    redirect::Replacement{"msvcrt.dll", "malloc", 0, reinterpret_cast<const void*>(NoMemory)},
    redirect::Replacement{"msvcrt.dll", "calloc", 0, reinterpret_cast<const void*>(NoItems)},
    redirect::Replacement{"msvcrt.dll", "realloc", 0, reinterpret_cast<const void*>(NoMoreMemory)},
};

bool Throws(const kvtest::StationModule& module, kvtest::GuardedRecord& record) {
    try {
        module.Collect(record.data());
        return false;
    } catch (const std::bad_alloc&) {
        // The exception lies in the library's reserve, which this program's runtime could not release: it stays.
        new std::exception_ptr(std::current_exception());
        return true;
    }
}

DWORD WINAPI ThrowOnThisThread(LPVOID module) {
    kvtest::GuardedRecord record;
    return Throws(*static_cast<const kvtest::StationModule*>(module), record) ? 1 : 0;
}

TEST(ExhaustionTest, ThrowsToTheCallerAndTheNextCallWorks) {
    const kvtest::StationModule module(kvtest::ReleaseFolder());
    ASSERT_TRUE(module.IsLoaded());
    kvtest::GuardedRecord record;
    record.Fill('\0');
    {
        const redirect::Redirection exhausted(module.Library(), kExhausted);
        ASSERT_GE(exhausted.replaced(), 2U);
        EXPECT_TRUE(Throws(module, record));
        EXPECT_TRUE(Throws(module, record));
    }
    module.Collect(record.data());
    EXPECT_NE(record.Text(&STATIONDATA::szOS), "");
}

TEST(ExhaustionTest, ThrowsOnEveryThreadThatCalls) {
    const kvtest::StationModule module(kvtest::ReleaseFolder());
    ASSERT_TRUE(module.IsLoaded());
    const redirect::Redirection exhausted(module.Library(), kExhausted);
    // More threads than the library has states for.
    for (int i = 0; i < 100; ++i) {
        HANDLE thread =
            CreateThread(nullptr, 0, ThrowOnThisThread, const_cast<kvtest::StationModule*>(&module), 0, nullptr);
        ASSERT_NE(thread, nullptr);
        WaitForSingleObject(thread, INFINITE);
        DWORD threw = 0;
        GetExitCodeThread(thread, &threw);
        CloseHandle(thread);
        EXPECT_EQ(threw, 1U) << "thread " << i;
    }
}

}  // namespace
