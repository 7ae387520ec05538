// A page that needs no other file.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

// `title` and `foot` are text, `body` is HTML. The foot goes on with the tool that made the page.
std::string page(const std::string& title, const std::string& body, const std::string& foot);

// A page is sent around. Where its maker keeps a record is nobody's business; how the file or folder is called may
// help. Empty where that is no name.
std::string lastPart(std::string_view path);

}  // namespace kvstation
