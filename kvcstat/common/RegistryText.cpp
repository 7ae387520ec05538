// Registry: data as text. Pure functions of the bytes.
#include <cstring>
#include <memory>

#include "kvcstat/common/StatGlobal.h"

namespace {

// An ASCII character, a zero byte and more behind it: UTF-16 text. A single UTF-16 character reads the same either way.
bool LooksLikeUtf16(const BYTE* data, DWORD size) {
    return std::strlen(reinterpret_cast<const char*>(data)) == 1 && size >= 2 && data[2] != 0;
}

CString TextOfUtf16(const BYTE* data) {
    const auto* wide = reinterpret_cast<const WCHAR*>(data);
    const int needed = WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (needed < 0)  // Windows has never answered so
        return {};
    const std::unique_ptr<char[]> text(new char[static_cast<std::size_t>(needed) + 1]());
    WideCharToMultiByte(CP_ACP, 0, wide, -1, text.get(), needed, nullptr, nullptr);
    return text.get();  // cppcheck-suppress returnDanglingLifetime ; the string copies the characters
}

}  // namespace

CString CStatGlobal::MultiSzToString(const char* multiString) const {
    CString list;
    for (const char* item = multiString; *item != '\0'; item += std::strlen(item) + 1)
        AppendString(list, item, "//");
    return list;
}

CString CStatGlobal::RegDataToString(const BYTE* data, DWORD size) const {
    return LooksLikeUtf16(data, size) ? TextOfUtf16(data) : CString(reinterpret_cast<const char*>(data));
}
