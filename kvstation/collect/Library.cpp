#include "kvstation/collect/Library.h"

#include <vector>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Paths.h"
#include "kvstation/platform/Utf16.h"
#include "simwin/machine/VersionResource.h"

namespace kvstation {
namespace {

constexpr const char* kFileName = "kvcstat64.dll";
constexpr const char* kExportName = "GetStationData";

using LibraryFile = Library::File;

LibraryFile ownLibrary() {
    const std::string name = kFileName;
    return {besideProgram(kFileName), name + " beside the tool", name + " is not beside the tool, put it there", name};
}

LibraryFile namedLibrary(const std::string& path) {
    return {utf8Of(std::filesystem::absolute(pathOf(path)).make_preferred()), path, path + " is not there", path};
}

[[noreturn]] void failToLoad(const LibraryFile& file, DWORD error) {
    const std::string reason = describeSystemError("LoadLibraryExW", file.path, error);
    if (GetFileAttributesW(toWide(file.path).c_str()) == INVALID_FILE_ATTRIBUTES)
        throw Failure(file.absence + ": " + reason);
    if (error == ERROR_BAD_EXE_FORMAT)
        throw Failure(file.words + " is no library for 64-bit Windows: " + reason);
    if (error == ERROR_MOD_NOT_FOUND)
        throw Failure("a library that " + file.name + " needs is missing, put its companions beside it: " + reason);
    throw Failure(reason);
}

// With the altered search path its companions are those beside it.
UniqueLibrary load(const LibraryFile& file) {
    UniqueLibrary module(LoadLibraryExW(toWide(file.path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (module == nullptr)
        failToLoad(file, GetLastError());
    return module;
}

FARPROC exportOf(HMODULE module, const LibraryFile& file) {
    const FARPROC address = GetProcAddress(module, kExportName);
    if (address != nullptr)
        return address;
    const std::string reason = describeSystemError("GetProcAddress", kExportName, GetLastError());
    throw Failure(file.words + " is another library: " + reason);
}

}  // namespace

Library::Library(const LibraryFile& file)
    : m_module(load(file)),
      m_getStationData(
          reinterpret_cast<GetStationDataFunction>(reinterpret_cast<void*>(exportOf(m_module.get(), file)))) {}

Library::Library() : Library(ownLibrary()) {}

Library::Library(const std::string& path) : Library(namedLibrary(path)) {}

std::string Library::version() {
    const std::wstring path = toWide(besideProgram(kFileName));
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    void* info = nullptr;
    UINT length = 0;
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", &info, &length))
        return {};
    const auto version = simwin::versionIn({static_cast<const char*>(info), length});
    return version ? simwin::versionText(*version) : "";
}

}  // namespace kvstation
