#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "kvstation/Errors.h"
#include "kvstation/Output.h"

namespace kvstation {
namespace {

bool wantsColours() {
    const char* noColour = std::getenv("NO_COLOR");
    const char* term = std::getenv("TERM");
    return (noColour == nullptr || *noColour == '\0') && term != nullptr && std::string_view(term) != "dumb";
}

}  // namespace

Terminal standardOutput() {
    if (isatty(STDOUT_FILENO) == 0)
        return {};
    winsize size{};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    return {.isTerminal = true, .hasColours = wantsColours(), .width = size.ws_col};
}

void writeResult(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            throw Failure(describeLibraryError("write", "standard output", errno));
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace kvstation
