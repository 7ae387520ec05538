#include "tests/wine/WineTools.h"

#include <cstdio>
#include <fstream>
#include <sstream>

#include "framework/Windows.h"

namespace kvtest {
namespace {

// A file in the folder of temporary files, removed with this object.
class TemporaryFile {
  public:
    TemporaryFile() {
        char folder[MAX_PATH] = {};
        char file[MAX_PATH] = {};
        GetTempPathA(sizeof folder, folder);
        GetTempFileNameA(folder, "kv", 0, file);
        m_path = file;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { DeleteFileA(m_path.c_str()); }

    const std::string& path() const { return m_path; }
    std::string content() const {
        std::ifstream file(m_path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

  private:
    std::string m_path;
};

// cppcheck-suppress passedByValue ; Windows writes into it
void run(std::string commandLine) {
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return;
    WaitForSingleObject(process.hProcess, 60000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

// The Linux path of a Windows file.
std::string linuxPath(const std::string& path) {
    std::string text = outputOf("winepath -u \"" + path + "\"");
    return trimmed(text);
}

}  // namespace

std::string outputOf(const std::string& command) {
    std::string output;
    if (FILE* pipe = _popen(command.c_str(), "r")) {
        char block[4096];
        for (std::size_t size = 0; (size = std::fread(block, 1, sizeof block, pipe)) != 0;)
            output.append(block, size);
        _pclose(pipe);
    }
    return output;
}

std::string linuxOutputOf(const std::string& commandLine) {
    const TemporaryFile output;
    const TemporaryFile script;
    // Nothing waits for a Linux program: a last line tells that the output is complete.
    const std::string end = "(end)";
    std::ofstream(script.path(), std::ios::binary)
        << "{ " << commandLine << "; echo '" << end << "'; } > '" << linuxPath(output.path()) << "'\n";
    run("start /wait /unix /bin/sh " + linuxPath(script.path()));
    for (int tries = 0; tries < 500; ++tries) {
        const std::string text = output.content();
        const std::size_t found = text.rfind(end);
        if (found != std::string::npos)
            return trimmed(text.substr(0, found));
        Sleep(20);
    }
    return {};
}

std::string trimmed(const std::string& text) {
    const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string adapterLine(const std::string& ipconfig, const std::string& address, const std::string& label) {
    const std::size_t found = ipconfig.find(": " + address);
    if (found == std::string::npos)
        return {};
    const std::size_t section = ipconfig.rfind("adapter ", found);
    const std::size_t line = ipconfig.find(label, section);
    if (section == std::string::npos || line == std::string::npos)
        return {};
    const std::size_t value = ipconfig.find(": ", line) + 2;
    return trimmed(ipconfig.substr(value, ipconfig.find('\n', value) - value));
}

ScopedVariable::ScopedVariable(const char* name, const char* value) : m_name(name) {
    char before[32767];
    m_wasSet = GetEnvironmentVariableA(name, before, sizeof before) != 0 || GetLastError() != ERROR_ENVVAR_NOT_FOUND;
    if (m_wasSet)
        m_before = before;
    SetEnvironmentVariableA(name, value);
}

ScopedVariable::~ScopedVariable() {
    SetEnvironmentVariableA(m_name.c_str(), m_wasSet ? m_before.c_str() : nullptr);
}

void importRegistry(const std::string& content) {
    const TemporaryFile file;
    std::ofstream(file.path(), std::ios::binary) << content;
    run("regedit /S \"" + file.path() + "\"");
}

}  // namespace kvtest
