// A library in the module's place that does what its caller must survive; the variable KV_MISBEHAVIOUR says what.
#include <assert.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "framework/Windows.h"

namespace {

std::string_view behaviour() {
    const char* value = std::getenv("KV_MISBEHAVIOUR");
    return value != nullptr ? value : "";
}

void accessNothing() {
    volatile int* nothing = nullptr;
    // cppcheck-suppress nullPointer ; this is the crash
    *nothing = 1;
}

// Each call needs the room of the one before, so that no loop can be made of them.
char useUpTheStack(const volatile char* before) {
    volatile char room[4096] = {};
    room[1] = *before;
    return room[1] != 0 ? room[2] : static_cast<char>(useUpTheStack(room) + room[3]);
}

// To both streams, by the C library and past it.
void print() {
    const std::string_view line = "Not the result.\r\n";
    DWORD written = 0;
    std::puts("MAC address 000C29ABCDEF");
    std::fflush(stdout);
    std::fputs("Not an error.\n", stderr);
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        WriteFile(GetStdHandle(stream), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

DWORD WINAPI endProcess(void*) {
    ExitProcess(7);
}

void endInAnotherThread() {
    WaitForSingleObject(CreateThread(nullptr, 0, endProcess, nullptr, 0, nullptr), INFINITE);
}

struct Misbehaviour {
    std::string_view name;
    void (*act)();
};

constexpr Misbehaviour kAll[] = {
    {"hang", [] { Sleep(INFINITE); }},
    {"access", accessNothing},
    {"overflow", [] { useUpTheStack(""); }},
    {"abort", [] { std::abort(); }},
    // As the macro does, which a release leaves out.
    {"assert", [] { _assert("a < b", "collector.cpp", 12); }},
    {"exit", [] { std::exit(7); }},
    {"ExitProcess", [] { ExitProcess(7); }},
    {"ExitProcess in another thread", endInAnotherThread},
    {"TerminateProcess", [] { TerminateProcess(GetCurrentProcess(), 7); }},
    {"print", print},
};

}  // namespace

extern "C" __declspec(dllexport) void __cdecl GetStationData(char* record) {
    std::memcpy(record, "PC-\x80\x81\xE9", 6);
    for (const Misbehaviour& one : kAll)
        if (one.name == behaviour())
            one.act();
    std::fflush(stdout);
}

// The loader's lock is held here, and any thread that begins or ends waits for it.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH && behaviour() == "hang at its load")
        Sleep(INFINITE);
    if (reason == DLL_PROCESS_ATTACH && behaviour() == "exit at its load")
        ExitProcess(7);
    return TRUE;
}
