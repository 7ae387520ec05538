#include "kvstation/Explanation.h"

#include <algorithm>
#include <array>

#include "kvstation/Findings.h"
#include "kvstation/Record.h"
#include "kvstation/VisibleText.h"

namespace kvstation {
namespace {

using State = Finding::State;

bool isCandidate(const Finding& finding) {
    return finding.source.role == Role::Takes && finding.state == State::Gave;
}

// The name that a station registers under, by its type: which of the fields comes first, and which then.
constexpr std::array<std::string_view, 4> kNameOrders[] = {
    {"szClientName"},
    {"szDnsName", "szIPAddress", "szMACAddress", "szClientName"},
    {"szIPAddress", "szMACAddress", "szClientName"},
    {"szMACAddress", "szIPAddress", "szClientName"},
};

Finding* chosenName(std::vector<Finding>& findings) {
    const std::string type = findings.front().lines.empty() ? "" : findings.front().lines.front();  // in quotes
    const std::size_t order =
        type.size() > 2 && type[1] >= '1' && type[1] <= '3' ? static_cast<std::size_t>(type[1] - '0') : 0;
    for (const std::string_view field : kNameOrders[order])
        for (Finding& finding : findings)
            if (isCandidate(finding) && finding.source.what == field)
                return &finding;
    return nullptr;
}

// The last one that gave something: a source is asked only when those before it failed, or to replace them.
Finding* lastCandidate(std::vector<Finding>& findings) {
    const auto found = std::find_if(findings.rbegin(), findings.rend(), isCandidate);
    return found != findings.rend() ? &*found : nullptr;
}

void markTaken(std::string_view field, std::vector<Finding>& findings) {
    bool isAny = false;
    for (Finding& finding : findings)
        if (finding.source.role == Role::Adds && finding.state == State::Gave)
            isAny = finding.isTaken = true;
    if (Finding* chosen = field == "szStation" ? chosenName(findings) : lastCandidate(findings))
        isAny = chosen->isTaken = true;
    for (Finding& finding : findings)
        if (finding.source.role == Role::Otherwise && finding.state == State::Gave)
            finding.isTaken = !isAny;
}

std::string_view reasonFor(std::string_view field, const WatchedRun& run) {
    for (const Reason& reason : reasons()) {
        if (reason.field != field)
            continue;
        bool isMade = false;
        bool isFailed = false;
        bool isStep = false;
        for (const StepCall& call : run.calls) {
            isStep = isStep || call.step == reason.step;
            if (!isAsked(call, reason.step, reason.call, reason.argument))
                continue;
            isMade = true;
            isFailed = !call.call.succeeded;
        }
        const bool holds = reason.state == Reason::State::Failed ? isFailed
                           : reason.state == Reason::State::Made ? isMade
                                                                 : isStep && !isMade;
        if (holds)
            return reason.text;
    }
    return {};
}

std::string nameOf(const Source& source) {
    switch (source.asked) {
        case Asked::Value:
            return source.item.empty() ? "default value" : "\"" + std::string(source.item) + "\"";
        case Asked::SubKeys:
            return "sub-keys of " + std::string(source.what);
        case Asked::Values:
            return "values of " + std::string(source.what);
        case Asked::Nothing:
            return "else";
        default:
            return std::string(source.what);
    }
}

std::string_view signOf(const Finding& finding) {
    if (finding.isTaken)
        return finding.source.role == Role::Adds ? "+" : "*";
    return finding.source.role == Role::Steers ? "?" : " ";
}

std::string findingText(const Finding& finding, std::string_view reason) {
    std::string text = "  " + std::string(signOf(finding)) + " " + nameOf(finding.source);
    const std::string_view meaning = finding.source.meaning;
    if (!meaning.empty())
        text += " (" + std::string(meaning) + ")";
    if (finding.state == State::NotAsked)
        return text + ": not asked\n";
    if (finding.lines.size() == 1)
        return text + ": " + visible(finding.lines.front()) +
               (finding.isTaken && finding.source.role == Role::Otherwise && !reason.empty()
                    ? ", because " + std::string(reason)
                    : "") +
               "\n";
    text += ":\n";
    for (const std::string& line : finding.lines)
        text += "        " + visible(line) + "\n";
    return text;
}

}  // namespace

std::vector<Finding> explain(std::string_view field, const WatchedRun& run) {
    std::vector<Finding> findings;
    for (const Source& source : sourcesOf(field))
        findings.push_back(findingOf(source, run));
    markTaken(field, findings);
    return findings;
}

std::string explanationText(std::string_view field, const WatchedRun& run, bool colours) {
    const std::size_t index = findField(field);
    const Field& known = fields()[index];
    const std::string value = Record(run.record).textOf(index);
    const std::string shown = known.type == FieldType::Text ? "\"" + visible(value) + "\"" : value;
    std::string text = (colours ? "\x1b[1m" : "") + std::string(field) + " = " + shown + (colours ? "\x1b[0m" : "") +
                       "\n" + std::string(known.meaning) + "\n\n";
    const std::string_view reason = reasonFor(field, run);
    for (const Finding& finding : explain(field, run))
        text += findingText(finding, reason);
    return text + "\n* taken   + part of the value   ? decides what is asked or taken\n";
}

}  // namespace kvstation
