#include "companions/zrtrc/TraceFile.h"

#include <initializer_list>

#include "framework/Windows.h"

namespace {

constexpr DWORD kPatience = 250;  // milliseconds

// Opened for appending only, a write goes to the end of the file as one step. Reading is asked for only because a lock
// needs it; a file whose rights allow just appending is written without one.
HANDLE OpenForAppending(const char* path) noexcept {
    for (const DWORD access : {DWORD{FILE_APPEND_DATA | FILE_READ_DATA}, DWORD{FILE_APPEND_DATA}}) {
        HANDLE file = CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_ACCESS_DENIED)
            return file;
    }
    return INVALID_HANDLE_VALUE;
}

// A byte far behind any end of file stands for the right to write, so that no reader is kept out.
OVERLAPPED LockPlace() noexcept {
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    return place;
}

// On a network drive two machines may take the same end of the file for theirs, so each line is written under a lock.
// A writer that is held up with the lock in hand must not hold up the others: after a short while they write anyway.
bool Lock(HANDLE file) noexcept {
    const DWORD start = GetTickCount();
    for (;;) {
        OVERLAPPED place = LockPlace();
        if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
            return true;
        const DWORD error = GetLastError();
        if ((error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING) || GetTickCount() - start > kPatience)
            return false;
        Sleep(1);
    }
}

void Unlock(HANDLE file) noexcept {
    OVERLAPPED place = LockPlace();
    UnlockFileEx(file, 0, 1, 0, &place);
}

}  // namespace

void AppendTraceLine(const char* path, const char* line, std::size_t length) noexcept {
    HANDLE file = OpenForAppending(path);
    if (file == INVALID_HANDLE_VALUE)
        return;
    const bool locked = Lock(file);
    DWORD written = 0;
    WriteFile(file, line, static_cast<DWORD>(length), &written, nullptr);
    if (locked)
        Unlock(file);
    CloseHandle(file);
}
