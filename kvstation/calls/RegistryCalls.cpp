// The registry: its calls are answered out of registry.reg, and a captured station has it from them.
#include <algorithm>
#include <optional>
#include <string>

#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/StationDraft.h"
#include "simwin/machine/CallText.h"
#include "simwin/station/RegistryTree.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using simwin::textOf;

// What lies below a key that nobody knows has no place.
Place placeBelow(const ObservedCall& call, Place::Kind kind) {
    return call.subject.empty() ? Place{} : Place{.kind = kind, .key = simwin::withClassesInPlace(call.subject)};
}

Place placeOfOpenedKey(const ObservedCall& call) {
    Place place = placeBelow(call, Place::Kind::Key);
    if (place.kind != Place::Kind::None)
        place.key = simwin::withClassesInPlace(simwin::openedKey(call));
    return place;
}

Place placeOfValue(const ObservedCall& call) {
    Place place = placeBelow(call, Place::Kind::Value);
    if (place.kind != Place::Kind::None)
        place.value = textAt(call, 1);
    return place;
}

Place placeOfListedKey(const ObservedCall& call) {
    Place place = placeBelow(call, call.succeeded ? Place::Kind::Key : Place::Kind::EndOfKeys);
    if (place.kind == Place::Kind::Key) {
        place.key += "\\" + textAt(call, 2);
        place.isListed = true;
    }
    return place;
}

Place placeOfListedValue(const ObservedCall& call) {
    Place place = placeBelow(call, call.succeeded ? Place::Kind::Value : Place::Kind::EndOfValues);
    if (place.kind == Place::Kind::Value) {
        place.value = textAt(call, 2);
        place.isListed = true;
    }
    return place;
}

Answer tellBytes(std::string_view data) {
    std::string shown;
    simwin::appendBytes(shown, data);
    return wordsAnswer(shown.empty() ? "no bytes" : shown);
}

bool isPrintable(std::string_view data) {
    return !data.empty() && std::ranges::all_of(data, [](char byte) { return byte >= 0x20 && byte != 0x7F; });
}

// Binary data that is a text, of wide characters or of narrow ones, in the registry's way with NULs behind it.
std::optional<std::string> textIn(std::string_view data) {
    std::string narrow;
    if (data.size() >= 4 && data.size() % 2 == 0 && data[0] != '\0' && data[1] == '\0') {
        for (std::size_t i = 0; i < data.size(); i += 2)
            if (data[i + 1] != '\0')
                return std::nullopt;
            else
                narrow += data[i];
        data = narrow;
    }
    const std::string_view content = data.substr(0, data.find_last_not_of('\0') + 1);
    return isPrintable(content) ? std::optional(std::string(content)) : std::nullopt;
}

Answer tellList(std::string_view data) {
    Answer answer{{}, true};
    while (!data.empty() && data.front() != '\0') {
        const std::size_t end = std::min(data.find('\0'), data.size());
        answer.items.push_back(simwin::toUtf8(data.substr(0, end)));
        data.remove_prefix(std::min(end + 1, data.size()));
    }
    return answer;
}

Answer tellData(const ObservedCall& call) {
    const std::string_view data = textOf(call.parameters[4]);
    switch (numberAt(call, 3)) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return textAnswer(data.substr(0, data.find('\0')));
        case REG_MULTI_SZ:
            return tellList(data);
        case REG_DWORD:
            if (data.size() == sizeof(std::uint32_t))
                return wordsAnswer(std::to_string(structureAt<std::uint32_t>(call, 4)));
            break;
        default:
            break;
    }
    const std::optional<std::string> found = textIn(data);
    return found ? textAnswer(*found) : tellBytes(data);
}

// Nothing where the value's size alone was asked for.
Answer tellValue(const ObservedCall& call) {
    return call.parameters[4].index() != 0 ? tellData(call) : Answer{};
}

// A key that the caller closed and asks again has no path.
template <void (CapturedRegistry::*Take)(const ObservedCall&)>
void keep(StationDraft& draft, const ObservedCall& call) {
    if (!call.subject.empty())
        (draft.registry.*Take)(call);
}

}  // namespace

KV_CALL(RegOpenKeyA, asks("the registry key", placeOfOpenedKey), kTellsNothing, keep<&CapturedRegistry::takeOpening>);
KV_CALL(RegOpenKeyExA, asks("the registry key", placeOfOpenedKey), kTellsNothing, keep<&CapturedRegistry::takeOpening>);
KV_CALL(RegQueryValueExA, asks("the registry value", placeOfValue), tellValue, keep<&CapturedRegistry::takeValue>);
KV_CALL(RegEnumKeyA, asks("a sub-key of the registry key", placeOfListedKey), tellText<2>,
        keep<&CapturedRegistry::takeSubKey>);
KV_CALL(RegEnumValueA, asks("a value of the registry key", placeOfListedValue), tellText<2>,
        keep<&CapturedRegistry::takeValueName>);
KV_CALL(RegCloseKey, kClearance, kTellsNothing, kKeepsNothing);

}  // namespace kvstation
