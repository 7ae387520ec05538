#include "companions/kvenv/kvenv.h"

#include "companions/common/TextWriter.h"
#include "framework/Windows.h"

namespace {

// Asked without a buffer, Windows answers with the size that the value needs. That counts the terminator, so only a
// missing variable gives 0.
DWORD SizeOf(const char* name) {
    return GetEnvironmentVariableA(name, nullptr, 0);
}

// A value that is longer than the caller's buffer: what Windows leaves there is anything, so its head comes from a
// copy.
int GetHead(const char* name, char* buffer, int size) {
    FillText(buffer, size, "");
    const DWORD needed = SizeOf(name);
    auto* value = static_cast<char*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, needed + 1));
    if (value == nullptr)
        return 0;
    // Another thread may lengthen the value between the two questions; the copy is then empty or anything, and ends.
    GetEnvironmentVariableA(name, value, needed);
    FillText(buffer, size, value);
    HeapFree(GetProcessHeap(), 0, value);
    return needed != 0;
}

}  // namespace

extern "C" int KVSetEnv(char* name, char* value) {
    return name != nullptr && SetEnvironmentVariableA(name, value) != FALSE;
}

extern "C" int KVGetEnv(const char* name, char* buffer, int size) {
    FillText(buffer, size, "");
    if (name == nullptr)
        return 0;
    if (buffer == nullptr || size < 2)  // no room for a byte of the value
        return SizeOf(name) != 0;
    const DWORD length = GetEnvironmentVariableA(name, buffer, static_cast<DWORD>(size));
    if (length >= static_cast<DWORD>(size))
        return GetHead(name, buffer, size);
    return length != 0 || SizeOf(name) != 0;
}
