// A page that needs no other file.
#pragma once

#include <string>

namespace kvstation {

// `title` and `foot` are text, `body` is HTML. The foot goes on with the tool that made the page.
std::string page(const std::string& title, const std::string& body, const std::string& foot);

}  // namespace kvstation
