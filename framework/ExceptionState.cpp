// For each thread the C++ runtime counts the exceptions that are on their way and keeps those that are handled. MinGW's
// own makes that state at a thread's first exception, from malloc and a thread-local index: where memory has run out it
// ends the process instead of throwing, and a library that is unloaded never gives the index back. This one has room
// for it from the load on.
#include <cxxabi.h>

#include <array>
#include <atomic>

#include "framework/Windows.h"

namespace __cxxabiv1 {

// As the C++ ABI for these targets lays it out.
struct __cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

}  // namespace __cxxabiv1

namespace {

// A thread takes a state at its first exception and keeps it. One that has ended has none on its way, so that a later
// thread of the same number may go on with its state.
struct ThreadState {
    std::atomic<DWORD> thread;  // 0: free
    __cxxabiv1::__cxa_eh_globals globals;
};

// Threads that throw at all: they have run out of memory. Those beyond share the last state, which matters only to two
// that handle an exception at the same moment.
constinit std::array<ThreadState, 64> g_states{};

ThreadState& StateOf(DWORD thread) noexcept {
    for (ThreadState& state : g_states) {
        DWORD owner = 0;
        if (state.thread.compare_exchange_strong(owner, thread) || owner == thread)
            return state;
    }
    return g_states.back();
}

}  // namespace

extern "C" __cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals() noexcept {
    return &StateOf(GetCurrentThreadId()).globals;
}

extern "C" __cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}
