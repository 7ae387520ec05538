#include "kvstation/commandline/ShellText.h"

namespace kvstation {

std::string withEach(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace kvstation
