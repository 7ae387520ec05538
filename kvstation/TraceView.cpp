#include "kvstation/TraceView.h"

#include <algorithm>
#include <string_view>

#include "kvstation/GivenText.h"
#include "kvstation/VisibleText.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kPlain = "\x1b[0m";

// They ask nothing of the station.
constexpr std::string_view kOwnWork[] = {"FindClose",
                                         "FreeLibrary",
                                         "GetLastError",
                                         "GlobalAlloc",
                                         "GlobalFree",
                                         "GlobalLock",
                                         "GlobalUnlock",
                                         "LoadStringA",
                                         "LocalAlloc",
                                         "LocalFree",
                                         "NetApiBufferFree",
                                         "RegCloseKey",
                                         "VerQueryValueA",
                                         "_mbscmp",
                                         "_mbslwr",
                                         "_mbsupr",
                                         "_strupr",
                                         "inet_addr",
                                         "wsprintfA",
                                         "WSAStartup",
                                         "ZRTSWRPFree",
                                         "VerSetConditionMask",
                                         "WideCharToMultiByte",
                                         "ZRTSWRPInit"};

bool isOwnWork(const ObservedCall& call) {
    return std::ranges::find(kOwnWork, call.name) != std::end(kOwnWork);
}

// Nothing but a value's size was asked for, and the value itself by the next call.
bool isSizeQuestion(const ObservedCall& call, const ObservedCall* next) {
    return next != nullptr && call.name == "RegQueryValueExA" && next->name == call.name && call.succeeded &&
           next->arguments == call.arguments && call.parameters[4].index() == 0;
}

std::string traceLine(const ObservedCall& call) {
    std::string_view text = simwin::textOf(call.parameters[2]);
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return "  | " + visible(simwin::toUtf8(text));
}

// A structure's members stand behind the answer, which does not tell them.
std::string callLine(const ObservedCall& call) {
    const std::string given = call.succeeded && isStructure(call) ? givenBy(call) : "";
    std::string line = "  " + call.name + "(" + call.arguments + ")";
    if (!call.answer.empty() || !given.empty())
        line += " = " + call.answer + (call.answer.empty() || given.empty() ? "" : ", ") + given;
    return line;
}

}  // namespace

std::string traceView(const std::vector<StepCall>& calls, const TraceOptions& options) {
    std::string text;
    std::string_view step;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const ObservedCall& call = calls[i].call;
        const ObservedCall* next = i + 1 < calls.size() ? &calls[i + 1].call : nullptr;
        if (!options.all && (isOwnWork(call) || isSizeQuestion(call, next)))
            continue;
        if (calls[i].step != step) {
            step = calls[i].step;
            text +=
                (options.colours ? std::string(kBold) + std::string(step) + std::string(kPlain) : std::string(step)) +
                "\n";
        }
        const bool isTrace = call.name == "ZRTrace";
        const std::string line = isTrace ? traceLine(call) : callLine(call);
        text += (options.colours && isTrace ? std::string(kDim) + line + std::string(kPlain) : line) + "\n";
    }
    return text;
}

}  // namespace kvstation
