// A network-name library that ends a collection: it hangs, crashes or exits, as a variable says.
#include <cstdlib>
#include <string_view>

#include "framework/Windows.h"

extern "C" {
__declspec(dllexport) int KVGetUserName(void*) {
    return 0;
}
__declspec(dllexport) int KVNDSWhoAmI(const char*, void*) {
    return 0;
}
__declspec(dllexport) void KVGetDomainName(void*) {
    const char* ending = std::getenv("KV_TEST_ENDING");
    if (ending == nullptr)
        return;
    if (std::string_view(ending) == "hang")
        Sleep(INFINITE);
    if (std::string_view(ending) == "exit")
        ExitProcess(0);
    // cppcheck-suppress nullPointer ; this is the crash
    *static_cast<volatile int*>(nullptr) = 1;
}
}
