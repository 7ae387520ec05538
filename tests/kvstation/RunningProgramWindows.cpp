#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "kvstation/platform/Handles.h"
#include "tests/kvstation/RunningProgram.h"

namespace kvstation {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failBy(const char* call, const std::string& asked) {
    throw std::runtime_error(std::string(call) + " of " + asked + ": error " + std::to_string(GetLastError()));
}

// A file for what a program writes, which goes with this object.
class Written {
  public:
    explicit Written(const char* name)
        : m_path(fs::temp_directory_path() / (std::to_string(GetCurrentProcessId()) + name)), m_file(create()) {
        if (!m_file)
            failBy("CreateFileW", m_path.string());
    }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;
    ~Written() {
        std::error_code ignored;
        fs::remove(m_path, ignored);
    }

    HANDLE handle() const { return m_file.get(); }
    std::string content(std::ios::openmode mode) const {
        std::ifstream file(m_path, mode);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    OwnedHandle create() const {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        return OwnedHandle(CreateFileW(m_path.c_str(), GENERIC_WRITE,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                                       CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr));
    }

    const fs::path m_path;
    const OwnedHandle m_file;
};

// Each word in quotes; none of the tests' words has one of its own or a backslash at its end.
std::string commandLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "\"" : " \"") + word + "\"";
    return line;
}

int waitForEnd(HANDLE process) {
    WaitForSingleObject(process, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process, &status);
    return static_cast<int>(status);
}

}  // namespace

// Without the command processor between, which does not tell why a program cannot be started.
ProgramRun runProgram(const std::vector<std::string>& words) {
    const Written output("-output.txt");
    const Written errors("-errors.txt");
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = output.handle();
    start.hStdError = errors.handle();
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(words[0].c_str(), commandLine(words).data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &start, &process))
        failBy("CreateProcessA", words[0]);
    CloseHandle(process.hThread);
    const OwnedHandle program(process.hProcess);
    const int status = waitForEnd(program.get());
    // Standard output is to have the result's very bytes; standard error is text, whose lines end as Windows' do.
    return {status, output.content(std::ios::binary), errors.content(std::ios::in)};
}

}  // namespace kvstation
