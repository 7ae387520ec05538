#include "simwin/station/StationReader.h"

#include "simwin/station/JsonView.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/StationMembers.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/ReadFile.h"

namespace simwin {
namespace {

constexpr std::size_t kLargestDescription = std::size_t{16} << 20;
constexpr const char* kCodePages = "codePages";

// Where a null says that there is nothing.
void findAbsent(const JsonView::Json& json, MemberPath& path, std::vector<MemberPath>& absent) {
    if (!json.is_object())
        return;
    for (const auto& [name, value] : json.items()) {
        path.push_back(name);
        if (value.is_null())
            absent.push_back(path);
        else
            findAbsent(value, path, absent);
        path.pop_back();
    }
}

void checkDeniedKeys(const Station& station, const std::string& fileName) {
    for (std::size_t i = 0; i < station.deniedKeys.size(); ++i)
        if (!station.registry.find(station.deniedKeys[i]))
            throw ReadError(fileName + ": /deniedKeys/" + std::to_string(i) + ": registry.reg has no such key");
}

}  // namespace

Station parseStation(std::string_view content, const std::string& fileName) {
    if (content.size() > kLargestDescription)
        throw tooLong(fileName, kLargestDescription);
    Station station;
    describe(station, parseJson(content, fileName), fileName);
    return station;
}

void describe(Station& station, const nlohmann::ordered_json& members, const std::string& fileName) {
    // Before all texts, which are in it.
    if (const auto pages = members.find(kCodePages); members.is_object() && pages != members.end())
        readStationMembers(JsonView({{kCodePages, *pages}}, fileName, ""), station);
    const CodePageScope scope(station.codePages.ansi);
    readStationMembers(JsonView(members, fileName, ""), station);
    MemberPath path;
    findAbsent(members, path, station.absent);
}

Station readStation(const std::filesystem::path& folder) {
    const std::filesystem::path description = folder / "station.json";
    const std::filesystem::path registry = folder / "registry.reg";
    Station station =
        parseStation(readFile(description, description.string(), kLargestDescription), description.string());
    const CodePageScope scope(station.codePages.ansi);
    station.registry = readRegistry(readFile(registry, registry.string(), kLargestExport), registry.string());
    checkDeniedKeys(station, description.string());
    return station;
}

}  // namespace simwin
