#include <algorithm>
#include <charconv>
#include <string>

#include "framework/Windows.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/Utf16.h"

namespace kvstation {
namespace {

// Consoles refuse very long writes.
constexpr std::size_t kConsoleChunk = 8000;

HANDLE outputHandle() {
    return GetStdHandle(STD_OUTPUT_HANDLE);
}

bool isConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

bool isSet(const wchar_t* variable, std::wstring_view unlike) {
    wchar_t value[16] = {};
    const DWORD length = GetEnvironmentVariableW(variable, value, sizeof value / sizeof *value);
    return length != 0 && std::wstring_view(value) != unlike;
}

bool wantsColours() {
    wchar_t term[16] = {};
    GetEnvironmentVariableW(L"TERM", term, sizeof term / sizeof *term);
    return !isSet(L"NO_COLOR", L"") && std::wstring_view(term) != L"dumb";
}

void writeConsoleText(HANDLE console, std::wstring_view text) {
    while (!text.empty()) {
        std::size_t count = std::min(text.size(), kConsoleChunk);
        if (count < text.size() && IS_HIGH_SURROGATE(text[count - 1]))
            --count;
        DWORD written = 0;
        if (!WriteConsoleW(console, text.data(), static_cast<DWORD>(count), &written, nullptr) || written == 0)
            throw Failure(describeSystemError("WriteConsoleW", "standard output", GetLastError()));
        text.remove_prefix(written);
    }
}

// Of a colour's number in a sequence, 0 black to 7 white, of which bit 0 is red; a console's bit 0 is blue.
WORD foregroundOf(int colour) {
    return static_cast<WORD>(((colour & 1) != 0 ? FOREGROUND_RED : 0) | ((colour & 2) != 0 ? FOREGROUND_GREEN : 0) |
                             ((colour & 4) != 0 ? FOREGROUND_BLUE : 0));
}

// The console's own attributes for a sequence: consoles before Windows 10 know none.
WORD attributesOf(std::string_view sequence, WORD normal) {
    constexpr int kFirstColour = 30;
    constexpr int kLastColour = 37;
    const auto background = static_cast<WORD>(normal & 0xFFF0);
    if (sequence == kBold)
        return static_cast<WORD>(normal | FOREGROUND_INTENSITY);
    if (sequence == kDim)
        return static_cast<WORD>(background | FOREGROUND_INTENSITY);
    int number = 0;
    std::from_chars(sequence.data() + 2, sequence.data() + sequence.size(), number);
    if (number >= kFirstColour && number <= kLastColour)
        return static_cast<WORD>(background | foregroundOf(number - kFirstColour));
    return normal;
}

void writeColoured(HANDLE console, std::string_view text, WORD normal) {
    while (!text.empty()) {
        const std::size_t escape = text.find("\x1b[");
        writeConsoleText(console, toWide(text.substr(0, escape)));
        if (escape == std::string_view::npos)
            return;
        const std::size_t end = text.find('m', escape);
        if (end == std::string_view::npos)
            return;
        SetConsoleTextAttribute(console, attributesOf(text.substr(escape, end + 1 - escape), normal));
        text.remove_prefix(end + 1);
    }
}

void writeToConsole(HANDLE console, std::string_view text) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(console, &info);
    writeColoured(console, text, info.wAttributes);
}

void writeToFile(HANDLE file, std::string_view text) {
    while (!text.empty()) {
        DWORD written = 0;
        if (!WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
            throw Failure(describeSystemError("WriteFile", "standard output", GetLastError()));
        text.remove_prefix(written);
    }
}

}  // namespace

Terminal standardOutput() {
    const HANDLE handle = outputHandle();
    if (!isConsole(handle))
        return {};
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(handle, &info);
    const int width = info.srWindow.Right - info.srWindow.Left + 1;
    // A line that fills the last column would break twice.
    return {
        .isTerminal = true, .hasColours = wantsColours(), .width = static_cast<std::size_t>(std::max(width - 1, 0))};
}

void writeResult(std::string_view text) {
    const HANDLE handle = outputHandle();
    if (isConsole(handle))
        writeToConsole(handle, text);
    else
        writeToFile(handle, text);
}

}  // namespace kvstation
