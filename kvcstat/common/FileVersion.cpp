// Versions of program files, from their version resources.
#include <cstring>

#include "framework/FileVersion.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"

namespace {

// What is used of the fixed information of the file's version resource, copied to `info`; false when it is not there.
bool ReadFixedInfo(const char* file, void* block, DWORD size, VS_FIXEDFILEINFO& info) {
    void* found = nullptr;
    UINT length = 0;
    GetFileVersionInfoA(file, 0, size, block);
    if (VerQueryValueA(block, "\\", &found, &length) == FALSE || length < kFileVersionSize)
        return false;
    std::memcpy(&info, found, kFileVersionSize);
    return true;
}

}  // namespace

CString CStatGlobal::GetFileVersion(CString file) const {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(file, &ignored);
    if (size == 0)
        return {};
    const UniqueGlobalBlock block(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size));
    void* data = block != nullptr ? GlobalLock(block.get()) : nullptr;
    if (data == nullptr)
        return {};
    VS_FIXEDFILEINFO info = {};
    char version[4 * sizeof "65535"] = {};
    if (ReadFixedInfo(file, data, size, info))
        wsprintfA(version, "%d.%d.%d.%d", HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS),
                  HIWORD(info.dwFileVersionLS), LOWORD(info.dwFileVersionLS));
    GlobalUnlock(block.get());
    return version;
}

// The version's texts are switched off: callers ask for one and get nothing.
CString CStatGlobal::GetFileVersionString(CString, const char*) const {
    return {};
}
