#include "kvstation/experiments/AlikePlaces.h"

#include "simwin/station/RegistryTree.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr const char* kAnyName = "*";  // no name of a key has it, and no matter if a value's does

}  // namespace

std::size_t AlikePlaces::count(const Place& place) {
    if (!place.isInRegistry())
        return 0;
    std::string alike = std::to_string(static_cast<int>(place.kind));
    for (std::string_view path = place.key; !path.empty(); path = simwin::withoutLastPiece(path)) {
        const bool isAny = m_listed.contains(Place{.kind = Place::Kind::Key, .key = std::string(path)}.id());
        alike += "\\" + (isAny ? kAnyName : simwin::upperCase(simwin::lastPiece(path)));
    }
    alike += "\\" + (place.kind == Place::Kind::Value && place.isListed ? kAnyName : simwin::upperCase(place.value));
    return m_counts[alike]++;
}

}  // namespace kvstation
