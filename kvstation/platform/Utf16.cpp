#include "kvstation/platform/Utf16.h"

#include "framework/Windows.h"

namespace kvstation {

std::wstring toWide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring utf16(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, utf16.data(), length);
    return utf16;
}

std::string toUtf8(std::wstring_view utf16) {
    const int size = static_cast<int>(utf16.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

}  // namespace kvstation
