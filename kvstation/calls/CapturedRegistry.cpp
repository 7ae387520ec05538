#include "kvstation/calls/CapturedRegistry.h"

#include <algorithm>

#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::numberOf;
using simwin::ObservedCall;

constexpr std::size_t kLongestValue = 1 << 20;

std::ptrdiff_t depthOf(std::string_view key) {
    std::ptrdiff_t depth = 0;
    for (; !simwin::withoutLastPiece(key).empty(); key = simwin::withoutLastPiece(key))
        ++depth;
    return depth;
}

template <class Places>
void addOnce(Places& places, const std::string& text) {
    if (std::ranges::find(places, text) == places.end())
        places.push_back(text);
}

// A key's names in their own order. A key comes before those below it, so that a sub-key that was opened first does not
// push itself before its elder sisters.
template <class Place>
std::vector<Place> inTreeOrder(std::vector<Place> places) {
    std::ranges::stable_sort(places, [](const Place& left, const Place& right) {
        const auto leftDepth = depthOf(left.key);
        const auto rightDepth = depthOf(right.key);
        return leftDepth != rightDepth ? leftDepth < rightDepth : left.index < right.index;
    });
    return places;
}

}  // namespace

void CapturedRegistry::takeSubKey(const ObservedCall& call) {
    if (call.succeeded)
        m_subKeys.push_back({call.subject, numberAt(call, 1), textAt(call, 2), 0});
}

void CapturedRegistry::takeValueName(const ObservedCall& call) {
    if (call.succeeded)
        m_valueNames.push_back(
            {call.subject, numberAt(call, 1), textAt(call, 2), static_cast<std::uint32_t>(numberAt(call, 5))});
}

void CapturedRegistry::takeOpening(const ObservedCall& call) {
    const std::string key = openedKey(call);
    if (call.succeeded)
        addOnce(m_keys, key);
    else if (numberOf(call.result) == ERROR_ACCESS_DENIED)
        addOnce(m_denied, key);
}

void CapturedRegistry::takeValue(const ObservedCall& call) {
    const bool isTooLong = numberOf(call.result) == ERROR_MORE_DATA;
    if (!call.succeeded && !isTooLong)
        return;
    const bool isRead = call.succeeded && call.parameters[4].index() != 0;
    NamedValue told{
        call.subject,
        {textAt(call, 1), static_cast<std::uint32_t>(numberAt(call, 3)),
         isRead ? textAt(call, 4) : std::string(std::min<std::size_t>(numberAt(call, 5), kLongestValue), '\0')}};
    const auto same = [&](const NamedValue& other) {
        return simwin::equalNoCase(other.key, told.key) && simwin::equalNoCase(other.value.name, told.value.name);
    };
    const auto known = std::ranges::find_if(m_values, same);
    if (known == m_values.end()) {
        m_values.push_back(std::move(told));
        return;
    }
    // A question for the data alone does not tell the type, which the one for the size did.
    if (call.parameters[3].index() != 0)
        known->value.type = told.value.type;
    if (isRead)
        known->value.bytes = std::move(told.value.bytes);
}

void CapturedRegistry::describe(simwin::Station& station) const {
    simwin::RegistryTree& tree = station.registry;
    for (const NamePlace& place : inTreeOrder(m_subKeys))
        tree.create(place.key + "\\" + place.name);
    for (const std::string& key : m_keys)
        tree.create(key);
    for (const std::string& key : m_denied)
        if (tree.create(key))
            station.deniedKeys.push_back(key);
    for (const NamePlace& place : inTreeOrder(m_valueNames)) {
        const bool isText = place.type == REG_SZ || place.type == REG_EXPAND_SZ;
        tree.set(place.key, {place.name, place.type != 0 ? place.type : std::uint32_t{REG_SZ},
                             isText || place.type == 0 ? std::string(1, '\0') : std::string()});
    }
    for (const NamedValue& told : m_values)
        tree.set(told.key, told.value);
}

}  // namespace kvstation
