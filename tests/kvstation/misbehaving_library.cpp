// A library in the module's place that does what its caller must survive; the variable KV_MISBEHAVIOUR says what.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "framework/Windows.h"

namespace {

void misbehave(std::string_view behaviour) {
    if (behaviour == "hang")
        Sleep(INFINITE);
    if (behaviour == "crash")
        RaiseException(0xC0000005, 0, 0, nullptr);
    if (behaviour == "exit")
        std::exit(7);
    if (behaviour == "abort")
        std::abort();
    if (behaviour == "print")
        std::puts("MAC address 000C29ABCDEF");
}

}  // namespace

extern "C" __declspec(dllexport) void __cdecl GetStationData(char* record) {
    std::memcpy(record, "PC-\x80\x81\xE9", 6);
    const char* behaviour = std::getenv("KV_MISBEHAVIOUR");
    misbehave(behaviour != nullptr ? behaviour : "");
    std::fflush(stdout);
}
