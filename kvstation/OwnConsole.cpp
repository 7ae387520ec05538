#include "kvstation/OwnConsole.h"

#include <cstdio>
#include <string>

#include "framework/Windows.h"
#include "kvstation/Tool.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Utf16.h"

#include <shellapi.h>

namespace kvstation {
namespace {

std::string pagePath() {
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH)
        throw Failure(describeSystemError("GetTempPathW", "the temporary folder", GetLastError()));
    return toUtf8(folder) + "kvstation.html";
}

// The shell is loaded for this alone: it would double the time of each start.
void openAsWindowsDoes(const std::string& path) {
    using Execute = decltype(&ShellExecuteW);
    const HMODULE shell = LoadLibraryW(L"shell32.dll");
    const FARPROC address = shell == nullptr ? nullptr : GetProcAddress(shell, "ShellExecuteW");
    if (address == nullptr)
        throw Failure(path + " is written, but not opened: " +
                      describeSystemError("LoadLibraryW", "shell32.dll", GetLastError()));
    const auto execute = reinterpret_cast<Execute>(reinterpret_cast<void*>(address));
    const auto result =
        reinterpret_cast<INT_PTR>(execute(nullptr, L"open", toWide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    constexpr INT_PTR kLastError = 32;  // the results up to it are errors, those of files by the system's codes
    if (result <= kLastError)
        throw Failure(path + " is written, but not opened: " +
                      describeSystemError("ShellExecuteW", path, static_cast<DWORD>(result)));
}

int writeAndOpenPage() {
    try {
        const std::string path = pagePath();
        const int status = runTool({"show", "--html", path});
        if (status == kExitSuccess)
            openAsWindowsDoes(path);
        return status;
    } catch (const std::exception& error) {
        reportError(error.what());
        return kExitFailure;
    }
}

}  // namespace

bool hasOwnConsole() {
    DWORD process = 0;
    return GetConsoleProcessList(&process, 1) == 1;
}

int showPageInBrowser() {
    const int status = writeAndOpenPage();
    if (status != kExitSuccess) {
        std::fputs("Press Enter to close this window.", stderr);
        std::getchar();
    }
    return status;
}

}  // namespace kvstation
