#include "kvstation/CodePageText.h"

#ifdef _WIN32
#include "framework/Windows.h"
#include "kvstation/Utf16.h"
#else
#include "simwin/CodePage.h"
#endif

namespace kvstation {

#ifdef _WIN32

std::string utf8FromAnsi(std::string_view bytes) {
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
    std::wstring utf16(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, utf16.data(), length);
    return toUtf8(utf16);
}

#else

std::string utf8FromAnsi(std::string_view bytes) {
    return simwin::toUtf8(bytes);
}

#endif

}  // namespace kvstation
