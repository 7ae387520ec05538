#include "framework/Windows.h"
#include "kvstation/platform/EndingHandlers.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Handles.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/platform/Paths.h"
#include "kvstation/platform/Utf16.h"

namespace kvstation {
namespace {

constexpr const wchar_t* kPartVariable = L"KVSTATION_PART";
// What is written to a part at once has room, so that no write waits.
constexpr DWORD kPipeSize = 1 << 16;

struct Pipe {
    OwnedHandle output;  // to read from
    OwnedHandle input;
};

Pipe openPipe() {
    HANDLE output = nullptr;
    HANDLE input = nullptr;
    if (CreatePipe(&output, &input, nullptr, kPipeSize) == 0)
        throw Failure(describeSystemError("CreatePipe", "a process of the tool", GetLastError()));
    return {OwnedHandle(output), OwnedHandle(input)};
}

// While it lives, processes that are started inherit the handle.
class Inherited {
  public:
    explicit Inherited(HANDLE handle) : m_handle(handle) { set(HANDLE_FLAG_INHERIT); }
    Inherited(const Inherited&) = delete;
    Inherited& operator=(const Inherited&) = delete;
    ~Inherited() { set(0); }

    HANDLE get() const { return m_handle; }

  private:
    void set(DWORD flag) const { SetHandleInformation(m_handle, HANDLE_FLAG_INHERIT, flag); }

    HANDLE m_handle;
};

OwnedHandle start(const Pipe& input, const Pipe& output) {
    const Inherited in(input.output.get());
    const Inherited out(output.input.get());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.get();
    startup.hStdOutput = out.get();
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    const std::string program = pathOf(HMODULE{});
    std::wstring commandLine = GetCommandLineW();
    PROCESS_INFORMATION process{};
    SetEnvironmentVariableW(kPartVariable, L"1");
    const BOOL isStarted = CreateProcessW(toWide(program).c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0,
                                          nullptr, nullptr, &startup, &process);
    const DWORD error = GetLastError();
    SetEnvironmentVariableW(kPartVariable, nullptr);
    if (isStarted == 0)
        throw Failure(describeSystemError("CreateProcessW", program, error));
    const OwnedHandle thread(process.hThread);
    return OwnedHandle(process.hProcess);
}

LONG WINAPI endWithItsCode(EXCEPTION_POINTERS* exception) {
    TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

struct PartProcess::Started {
    OwnedHandle input;  // this process' ends
    OwnedHandle output;
    OwnedHandle process;
};

bool isPart() {
    return GetEnvironmentVariableW(kPartVariable, nullptr, 0) != 0;
}

void endQuietlyInACrash() {
    SetErrorMode(kNoBoxes);
    SetUnhandledExceptionFilter(endWithItsCode);
}

unsigned processors() {
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    return system.dwNumberOfProcessors;
}

PartProcess::PartProcess() {
    Pipe input = openPipe();
    Pipe output = openPipe();
    OwnedHandle process = start(input, output);
    m_started.reset(new Started{std::move(input.input), std::move(output.output), std::move(process)});
}

PartProcess::~PartProcess() {
    m_started->input = OwnedHandle(nullptr);
    m_started->output = OwnedHandle(nullptr);
    WaitForSingleObject(m_started->process.get(), INFINITE);
}

bool PartProcess::write(std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        if (WriteFile(m_started->input.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0)
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

std::size_t PartProcess::read(char* bytes, std::size_t size) {
    DWORD count = 0;
    return ReadFile(m_started->output.get(), bytes, static_cast<DWORD>(size), &count, nullptr) != 0 ? count : 0;
}

std::string PartProcess::ending() {
    m_started->input = OwnedHandle(nullptr);
    WaitForSingleObject(m_started->process.get(), INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(m_started->process.get(), &status);
    return "status " + std::to_string(status);
}

}  // namespace kvstation
