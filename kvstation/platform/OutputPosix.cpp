#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/StreamAside.h"

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
    if (!writeTo(STDOUT_FILENO, text))
        throw Failure(describeLibraryError("write", "standard output", errno));
}

}  // namespace kvstation
