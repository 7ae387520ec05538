#include "kvstation/platform/Errors.h"

#include <cstdio>
#include <system_error>

#include "kvstation/text/VisibleText.h"
#ifdef _WIN32
#include "framework/Windows.h"
#include "kvstation/platform/Utf16.h"
#endif

namespace kvstation {
namespace {

// A file of megabytes may hold one name alone, and the error tells the name.
constexpr std::size_t kLongestLine = 4000;

// Some of Windows' texts have a place for what was asked: "%1 is not a valid Win32 application".
std::string fillIn(std::string text, std::string_view asked) {
    const std::size_t place = text.find("%1");
    return place == std::string::npos ? text : text.replace(place, 2, asked);
}

std::string reason(std::string_view text, std::int64_t code) {
    return ": " + std::string(text) + " (error " + std::to_string(code) + ")";
}

std::string describe(std::string_view call, std::string_view asked, std::string_view text, std::int64_t code) {
    return std::string(call) + "(" + std::string(asked) + ") failed" + reason(text, code);
}

#ifdef _WIN32
std::string systemText(std::uint32_t code) {
    wchar_t text[512];
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, code, 0, text, sizeof text / sizeof *text, nullptr);
    std::string utf8 = toUtf8(std::wstring_view(text, length));
    while (utf8.ends_with(' ') || utf8.ends_with('.'))
        utf8.pop_back();
    return utf8.empty() ? "no text for this code" : utf8;
}
#else
std::string systemText(std::uint32_t code) {
    return std::generic_category().message(static_cast<int>(code));
}
#endif

}  // namespace

std::string describeSystemError(std::string_view call, std::string_view asked, std::uint32_t code) {
    return describe(call, asked, fillIn(systemText(code), asked), code);
}

std::string describeLibraryError(std::string_view call, std::string_view asked, int code) {
    return describe(call, asked, std::generic_category().message(code), code);
}

std::string describeFileError(std::string_view path, std::string_view done, int code) {
    return std::string(path) + " cannot be " + std::string(done) + reason(std::generic_category().message(code), code);
}

void reportError(std::string_view message) {
    const std::string line = "kvstation: " + visible(shortened(message, kLongestLine)) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace kvstation
