// The parent's side: starts the child, waits, and tells what became of it.
#include <cstdio>

#include "framework/Windows.h"
#include "kvstation/Collection.h"
#include "kvstation/CollectionChild.h"
#include "kvstation/Errors.h"
#include "kvstation/Handles.h"
#include "kvstation/Paths.h"
#include "kvstation/SharedCollection.h"
#include "kvstation/Utf16.h"

namespace kvstation {
namespace {

// A child that was ended by us or that crashed is gone within this time.
constexpr DWORD kLastBreath = 5000;

[[noreturn]] void failBy(std::string_view call, std::string_view asked) {
    throw Failure(describeSystemError(call, asked, GetLastError()));
}

OwnedHandle makeSharedMemory() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    OwnedHandle memory(
        CreateFileMappingW(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0, sizeof(SharedCollection), nullptr));
    if (!memory)
        failBy("CreateFileMappingW", "the collection's memory");
    return memory;
}

// The library writes to standard output, which belongs to the result alone.
OwnedHandle openNull() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    OwnedHandle null(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                 OPEN_EXISTING, 0, nullptr));
    if (!null)
        failBy("CreateFileW", "NUL");
    return null;
}

// A child whose parent is ended ends with it. Without the job it merely lives until its collection is over.
OwnedHandle makeJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

OwnedHandle startChild(HANDLE memory, HANDLE null) {
    const std::wstring program = toWide(programPath());
    wchar_t words[64];
    std::swprintf(words, sizeof words / sizeof *words, L"kvstation %hs %llu", kCollectForParent,
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(memory)));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = null;
    start.hStdOutput = null;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION child{};
    if (!CreateProcessW(program.c_str(), words, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &child))
        failBy("CreateProcessW", programPath());
    CloseHandle(child.hThread);
    return OwnedHandle(child.hProcess);
}

std::string where(const SharedCollection& shared) {
    const std::string step = noted(shared.step);
    const std::string call = noted(shared.call);
    return (step.empty() ? "before its first step" : "while " + step) + (call.empty() ? "" : ", last call " + call);
}

[[noreturn]] void failByTime(const SharedCollection& shared, HANDLE child, std::chrono::seconds limit) {
    TerminateProcess(child, kExitFailure);
    WaitForSingleObject(child, kLastBreath);
    throw Failure("the collection hung " + where(shared) + ": ended after " + std::to_string(limit.count()) +
                  " seconds; --timeout SECONDS gives it longer");
}

[[noreturn]] void failByCrash(const SharedCollection& shared) {
    char place[64];
    std::snprintf(place, sizeof place, "exception 0x%08X at 0x%llX", static_cast<unsigned>(shared.exceptionCode),
                  static_cast<unsigned long long>(shared.exceptionAddress));
    throw Failure("the collection crashed " + where(shared) + " (" + place + ")");
}

[[noreturn]] void failByExit(const SharedCollection& shared, HANDLE child) {
    DWORD status = 0;
    GetExitCodeProcess(child, &status);
    throw Failure("the collection ended by itself " + where(shared) + " (exit status " + std::to_string(status) + ")");
}

RecordBytes resultOf(const SharedCollection& shared, HANDLE child) {
    switch (shared.state) {
        case CollectionState::Done:
            return shared.record;
        case CollectionState::Failed:
            throw Failure(noted(shared.failure));
        case CollectionState::Crashed:
            failByCrash(shared);
        case CollectionState::Running:
            break;
    }
    failByExit(shared, child);
}

}  // namespace

RecordBytes collectHere(std::chrono::seconds limit, std::string* times) {
    const OwnedHandle memory = makeSharedMemory();
    const MappedCollection shared(memory.get());
    shared->wantsTimes = times != nullptr;
    const OwnedHandle job = makeJob();
    const OwnedHandle null = openNull();
    const OwnedHandle child = startChild(memory.get(), null.get());
    AssignProcessToJobObject(job.get(), child.get());
    const auto milliseconds = static_cast<DWORD>(std::chrono::milliseconds(limit).count());
    if (WaitForSingleObject(child.get(), milliseconds) != WAIT_OBJECT_0)
        failByTime(*shared, child.get(), limit);
    const RecordBytes record = resultOf(*shared, child.get());
    if (times != nullptr)
        *times = noted(shared->times);
    return record;
}

}  // namespace kvstation
