// Between the UTF-8 of the tool and the UTF-16 of Windows' wide calls. Windows only.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

std::wstring toWide(std::string_view utf8);

// Always valid UTF-8: half a surrogate pair becomes the replacement character.
std::string toUtf8(std::wstring_view utf16);

}  // namespace kvstation
