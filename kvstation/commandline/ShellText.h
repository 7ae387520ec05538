// Texts for scripts of shells.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// Every `from` replaced by `to`.
std::string withEach(std::string text, std::string_view from, std::string_view to);

}  // namespace kvstation
