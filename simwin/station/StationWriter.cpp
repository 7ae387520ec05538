#include "simwin/station/StationWriter.h"

#include "simwin/station/StationMembers.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/JsonLayout.h"

namespace simwin {
namespace {

using Json = nlohmann::ordered_json;

// A null says that there is nothing, unless something is described there.
void putAbsent(Json& object, const MemberPath& path) {
    Json* place = &object;
    for (const std::string& name : path) {
        if (!place->is_object() && !place->is_null())
            return;
        place = &(*place)[name];
    }
}

}  // namespace

Json stationJson(const Station& station) {
    const CodePageScope scope(station.codePages.ansi);
    Json object = stationMembers(station);
    for (const MemberPath& path : station.absent)
        putAbsent(object, path);
    return object;
}

std::string writeStation(const Station& station) {
    return layOut(stationJson(station));
}

}  // namespace simwin
