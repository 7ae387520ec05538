#include "kvstation/Tool.h"

#ifdef _WIN32

#include "framework/Windows.h"
#include "kvstation/OwnConsole.h"
#include "kvstation/platform/Utf16.h"
#include "simwin/text/CodePage.h"

extern "C" int wmain(int count, wchar_t** words) {
    if (simwin::isKnownCodePage(GetACP()))  // else texts are shown as those of 1252, and nothing is captured
        simwin::useCodePage(GetACP());
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(kvstation::toUtf8(words[i]));
    if (arguments.empty() && kvstation::hasOwnConsole())
        return kvstation::showPageInBrowser();
    return kvstation::runTool(arguments);
}

#else

int main(int count, char** words) {
    return kvstation::runTool(count > 1 ? std::vector<std::string>(words + 1, words + count)
                                        : std::vector<std::string>());
}

#endif
