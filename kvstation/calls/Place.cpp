#include "kvstation/calls/Place.h"

#include <algorithm>

#include "simwin/station/RegistryTree.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

std::string joined(const simwin::MemberPath& path) {
    std::string text;
    for (const std::string& name : path)
        text += (text.empty() ? "" : ".") + name;
    return text;
}

}  // namespace

std::string nameOf(const Place& place) {
    switch (place.kind) {
        case Place::Kind::None:
            return {};
        case Place::Kind::Member:
            return joined(place.member);
        case Place::Kind::Item:
            return joined(place.member) + "." + place.value;
        case Place::Kind::Value:
            return simwin::toUtf8(place.key + "\\" + (place.value.empty() ? "@" : place.value));
        case Place::Kind::Key:
        case Place::Kind::EndOfKeys:
        case Place::Kind::EndOfValues:
            break;
    }
    return simwin::toUtf8(place.key);
}

std::string Place::id() const {
    return std::to_string(static_cast<int>(kind)) + simwin::upperCaseInUtf8(nameOf(*this));
}

bool isBelow(const Place& place, const std::string& root) {
    if (place.isInRegistry())
        return simwin::restBelow(place.key, root).has_value();
    const std::string name = nameOf(place);
    return place.kind != Place::Kind::None && simwin::equalNoCase(name.substr(0, root.size()), root) &&
           (name.size() == root.size() || name[root.size()] == '.');
}

}  // namespace kvstation
