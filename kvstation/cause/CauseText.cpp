#include "kvstation/cause/CauseText.h"

#include <algorithm>

#include "kvstation/platform/Output.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/station/RegistryTree.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr const char* kNotWritten = "not written down in this station";
constexpr std::size_t kLongestAnswer = 60;
constexpr std::size_t kLongestWhole = 2000;
constexpr std::size_t kAnswerWidth = 32;
constexpr std::size_t kMostAlike = 3;

std::string bold(const std::string& text, bool colours) {
    return coloured(kBold, text, colours);
}

std::string withShortHive(std::string path) {
    for (const simwin::NamedHive& hive : simwin::kHives)
        if (simwin::restBelow(path, hive.name))
            return std::string(hive.shortName) + path.substr(hive.name.size());
    return path;
}

bool isVariable(const Cause& cause) {
    return cause.place.kind == Place::Kind::Member && cause.place.member.front() == "environment";
}

std::string answerText(const Cause& cause) {
    if (cause.isUnknown)
        return kNotWritten;
    if (!cause.answer)
        return cause.error ? "failed, error " + shown(*cause.error) : isVariable(cause) ? "not set" : "nothing";
    std::string text = shown(*cause.answer);
    if (columns(text) > kLongestAnswer) {
        text.resize(bytesWithin(text, kLongestAnswer));
        text += "...";
    }
    return text;
}

// "environment variable KVUser", "registry value HKLM\...", "the session's client, ZRTSQueryClientName()".
std::string sourceText(const Cause& cause) {
    switch (cause.place.kind) {
        case Place::Kind::Value:
            return withShortHive(visible(nameOf(cause.place)));
        case Place::Kind::Key:
            return "key " + withShortHive(visible(nameOf(cause.place)));
        case Place::Kind::EndOfKeys:
            return "the end of the sub-keys of " + withShortHive(visible(nameOf(cause.place)));
        case Place::Kind::EndOfValues:
            return "the end of the values of " + withShortHive(visible(nameOf(cause.place)));
        case Place::Kind::Member:
            if (isVariable(cause))
                return "variable " + visible(cause.place.member.back());
            break;
        case Place::Kind::None:
        case Place::Kind::Item:
            break;
    }
    return cause.words + ", " + visible(cause.question);
}

// True for a key on the way to what another cause stands for.
bool isOnTheWay(const Cause& key, const std::vector<Cause>& causes) {
    return isKeyThere(key) && std::ranges::any_of(causes, [&](const Cause& other) {
               return other.place.isInRegistry() && !isKeyThere(other) &&
                      simwin::restBelow(other.place.key, key.place.key);
           });
}

std::string argumentsOf(const Cause& cause) {
    return cause.question.substr(cause.call.size() + 1, cause.question.size() - cause.call.size() - 2);
}

// Causes of one role that asked the same call and got the same answer.
std::vector<const Cause*> alike(const std::vector<Cause>& causes, const Cause& first) {
    std::vector<const Cause*> found;
    for (const Cause& cause : causes)
        if (cause.role == first.role && cause.call == first.call && answerText(cause) == answerText(first) &&
            !cause.place.isInRegistry())
            found.push_back(&cause);
    return found;
}

std::string padded(std::string text, std::size_t width) {
    const std::size_t length = columns(text);
    return length < width ? text + std::string(width - length, ' ') : text;
}

std::string linesOf(const std::vector<Cause>& causes, const std::string& indent, bool colours) {
    std::string text;
    for (const CauseLine& line : causeLines(causes))
        text += indent + bold(padded(line.role, 7), colours && line.role != "decides") + "  " +
                padded(line.answer, kAnswerWidth) + "  " + line.source + "\n";
    return text;
}

std::string shortNames(const std::vector<Cause>& causes, bool areGivers) {
    std::vector<std::string> names;
    for (const Cause& cause : causes)
        if ((cause.role != Role::Decides) == areGivers && !isKeyThere(cause))
            if (std::string name = shortName(cause); std::ranges::find(names, name) == names.end())
                names.push_back(std::move(name));
    return joinWords(names, ", ", visible);
}

}  // namespace

bool isKeyThere(const Cause& cause) {
    return cause.role == Role::Decides && cause.place.kind == Place::Kind::Key && cause.answer &&
           cause.answer->items.empty();
}

std::string shortName(const Cause& cause) {
    if (isVariable(cause))
        return cause.place.member.back();
    if (cause.place.isListed)
        return cause.call;
    if (cause.place.kind == Place::Kind::Value && cause.place.value.empty())
        return simwin::toUtf8(simwin::lastPiece(cause.place.key));
    if (cause.place.kind == Place::Kind::Value)
        return "\"" + simwin::toUtf8(cause.place.value) + "\"";
    return cause.call;
}

std::string_view wordOf(Role role) {
    switch (role) {
        case Role::Gives:
            return "gives";
        case Role::Adds:
            return "adds";
        case Role::Decides:
            break;
    }
    return "decides";
}

std::string shownValue(std::size_t field, const std::string& value) {
    return fields()[field].type == FieldType::Text ? "\"" + visible(value) + "\"" : value;
}

std::vector<CauseLine> causeLines(const std::vector<Cause>& causes) {
    std::vector<CauseLine> lines;
    std::vector<const Cause*> told;
    std::size_t keys = 0;
    for (const Cause& cause : causes) {
        if (std::ranges::find(told, &cause) != told.end())
            continue;
        if (isOnTheWay(cause, causes)) {
            ++keys;
            continue;
        }
        const std::vector<const Cause*> same = alike(causes, cause);
        if (same.size() <= kMostAlike) {
            lines.push_back({std::string(wordOf(cause.role)), answerText(cause), sourceText(cause)});
            continue;
        }
        const std::string arguments = joinWords(same, ", ", [](const Cause* one) { return argumentsOf(*one); });
        lines.push_back({std::string(wordOf(cause.role)), answerText(cause),
                         cause.words + ", " + cause.call + " of " + visible(arguments)});
        told.insert(told.end(), same.begin(), same.end());
    }
    if (keys != 0)
        lines.push_back({"decides", "there", "the keys on the way to these (" + std::to_string(keys) + " questions)"});
    return lines;
}

std::string withoutCauses(const FieldCauses& causes) {
    return causes.isOpen
               ? "no answer changes it by itself; what is unknown on this station may, several things together"
               : "nothing that the module asked changes it";
}

std::string causesText(const FieldCauses& causes, bool colours) {
    const Field& field = fields()[causes.field];
    std::string text = bold(std::string(field.name) + " = " + shownValue(causes.field, causes.value), colours) + "\n" +
                       std::string(field.meaning) + "\n\n";
    if (causes.cut)
        text += "  cut to " + std::to_string(characters(causes.value)) + " of " + lengthOf(*causes.cut) +
                " characters: \"" + shortened(visible(causes.cut->text), kLongestWhole) + "\"\n\n";
    text += linesOf(causes.causes, "  ", colours);
    for (const std::string& one : causes.unknown)
        text += "  " + bold("unknown", colours) + "  " + padded(kNotWritten, kAnswerWidth) + "  " + visible(one) + "\n";
    if (!causes.unknown.empty())
        text += "\n  Its source is unknown on this station: what it holds says nothing of the machine.\n";
    else if (causes.causes.empty())
        text += "  " + withoutCauses(causes) + "\n";
    else if (std::ranges::none_of(causes.causes, [](const Cause& cause) { return cause.role != Role::Decides; }))
        text += "\n  The value itself is the module's own; it stands in no answer.\n";
    if (!causes.next.empty())
        text += "\n  When what gives it fails:\n";
    for (const NextValue& next : causes.next)
        text += "  then     " + shownValue(causes.field, next.value) + "\n" + linesOf(next.causes, "    ", colours);
    return text;
}

std::string causesLine(const FieldCauses& causes, bool colours) {
    const std::string unknown = joinWords(causes.unknown, ", ", visible);
    const std::string givers = shortNames(causes.causes, true);
    const std::string deciders = shortNames(causes.causes, false);
    return bold(std::string(fields()[causes.field].name), colours) + " = " + shownValue(causes.field, causes.value) +
           (causes.cut ? " (cut)" : "") + (givers.empty() ? "" : "  from " + givers) +
           (deciders.empty() ? "" : "  decided by " + deciders) + (unknown.empty() ? "" : "  unknown: " + unknown) +
           "\n";
}

}  // namespace kvstation
