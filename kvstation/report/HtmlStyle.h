// The looks of the page: light and dark, phone and paper.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

std::string pageStyle();

// Of elements in the colour of a group of fields.
std::string groupClass(std::string_view group);

}  // namespace kvstation
