// Letters that a code page does not have and one of its own stands for: what Windows calls the best fit.
#pragma once

#include <optional>
#include <string>

namespace simwin {

// ICU's tables know the best fit of some pages alone. The bytes for a character that the page does not have ("" where
// nothing stands for it); none where ICU knows better.
std::optional<std::string> bestFit(unsigned page, char16_t character);

}  // namespace simwin
