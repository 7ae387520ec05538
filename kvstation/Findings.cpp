#include "kvstation/Findings.h"

#include <algorithm>

#include "kvstation/GivenText.h"
#include "kvstation/Record.h"
#include "simwin/CallText.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using State = Finding::State;

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && simwin::equalNoCase(text.substr(text.size() - end.size()), end);
}

bool isIn(const StepCall& call, std::string_view step) {
    return step.empty() || call.step == step;
}

std::string failure(const ObservedCall& call) {
    const bool isRegistry = call.name.starts_with("Reg");
    const std::string code = isRegistry ? call.answer : std::to_string(call.error);
    return "failed (error " + code + ")";
}

// An empty text in quotes is none.
void add(Finding& finding, std::string line, bool gave) {
    finding.lines.push_back(std::move(line));
    if (finding.state != State::Gave)
        finding.state = gave ? State::Gave : State::Nothing;
}

// Opening the key failed, so that nothing could be asked of it.
void lookForMissingKey(Finding& finding, const WatchedRun& run) {
    const Source& source = finding.source;
    for (const StepCall& one : run.calls) {
        const ObservedCall& call = one.call;
        if (!source.what.empty() && isIn(one, source.step) && call.name.starts_with("RegOpenKey") && !call.succeeded &&
            endsWith(simwin::textOf(call.parameters[1]), source.what))
            finding.lines = {"no key " + call.subject + "\\" + simwin::toUtf8(simwin::textOf(call.parameters[1])) +
                             " (error " + call.answer + ")"};
    }
    if (!finding.lines.empty())
        finding.state = State::Nothing;
}

// One answer for each key, the last question's.
void lookForValue(Finding& finding, const WatchedRun& run) {
    const Source& source = finding.source;
    std::vector<const ObservedCall*> found;
    for (const StepCall& one : run.calls) {
        const ObservedCall& call = one.call;
        if (!isIn(one, source.step) || call.name != "RegQueryValueExA" || !endsWith(call.subject, source.what) ||
            !simwin::equalNoCase(simwin::textOf(call.parameters[1]), source.item))
            continue;
        if (!found.empty() && found.back()->subject == call.subject)
            found.back() = &call;
        else
            found.push_back(&call);
    }
    for (const ObservedCall* call : found) {
        const bool isRead = call->succeeded && call->parameters[4].index() != 0;
        const std::string told = isRead            ? givenBy(*call)
                                 : call->succeeded ? "of a type that is not read"
                                                   : "not there (error " + call->answer + ")";
        add(finding, call->subject + ": " + told, isRead && told != "\"\"");
    }
    if (found.empty())
        lookForMissingKey(finding, run);
}

void lookForNames(Finding& finding, const WatchedRun& run, std::string_view enumeration) {
    for (const StepCall& one : run.calls) {
        const ObservedCall& call = one.call;
        if (!isIn(one, finding.source.step) || call.name != enumeration || !endsWith(call.subject, finding.source.what))
            continue;
        if (call.succeeded)
            add(finding, givenBy(call), true);
        else if (finding.lines.empty())
            add(finding, "none", false);
    }
    if (finding.lines.size() > 1 && finding.lines.front() == "none")
        finding.lines.erase(finding.lines.begin());
    if (finding.lines.empty())
        lookForMissingKey(finding, run);
}

void lookForVariable(Finding& finding, const WatchedRun& run) {
    for (const StepCall& one : run.calls) {
        const ObservedCall& call = one.call;
        const bool isVariable = call.name == "KVGetEnv" || call.name == "GetEnvironmentVariableA";
        if (!isVariable || !isIn(one, finding.source.step) || simwin::textOf(call.parameters[0]) != finding.source.what)
            continue;
        const std::string value = call.succeeded ? givenBy(call) : "not set";
        finding.lines = {value};
        finding.state = call.succeeded && value != "\"\"" ? State::Gave : State::Nothing;
    }
}

bool isNoDrive(const ObservedCall& call) {
    return call.name == "GetDriveTypeA" && simwin::numberOf(call.result) <= 1;
}

void lookForCall(Finding& finding, const WatchedRun& run) {
    const Source& source = finding.source;
    const bool isOne = source.role == Role::Takes || source.role == Role::Otherwise;
    for (const StepCall& one : run.calls) {
        const ObservedCall& call = one.call;
        if (!isAsked(one, source.step, source.what, source.item) || isNoDrive(call))
            continue;
        const std::string value = givenBy(call);
        const bool gave = (call.succeeded || source.asked == Asked::CallText) && value != "\"\"";
        const std::string line = gave ? value : call.succeeded ? "nothing" : failure(call);
        if (!isOne) {
            const std::string whole = call.arguments.empty() ? line : "(" + call.arguments + ") " + line;
            if (std::ranges::find(finding.lines, whole) == finding.lines.end())
                add(finding, whole, gave);
        } else if (gave || finding.state != State::Gave) {
            finding.lines = {line};
            finding.state = gave ? State::Gave : State::Nothing;
        }
    }
}

void lookForField(Finding& finding, const WatchedRun& run) {
    const Record record(run.record);
    const std::size_t field = findField(finding.source.what);
    const std::string text = record.textOf(field);
    add(finding, "\"" + text + "\"", !text.empty());
}

}  // namespace

bool isAsked(const StepCall& call, std::string_view step, std::string_view name, std::string_view argument) {
    const std::string_view arguments = call.call.arguments;
    return isIn(call, step) && call.call.name == name &&
           (argument.empty() || arguments == argument ||
            (argument.size() > 1 && arguments.find(argument) != std::string_view::npos));
}

Finding findingOf(const Source& source, const WatchedRun& run) {
    Finding finding{.source = source};
    switch (source.asked) {
        case Asked::Variable:
            lookForVariable(finding, run);
            break;
        case Asked::Value:
            lookForValue(finding, run);
            break;
        case Asked::SubKeys:
            lookForNames(finding, run, "RegEnumKeyA");
            break;
        case Asked::Values:
            lookForNames(finding, run, "RegEnumValueA");
            break;
        case Asked::Call:
        case Asked::CallText:
            lookForCall(finding, run);
            break;
        case Asked::Field:
            lookForField(finding, run);
            break;
        case Asked::Nothing:
            add(finding, "\"" + std::string(source.what) + "\"", true);
            break;
    }
    return finding;
}

}  // namespace kvstation
