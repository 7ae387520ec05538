#include "kvstation/Paths.h"

#include "framework/Windows.h"
#include "kvstation/Utf16.h"

namespace kvstation {

std::string programPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
            return toUtf8(std::wstring_view(path).substr(0, length));
        path.resize(2 * path.size());
    }
}

std::string besideProgram(const std::string& name) {
    const std::string program = programPath();
    return program.substr(0, program.find_last_of('\\') + 1) + name;
}

}  // namespace kvstation
