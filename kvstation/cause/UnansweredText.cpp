#include "kvstation/cause/UnansweredText.h"

#include <algorithm>
#include <set>

#include "kvstation/experiments/Questions.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

bool isDescribed(const World& world, const Place& place) {
    switch (place.kind) {
        case Place::Kind::Member:
            return world.find(place.member) != nullptr;
        case Place::Kind::Key:
            return world.registry().find(place.key).has_value();
        case Place::Kind::Value: {
            const std::optional<simwin::KeyId> key = world.registry().find(place.key);
            return key && world.registry().findValue(*key, place.value) != nullptr;
        }
        case Place::Kind::None:
        case Place::Kind::Item:
        case Place::Kind::EndOfKeys:
        case Place::Kind::EndOfValues:
            break;
    }
    return true;
}

// Somebody asked, and nothing was there.
bool isKnownAbsent(const World& world, const Place& place) {
    return std::ranges::any_of(world.station()->absent, [&](const simwin::MemberPath& path) {
        return memberPlace(path).id() == memberPlace(place.member).id();
    });
}

}  // namespace

bool isUnknown(const World& world, const Place& place) {
    return !isDescribed(world, place) && !isKnownAbsent(world, place) &&
           std::ranges::any_of(world.station()->unknown, [&](const std::string& root) { return isBelow(place, root); });
}

std::string unansweredText(const World& world, const std::vector<AskedCall>& calls) {
    std::set<std::string> told;  // two calls may ask for one place in the same words
    std::string lines;
    for (const Question& question : questionsOf(calls, world)) {
        const std::string line =
            "  " + std::string(question.row->asks.words) + ": " + visible(nameOf(question.place)) + "\n";
        if (isUnknown(world, question.place) && told.insert(line).second)
            lines += line;
    }
    return lines.empty() ? "" : "\nAsked then, but not written down in this station:\n" + lines;
}

}  // namespace kvstation
