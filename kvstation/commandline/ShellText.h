// Texts for scripts of shells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

std::string joinWords(const std::vector<std::string>& words, std::string_view between);

// Every `from` replaced by `to`.
std::string withEach(std::string text, std::string_view from, std::string_view to);

}  // namespace kvstation
