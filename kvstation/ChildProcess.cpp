#include "kvstation/ChildProcess.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "kvstation/Errors.h"
#include "kvstation/InheritanceList.h"
#include "kvstation/Paths.h"
#include "kvstation/Utf16.h"

namespace kvstation {
namespace {

// A child that is ended is gone within this time.
constexpr DWORD kLastBreath = 5000;

[[noreturn]] void failBy(std::string_view call, std::string_view asked) {
    throw Failure(describeSystemError(call, asked, GetLastError()));
}

// A child whose parent is ended ends with it. Without the job it merely lives until its collection is over.
OwnedHandle makeJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

OwnedHandle openNull() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    OwnedHandle null(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                 OPEN_EXISTING, 0, nullptr));
    if (!null)
        failBy("CreateFileW", "NUL");
    return null;
}

// As Windows' programs take a word from their command line: backslashes count double in front of a quote.
std::wstring quoted(const std::wstring& word) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : word) {
        if (character == L'"')
            text.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        text += character;
    }
    return text.append(backslashes, L'\\') + L"\"";
}

std::wstring commandLine(const std::vector<std::string>& words) {
    std::wstring line = L"kvstation";
    for (const std::string& word : words)
        line += L" " + quoted(toWide(word));
    return line;
}

// The handles of Windows' kernel are multiples of 4. Those of a console were not before Windows 8: they are in no list,
// and a child has them by having the console.
bool isOfTheKernel(HANDLE handle) {
    return handle != nullptr && reinterpret_cast<std::uintptr_t>(handle) % 4 == 0;
}

// The child's handles, and nothing else that a caller left open to inherit, such as a pipe that would stay open as long
// as the child. One that is closed or twice there would spoil the list.
std::vector<HANDLE> inheritable(std::initializer_list<HANDLE> handles) {
    std::vector<HANDLE> list;
    for (const HANDLE handle : handles)
        if (isOfTheKernel(handle) && std::ranges::find(list, handle) == list.end() &&
            SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT))
            list.push_back(handle);
    return list;
}

struct Child {
    OwnedHandle process;
    OwnedHandle thread;
};

// It does not run yet.
Child createChild(const ChildOptions& options) {
    const OwnedHandle null = openNull();
    const HANDLE output = options.output != nullptr ? options.output : null.get();
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    const InheritanceList inherited(inheritable({options.memory, null.get(), output, error}));
    const bool hasList = inherited.get() != nullptr;
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = hasList ? sizeof start : sizeof start.StartupInfo;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = null.get();
    start.StartupInfo.hStdOutput = output;
    start.StartupInfo.hStdError = error;
    start.lpAttributeList = inherited.get();
    const std::wstring program = toWide(programPath());
    std::wstring line = commandLine(options.words);
    const DWORD flags = CREATE_SUSPENDED | (hasList ? EXTENDED_STARTUPINFO_PRESENT : 0u);
    PROCESS_INFORMATION child{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                        &start.StartupInfo, &child))
        failBy("CreateProcessW", programPath());
    return {OwnedHandle(child.hProcess), OwnedHandle(child.hThread)};
}

// It runs in the job from its first instruction on, and without it where there is none: before Windows 8 a process that
// is in a job already enters no other.
OwnedHandle startChild(HANDLE job, const ChildOptions& options) {
    Child child = createChild(options);
    AssignProcessToJobObject(job, child.process.get());
    if (ResumeThread(child.thread.get()) == static_cast<DWORD>(-1)) {
        const std::string failure = describeSystemError("ResumeThread", programPath(), GetLastError());
        TerminateProcess(child.process.get(), kExitFailure);
        throw Failure(failure);
    }
    return std::move(child.process);
}

}  // namespace

ChildProcess::ChildProcess(const ChildOptions& options)
    : m_job(makeJob()), m_process(startChild(m_job.get(), options)) {}

bool ChildProcess::endsWithin(std::chrono::seconds limit) const {
    const auto milliseconds = static_cast<DWORD>(std::chrono::milliseconds(limit).count());
    return WaitForSingleObject(m_process.get(), milliseconds) == WAIT_OBJECT_0;
}

int ChildProcess::status() const {
    DWORD status = 0;
    GetExitCodeProcess(m_process.get(), &status);
    return static_cast<int>(status);
}

void ChildProcess::end() const {
    TerminateProcess(m_process.get(), kExitFailure);
    WaitForSingleObject(m_process.get(), kLastBreath);
}

}  // namespace kvstation
