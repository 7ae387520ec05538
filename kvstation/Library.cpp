#include "kvstation/Library.h"

#include <vector>

#include "kvstation/Errors.h"
#include "kvstation/Paths.h"
#include "kvstation/Utf16.h"

namespace kvstation {
namespace {

constexpr const char* kFileName = "kvcstat64.dll";
constexpr const char* kExportName = "GetStationData";

[[noreturn]] void failToLoad(const std::string& path, DWORD error) {
    const std::string reason = describeSystemError("LoadLibraryExW", path, error);
    if (GetFileAttributesW(toWide(path).c_str()) == INVALID_FILE_ATTRIBUTES)
        throw Failure(std::string(kFileName) + " is not beside the tool, put it there: " + reason);
    if (error == ERROR_BAD_EXE_FORMAT)
        throw Failure(std::string(kFileName) + " beside the tool is no library for 64-bit Windows: " + reason);
    if (error == ERROR_MOD_NOT_FOUND)
        throw Failure("a library that " + std::string(kFileName) +
                      " needs is missing, put its companions beside it: " + reason);
    throw Failure(reason);
}

// With the altered search path its companions are those beside it.
HMODULE load(const std::string& path) {
    const HMODULE module = LoadLibraryExW(toWide(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr)
        failToLoad(path, GetLastError());
    return module;
}

std::string numbersOf(const VS_FIXEDFILEINFO& info) {
    return std::to_string(HIWORD(info.dwFileVersionMS)) + "." + std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info.dwFileVersionLS)) + "." + std::to_string(LOWORD(info.dwFileVersionLS));
}

}  // namespace

Library::Library() : m_module(load(besideProgram(kFileName))) {
    const FARPROC address = GetProcAddress(m_module, kExportName);
    if (address == nullptr) {
        const std::string reason = describeSystemError("GetProcAddress", kExportName, GetLastError());
        FreeLibrary(m_module);
        throw Failure(std::string(kFileName) + " beside the tool is another library: " + reason);
    }
    m_getStationData = reinterpret_cast<GetStationDataFunction>(reinterpret_cast<void*>(address));
}

std::string Library::version() {
    const std::wstring path = toWide(besideProgram(kFileName));
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    void* info = nullptr;
    UINT length = 0;
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", &info, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return {};
    return numbersOf(*static_cast<const VS_FIXEDFILEINFO*>(info));
}

Library::~Library() {
    FreeLibrary(m_module);
}

}  // namespace kvstation
