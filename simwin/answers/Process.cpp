#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"

using namespace simwin;

namespace {

HANDLE openProcess(Machine& machine, DWORD id) {
    const std::optional<Process>& process = machine.station().process;
    if (!process || process->id != id) {
        machine.setLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return asPointer<HANDLE>(machine.state().processes.open(id));
}

BOOL openToken(Machine& machine, HANDLE handle, HANDLE* token) {
    const std::optional<WindowsVersion>& version = machine.station().version;
    if (version && version->platformId == VER_PLATFORM_WIN32_WINDOWS)
        return fail(machine, ERROR_CALL_NOT_IMPLEMENTED);
    const std::uint32_t* id = machine.state().processes.find(asNumber(handle));
    if (id == nullptr) {
        if (handle != nullptr)
            machine.reportMisuse("OpenProcessToken", asNumber(handle), "is no open process");
        return fail(machine, ERROR_INVALID_HANDLE);
    }
    if (token == nullptr)
        return fail(machine, ERROR_NOACCESS);
    *token = asPointer<HANDLE>(machine.state().tokens.open(*id));
    return TRUE;
}

BOOL tokenInformation(Machine& machine, HANDLE token, TOKEN_INFORMATION_CLASS kind, void* buffer, DWORD size,
                      DWORD* needed) {
    if (machine.state().tokens.find(asNumber(token)) == nullptr) {
        if (token != nullptr)
            machine.reportMisuse("GetTokenInformation", asNumber(token), "is no open token");
        return fail(machine, ERROR_INVALID_HANDLE);
    }
    const std::optional<Process>& process = machine.station().process;
    if (kind != TokenSessionId || !process || !process->sessionId)
        return fail(machine, ERROR_INVALID_PARAMETER);
    if (needed != nullptr)
        *needed = sizeof(DWORD);
    if (buffer == nullptr || size < sizeof(DWORD))
        return fail(machine, size < sizeof(DWORD) ? ERROR_INSUFFICIENT_BUFFER : ERROR_NOACCESS);
    std::memcpy(buffer, &*process->sessionId, sizeof(DWORD));
    return TRUE;
}

}  // namespace

DWORD WINAPI sim_GetCurrentProcessId() {
    return makeCall<sim_GetCurrentProcessId>("GetCurrentProcessId", kNeverFails, [](Machine& machine) -> DWORD {
        return machine.station().process ? machine.station().process->id : 0;
    });
}

HANDLE WINAPI sim_OpenProcess(DWORD access, BOOL inherit, DWORD id) {
    return makeCall<sim_OpenProcess>(
        "OpenProcess", failsWithZero(ERROR_ACCESS_DENIED), [&](Machine& machine) { return openProcess(machine, id); },
        Value{access}, Value{inherit}, Value{id});
}

BOOL WINAPI sim_OpenProcessToken(HANDLE process, DWORD access, PHANDLE token) {
    return makeCall<sim_OpenProcessToken>(
        "OpenProcessToken", failsWithZero(ERROR_ACCESS_DENIED),
        [&](Machine& machine) { return openToken(machine, process, token); }, Handle{process}, Value{access},
        NewHandle{token});
}

BOOL WINAPI sim_GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer, DWORD size,
                                    PDWORD needed) {
    return makeCall<sim_GetTokenInformation>(
        "GetTokenInformation", failsWithZero(ERROR_ACCESS_DENIED),
        [&](Machine& machine) { return tokenInformation(machine, token, kind, buffer, size, needed); }, Handle{token},
        Value{kind}, ByteBuffer<LPVOID>{buffer, size, needed}, Value{size}, Number{needed});
}

DWORD WINAPI sim_GetLastError() {
    return makeCall<sim_GetLastError>("GetLastError", kNeverFails,
                                      [](Machine& machine) -> DWORD { return machine.lastError(); });
}
