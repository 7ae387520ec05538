#include "kvstation/platform/Paths.h"

#include "kvstation/platform/Utf16.h"

namespace kvstation {

std::string pathOf(HMODULE module) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
            return toUtf8(std::wstring_view(path).substr(0, length));
        path.resize(2 * path.size());
    }
}

std::string besideProgram(const std::string& name) {
    const std::string program = pathOf(nullptr);
    return program.substr(0, program.find_last_of('\\') + 1) + name;
}

}  // namespace kvstation
