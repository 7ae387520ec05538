#include "simwin/station/StationReader.h"

#include <algorithm>
#include <span>

#include "simwin/calls/CallTable.h"
#include "simwin/station/CollectedJson.h"
#include "simwin/station/MemberReaders.h"
#include "simwin/station/NetworkReader.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/StorageReader.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/ReadFile.h"

namespace simwin {
namespace {

constexpr std::size_t kLargestDescription = std::size_t{16} << 20;

void readCodePages(const JsonView& view, CodePages& pages) {
    const auto readAnsi = [&](const JsonView& value) {
        pages.ansi = value.number<unsigned>();
        if (!isKnownCodePage(pages.ansi))
            value.fail("is none of the known code pages: " + listOfCodePages());
    };
    readMembers(view, {{"ansi", readAnsi}, {"oem", into(pages.oem)}});
}

void readVersion(const JsonView& view, WindowsVersion& version) {
    readMembers(view, {{"platformId", into(version.platformId)},
                       {"major", into(version.major)},
                       {"minor", into(version.minor)},
                       {"build", into(version.build)},
                       {"servicePack", into(version.servicePack)},
                       {"terminalServices", into(version.terminalServices)}});
}

void readUser(const JsonView& view, User& user) {
    readMembers(view, {{"name", into(user.name)},
                       {"samCompatible", into(user.samCompatible)},
                       {"displayName", into(user.displayName)},
                       {"principal", into(user.principal)},
                       {"network", into(user.network)},
                       {"directory", into(user.directory)}});
}

void readEnvironment(const JsonView& view, std::vector<Variable>& variables) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        if (name.empty() || name.find('=') != std::string::npos)
            value.fail("is no variable's name");
        variables.push_back({toCodePage(name, value), readText(value)});
    });
}

void readProcess(const JsonView& view, Process& process) {
    readMembers(view, {{"id", into(process.id)}, {"sessionId", into(process.sessionId)}});
}

void readProcessors(const JsonView& view, Processors& processors) {
    const auto readClocks = [&](const JsonView& clocks) {
        clocks.eachItem([&](const JsonView& mhz) { processors.currentMhz.push_back(mhz.number<std::uint32_t>()); });
    };
    readMembers(view, {{"architecture", into(processors.architecture)},
                       {"count", into(processors.count)},
                       {"type", into(processors.type)},
                       {"level", into(processors.level)},
                       {"revision", into(processors.revision)},
                       {"currentMhz", readClocks}});
}

void readSession(const JsonView& view, Session& session) {
    readMembers(view, {{"clientName", into(session.clientName)},
                       {"clientAddress", into(session.clientAddress)},
                       {"domain", into(session.domain)},
                       {"id", into(session.id)}});
}

void readProfile(const JsonView& view, std::vector<ProfileEntry>& profile) {
    view.eachMember([&](const std::string& section, const JsonView& entries) {
        entries.eachMember([&](const std::string& entry, const JsonView& value) {
            profile.push_back({toCodePage(section, entries), toCodePage(entry, value), readText(value)});
        });
    });
}

bool isKnownCall(std::string_view name) {
    const std::span<const CallEntry> table = callTable();
    return std::any_of(table.begin(), table.end(), [name](const CallEntry& call) { return call.name == name; });
}

void readFails(const JsonView& view, std::map<std::string, std::uint32_t, std::less<>>& fails) {
    view.eachMember([&](const std::string& call, const JsonView& value) {
        if (!isKnownCall(call))
            value.fail("is no call that the module makes");
        fails[call] = value.number<std::uint32_t>();
        if (fails[call] == 0)
            value.fail("is no error");
    });
}

// "wsock32.dll" or "netapi32.dll!NetWkstaGetInfo".
void readMissing(const JsonView& view, std::vector<std::string>& missing) {
    view.eachItem([&](const JsonView& item) {
        const std::string entry = item.utf8();
        const std::size_t mark = entry.find('!');
        const std::string_view library = std::string_view(entry).substr(0, mark);
        if (!findLibrary(library))
            item.fail("names no library that the module uses");
        if (mark != std::string::npos && findCall(library, std::string_view(entry).substr(mark + 1)) == nullptr)
            item.fail("names no function that the module looks up in that library");
        missing.push_back(entry);
    });
}

void readAll(const JsonView& view, Station& station) {
    readMembers(view,
                {{"description", [&](const JsonView& value) { station.description = value.utf8(); }},
                 {"collected", [&](const JsonView& value) { station.collected = readCollected(value); }},
                 {"codePages", [&](const JsonView& value) { readCodePages(value, station.codePages); }},
                 {"version", [&](const JsonView& value) { readVersion(value, station.version.emplace()); }},
                 {"keyboard",
                  [&](const JsonView& value) {
                      Keyboard& keyboard = station.keyboard.emplace();
                      readMembers(value, {{"type", into(keyboard.type)}, {"subType", into(keyboard.subType)}});
                  }},
                 {"computerName", into(station.computerName)},
                 {"user", [&](const JsonView& value) { readUser(value, station.user); }},
                 {"environment", [&](const JsonView& value) { readEnvironment(value, station.environment); }},
                 {"process", [&](const JsonView& value) { readProcess(value, station.process.emplace()); }},
                 {"processors", [&](const JsonView& value) { readProcessors(value, station.processors.emplace()); }},
                 {"memory",
                  [&](const JsonView& value) {
                      Memory& memory = station.memory.emplace();
                      readMembers(value, {{"physical", into(memory.physical)}, {"virtual", into(memory.virtualSize)}});
                  }},
                 {"drives", [&](const JsonView& value) { readDrives(value, station.drives); }},
                 {"files", [&](const JsonView& value) { readFiles(value, station.files); }},
                 {"network", [&](const JsonView& value) { readNetwork(value, station.network); }},
                 {"session", [&](const JsonView& value) { readSession(value, station.session); }},
                 {"citrix",
                  [&](const JsonView& value) {
                      readMembers(value, {{"clientName", into(station.citrix.emplace().clientName)}});
                  }},
                 {"vcdVersion", into(station.vcdVersion)},
                 {"profile", [&](const JsonView& value) { readProfile(value, station.profile); }},
                 {"missing", [&](const JsonView& value) { readMissing(value, station.missing); }},
                 {"fails", [&](const JsonView& value) { readFails(value, station.fails); }},
                 {"deniedKeys", into(station.deniedKeys)},
                 {"unknown", into(station.unknown)}});
}

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
    if (const auto pages = members.find("codePages");
        members.is_object() && pages != members.end() && !pages->is_null())
        readCodePages(JsonView(*pages, fileName, "/codePages"), station.codePages);
    const CodePageScope scope(station.codePages.ansi);
    readAll(JsonView(members, fileName, ""), station);
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
