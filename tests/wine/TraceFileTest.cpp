// ZRtrc64.dll: the file that trace lines go to.
#include "tests/wine/LoadedModule.h"
#include "tests/wine/TraceFixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST_F(Trace, AddsToWhatTheFileHolds) {
    std::ofstream(m_file, std::ios::binary) << "kept): \r\n";
    ZRTrace(2, kComponent, "added");
    EXPECT_THAT(Texts(), ElementsAre("\r", "added\r"));
}

TEST_F(Trace, WritesNothingWhenNoFileIsNamed) {
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        SetEnvironmentVariableA("KVTraceFile", name);
        ZRTrace(2, kComponent, "text");
    }
    EXPECT_FALSE(HasFile());
}

TEST_F(Trace, LeavesAFileAloneThatCannotBeWritten) {
    SetEnvironmentVariableA("KVTraceFile", "C:\\no such folder\\trace.log");
    ZRTrace(2, kComponent, "text");
    SetEnvironmentVariableA("KVTraceFile", std::string(2000, 'x').c_str());
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(Trace, KeepsNoHandleOfTheFile) {
    ZRTrace(2, kComponent, "before");
    EXPECT_TRUE(DeleteFileA(m_file.c_str()));
    EXPECT_FALSE(HasFile());
    ZRTrace(2, kComponent, "after");
    EXPECT_THAT(Texts(), ElementsAre("after\r"));
}

TEST_F(Trace, LetsOthersReadTheFileMeanwhile) {
    ZRTrace(2, kComponent, "one");
    std::ifstream reader(m_file, std::ios::binary);
    ZRTrace(2, kComponent, "two");
    std::string first;
    std::string second;
    std::getline(reader, first);
    std::getline(reader, second);
    EXPECT_THAT(second, EndsWith("two\r"));
}

TEST_F(Trace, WritesThoughAnotherWriterIsHeldUp) {
    HANDLE file = CreateFileA(m_file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    ASSERT_TRUE(LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place));
    ZRTrace(2, kComponent, "text");
    CloseHandle(file);
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

HANDLE WINAPI CreateFileWithoutReading(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* attributes,
                                       DWORD disposition, DWORD flags, HANDLE pattern) {
    if ((access & FILE_READ_DATA) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return CreateFileA(name, access, share, attributes, disposition, flags, pattern);
}

TEST_F(Trace, WritesAFileThatMayOnlyBeAppendedTo) {
    const ImportOverride rights(GetModuleHandleA("ZRtrc64.dll"), "kernel32.dll", "CreateFileA",
                                CreateFileWithoutReading);
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

int g_opens = 0;

HANDLE WINAPI FindNoFolder(const char*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) {
    ++g_opens;
    SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
}

TEST_F(Trace, AsksOnceForAFileThatNoOtherRightsWouldOpen) {
    const ImportOverride open(GetModuleHandleA("ZRtrc64.dll"), "kernel32.dll", "CreateFileA", FindNoFolder);
    g_opens = 0;
    ZRTrace(2, kComponent, "text");
    EXPECT_EQ(1, g_opens);
}

// Which byte a line is written under, as lock and unlock are told.
struct LockedByte {
    DWORD reserved, low, high, offset, offsetHigh;
    bool operator==(const LockedByte&) const = default;
};
std::vector<LockedByte> g_locks;
int g_refusals = 0;  // of the lock, from now on
DWORD g_refusal = 0;

BOOL WINAPI NoteLock(HANDLE file, DWORD flags, DWORD reserved, DWORD low, DWORD high, OVERLAPPED* place) {
    g_locks.push_back({reserved, low, high, place->Offset, place->OffsetHigh});
    if (g_refusals > 0) {
        --g_refusals;
        SetLastError(g_refusal);
        return FALSE;
    }
    return LockFileEx(file, flags, reserved, low, high, place);
}
BOOL WINAPI NoteUnlock(HANDLE file, DWORD reserved, DWORD low, DWORD high, OVERLAPPED* place) {
    g_locks.push_back({reserved, low, high, place->Offset, place->OffsetHigh});
    return UnlockFileEx(file, reserved, low, high, place);
}

std::vector<DWORD> g_sleeps;  // milliseconds

void WINAPI NoteSleep(DWORD milliseconds) {
    g_sleeps.push_back(milliseconds);
}

class TraceLock : public Trace {
  protected:
    TraceLock() {
        g_locks.clear();
        g_sleeps.clear();
    }

    HMODULE m_library = GetModuleHandleA("ZRtrc64.dll");
    ImportOverride m_lock{m_library, "kernel32.dll", "LockFileEx", NoteLock};
    ImportOverride m_unlock{m_library, "kernel32.dll", "UnlockFileEx", NoteUnlock};
    ImportOverride m_sleep{m_library, "kernel32.dll", "Sleep", NoteSleep};
};

constexpr LockedByte kPlace = {0, 1, 0, 0, 0x7FFFFFFF};

TEST_F(TraceLock, IsOfOneByteFarBehindAnyEnd) {
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(g_locks, ElementsAre(kPlace, kPlace));
}

TEST_F(TraceLock, IsAskedForAgainWhileAnotherWriterHasIt) {
    for (const DWORD refusal : {DWORD{ERROR_LOCK_VIOLATION}, DWORD{ERROR_IO_PENDING}}) {
        g_locks.clear();
        g_sleeps.clear();
        g_refusals = 2;
        g_refusal = refusal;
        ZRTrace(2, kComponent, "text");
        EXPECT_THAT(g_locks, ElementsAre(kPlace, kPlace, kPlace, kPlace)) << refusal;
        EXPECT_THAT(g_sleeps, ElementsAre(1, 1)) << refusal;
    }
}

TEST_F(TraceLock, IsDoneWithoutWhereThereAreNone) {
    g_refusals = 1;
    g_refusal = ERROR_NOT_SUPPORTED;
    ZRTrace(2, kComponent, "text");
    EXPECT_THAT(g_locks, ElementsAre(kPlace));
    EXPECT_THAT(Texts(), ElementsAre("text\r"));
}

}  // namespace
