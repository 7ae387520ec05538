// Text inside a page.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// UTF-8 text that shows as it is between tags and in quoted attributes: no markup, no control characters.
std::string escapeHtml(std::string_view utf8);

}  // namespace kvstation
