#include "kvstation/platform/Utf16.h"

#include "simwin/text/Utf16.h"

namespace kvstation {

std::wstring toWide(std::string_view utf8) {
    const std::u16string units = simwin::utf16FromUtf8(utf8);
    return {units.begin(), units.end()};
}

std::string toUtf8(std::wstring_view utf16) {
    return simwin::utf8FromUtf16(std::u16string(utf16.begin(), utf16.end()));
}

}  // namespace kvstation
