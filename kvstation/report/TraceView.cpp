#include "kvstation/report/TraceView.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "kvstation/calls/CallError.h"
#include "kvstation/calls/CallRows.h"
#include "kvstation/platform/Output.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kTraceCall = "ZRTrace";

// Questions, and what the module tells on its way.
bool isOfInterest(const ObservedCall& call) {
    const CallRow* row = findCallRow(call.name);
    return row != nullptr && (row->asks.purpose == Purpose::Question || row->asks.purpose == Purpose::Telling);
}

// Nothing but a value's size was asked for, and the value itself by the next call.
bool isSizeQuestion(const ObservedCall& call, const ObservedCall* next) {
    return next != nullptr && call.name == "RegQueryValueExA" && next->name == call.name && call.succeeded &&
           next->arguments == call.arguments && next->subject == call.subject && call.parameters[4].index() == 0;
}

bool isShown(const std::vector<TracedCall>& calls, std::size_t index, const TraceOptions& options) {
    const TracedCall& one = calls[index];
    if (!options.field.empty())
        return std::ranges::find(one.fields, options.field) != one.fields.end();
    const ObservedCall* next = index + 1 < calls.size() ? &calls[index + 1].call : nullptr;
    return options.all || (isOfInterest(one.call) && !isSizeQuestion(one.call, next));
}

// The question for the size told the type, too, which the one for the value did not ask for again.
TracedCall withType(const std::vector<TracedCall>& calls, std::size_t index) {
    TracedCall one = calls[index];
    if (index != 0 && isSizeQuestion(calls[index - 1].call, &one.call) && one.call.parameters[3].index() == 0)
        one.call.parameters[3] = calls[index - 1].call.parameters[3];
    return one;
}

std::string traceText(const ObservedCall& call) {
    std::string_view text = simwin::textOf(call.parameters[2]);
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return simwin::toUtf8(text);
}

// "1, "text"", "67 ERROR_BAD_NET_NAME": the answer as the log tells it, a structure's members behind it.
std::string answerText(const ObservedCall& call) {
    if (const std::optional<CallError> error = errorOf(call))
        return "failed, error " + shown(*error);
    if (!call.succeeded)
        return "nothing";
    const Answer answer = answerOf(call);
    if (!answer.items.empty() || answer.isText)
        return shown(answer);
    return findQuestion(call.name) != nullptr ? "there" : visible(call.answer);
}

std::string callLine(const TracedCall& one, const TraceOptions& options) {
    const std::string answer = answerText(one.call);
    std::string line = visible(one.call.name + "(" + one.call.arguments + ")") + (answer.empty() ? "" : " = " + answer);
    const std::string fields = joinWords(one.fields, ", ");
    if (!fields.empty())
        line += "  " + coloured(kBold, "-> " + fields, options.colours);
    return line;
}

}  // namespace

std::string traceView(const std::vector<TracedCall>& calls, const TraceOptions& options) {
    std::string text;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (!isShown(calls, i, options))
            continue;
        const bool isTrace = calls[i].call.name == kTraceCall;
        const std::string line =
            isTrace ? "  | " + visible(traceText(calls[i].call)) : callLine(withType(calls, i), options);
        text += coloured(kDim, line, options.colours && isTrace) + "\n";
    }
    return text;
}

std::string traceJson(const std::vector<TracedCall>& calls, const TraceOptions& options) {
    using nlohmann::ordered_json;
    ordered_json list = ordered_json::array();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (!isShown(calls, i, options))
            continue;
        const ObservedCall call = withType(calls, i).call;
        if (call.name == kTraceCall) {
            list.push_back({{"trace", traceText(call)}, {"level", simwin::numberOf(call.parameters[0])}});
            continue;
        }
        ordered_json one{{"call", call.name},
                         {"arguments", call.arguments},
                         {"answer", nullptr},
                         {"error", nullptr},
                         {"fields", calls[i].fields}};
        if (call.succeeded)
            one["answer"] = answerText(call);
        if (const std::optional<CallError> error = errorOf(call))
            one["error"] = {{"code", error->code}, {"name", error->name}};
        list.push_back(std::move(one));
    }
    return printed(list);
}

}  // namespace kvstation
