#include "companions/kvtswrp/KVTSWRP.h"

#include <atomic>
#include <cstring>

#include "companions/common/TextWriter.h"
#include "companions/kvtswrp/ClientAddress.h"
#include "companions/kvtswrp/SessionAnswer.h"

namespace {

std::atomic<long> g_users;

int QueryText(WTS_INFO_CLASS question, char* buffer, int size) {
    FillText(buffer, size, "");
    return g_users > 0 && FillText(buffer, size, SessionAnswer(question).Text());
}

}  // namespace

// Callers open and close the wrapper from their DllMain, where Windows allows neither loading a library nor, while the
// process ends, freeing one. So these two only count; a query loads, and DllMain below frees.
extern "C" int ZRTSWRPInit(void) {
    ++g_users;
    return 1;
}

extern "C" int ZRTSWRPFree(void) {
    long users = g_users;
    while (users > 0 && !g_users.compare_exchange_weak(users, users - 1))
        continue;
    return users > 0;
}

extern "C" int ZRTSQueryClientName(char* buffer, int size) {
    return QueryText(WTSClientName, buffer, size);
}

extern "C" int ZRTSDomainName(char* buffer, int size) {
    return QueryText(WTSDomainName, buffer, size);
}

extern "C" int ZRTSQueryIPAddress(char* buffer, int size) {
    FillText(buffer, size, "");
    if (g_users <= 0)
        return 0;
    const SessionAnswer answer(WTSClientAddress);
    return FormatClientAddress(answer.Data(), answer.Size(), buffer, size);
}

extern "C" int ZRTSQuerySessionID(void) {
    DWORD session = 0;
    if (g_users > 0) {
        const SessionAnswer answer(WTSSessionId);
        if (answer.Size() >= sizeof session) {
            std::memcpy(&session, answer.Data(), sizeof session);
            return static_cast<int>(session);
        }
    }
    return ProcessIdToSessionId(GetCurrentProcessId(), &session) ? static_cast<int>(session) : -1;
}

// `reserved` is null when the library is unloaded while the process goes on; in a process that ends, Windows itself
// takes the libraries down and none may be freed any more.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved == nullptr)
        ReleaseSessionLibrary();
    return TRUE;
}
