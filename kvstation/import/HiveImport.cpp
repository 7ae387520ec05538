#include "kvstation/import/HiveImport.h"

#include <algorithm>
#include <set>
#include <utility>

#include "kvstation/capture/Completion.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/import/HiveFacts.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/record/ProductName.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// Windows makes these keys at each start, so that no hive holds them.
constexpr std::string_view kHardware = "HKEY_LOCAL_MACHINE\\HARDWARE";
constexpr std::string_view kSession = "session";
constexpr std::string_view kServicePack = "version.servicePack";
constexpr std::string_view kAnsiCodePage = "codePages.ansi";
constexpr std::string_view kOemCodePage = "codePages.oem";

// Of what no call asks for by itself.
constexpr std::pair<std::string_view, std::string_view> kMeanings[] = {
    {kSession, "the session"},
    {kServicePack, "the service pack, which --version does not tell"},
    {kAnsiCodePage, "the ANSI code page; 1252 stands in its place"},
    {kOemCodePage, "the OEM code page; 437 stands in its place"}};

constexpr std::string_view kServices = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services";

bool isMadeAtStart(const std::string& key) {
    const std::string_view service = simwin::restBelow(key, kServices).value_or("");
    const std::size_t end = simwin::findCharacter(service, '\\');
    return end != std::string_view::npos && simwin::equalNoCase(service.substr(end + 1), "Enum");
}

// What the hives tell of a disk.
class HiveState : public LocalState {
  public:
    HiveState(HiveRegistry& registry, std::vector<simwin::Variable> variables)
        : m_registry(registry), m_variables(std::move(variables)) {}

    bool copyKey(const std::string& fullPath, simwin::RegistryTree& tree) override {
        return m_registry.copyKey(fullPath, tree);
    }
    std::optional<std::string> variable(const std::string& name) override {
        for (const simwin::Variable& variable : m_variables)
            if (simwin::equalNoCase(variable.name, name))
                return variable.value;
        return std::nullopt;
    }
    std::optional<simwin::File> file(const std::string&) override { return std::nullopt; }
    // A variable may come from a logon or a session, a file from another disk.
    bool knows(const Place&) override { return false; }

  private:
    HiveRegistry& m_registry;
    std::vector<simwin::Variable> m_variables;
};

std::string descriptionOf(const HiveFacts& facts) {
    std::string product;
    if (const auto& version = facts.station.version)
        product = productName({.platform = version->platformId,
                               .major = version->major,
                               .minor = version->minor,
                               .build = version->build,
                               .isServer = facts.isServer});
    return "imported from the registry hives of " + (product.empty() ? "a Windows disk" : product);
}

// Below a service that the hives hold: others are asked for where an experiment invented their names.
bool isMissingOfService(const std::string& key, HiveRegistry& registry) {
    simwin::RegistryTree service;
    return !registry.isWindows9x() && isMadeAtStart(key) && registry.copyKey(simwin::withoutLastPiece(key), service);
}

// Before Windows 2000 a user chose no file types.
bool hasUserClasses(const simwin::Station& station) {
    return !station.version || station.version->major > 4;
}

std::vector<std::string> rootsInNoHive(const simwin::Station& station, const HiveRegistry& registry) {
    std::vector<std::string> roots = registry.missingRoots();
    if (!hasUserClasses(station))
        std::erase(roots, kUserFileTypes);
    if (!registry.isWindows9x())
        roots.emplace_back(kHardware);
    return roots;
}

// A file type may be one that the user chose.
bool mayBeBelow(const Place& place, const std::string& root) {
    const bool isType = simwin::restBelow(simwin::withClassesInPlace(place.key), kFileTypes).has_value();
    return isBelow(place, root) || (isType && simwin::restBelow(kUserFileTypes, root));
}

// Keys that were asked for and that no hive can tell, one root for each reason.
void addUnknownKeys(simwin::Station& station, const AskedPlaces& asked, HiveRegistry& registry) {
    const std::vector<std::string> roots = rootsInNoHive(station, registry);
    std::set<std::string> unknown;
    for (const auto& [id, one] : asked.all()) {
        if (!one.place.isInRegistry())
            continue;
        for (const std::string& root : roots)
            if (mayBeBelow(one.place, root))
                unknown.insert(root);
        if (isMissingOfService(one.place.key, registry))
            unknown.insert(one.place.key);
    }
    station.unknown.insert(station.unknown.begin(), unknown.begin(), unknown.end());
}

using Part = HiveRegistry::Part;

// A value that was found is not lost, whatever else is.
std::optional<std::string> lossAt(const Place& place, const simwin::RegistryTree& tree, HiveRegistry& registry) {
    const std::optional<simwin::KeyId> key = tree.find(place.key);
    if (place.kind == Place::Kind::Value && key && tree.findValue(*key, place.value) != nullptr)
        return std::nullopt;
    const Part part = place.kind == Place::Kind::Key         ? Part::Itself
                      : place.kind == Place::Kind::EndOfKeys ? Part::SubKeys
                                                             : Part::Values;
    return registry.lossAt(place.key, part);
}

AskedPlaces askedInSessions(const simwin::Station& station, const Collector& collector) {
    AskedPlaces asked = askedByVersions(station, collector);
    simwin::Station session = station;
    session.environment.push_back({"CLIENTNAME", "CLIENT"});
    asked.add(askedByVersions(session, collector));
    return asked;
}

// What damage took of what the module asks. Names that an experiment invented are not lost, so that only the questions
// of the station count: in each version of Windows, at the machine and in a session.
std::set<std::string> addLostKeys(simwin::Station& station, const Collector& collector, HiveRegistry& registry) {
    std::set<std::string> lost;
    const AskedPlaces asked = askedInSessions(station, collector);
    for (const auto& [id, one] : asked.all())
        if (one.place.isInRegistry())
            if (const std::optional<std::string> key = lossAt(one.place, station.registry, registry))
                lost.insert(*key);
    station.unknown.insert(station.unknown.begin(), lost.begin(), lost.end());
    return lost;
}

// Since Windows 10 there are no service packs.
void addUntoldServicePack(simwin::Station& station) {
    if (station.version && station.version->major < 10)
        station.unknown.emplace_back(kServicePack);
}

// A disk tells of no session, whatever the module asks about it.
void addUnknownSession(simwin::Station& station) {
    if (std::ranges::none_of(station.unknown, [](const std::string& one) { return one.starts_with(kSession); }))
        station.unknown.emplace_back(kSession);
}

std::string meaningOf(const std::string& root, const AskedPlaces& asked, const std::set<std::string>& lost,
                      const HiveRegistry& registry) {
    if (lost.contains(root))
        return "lost where the hive is damaged";
    if (registry.isUserLeftOut() && simwin::restBelow(root, kUserKeys))
        return "left out, since --user none asked for that";
    if (simwin::splitHive(root))
        return root == kHardware || isMadeAtStart(root) ? "in no hive, since Windows makes it at each start"
                                                        : "there is no hive of it";
    for (const auto& [id, one] : asked.all())
        if (isBelow(one.place, root))
            return std::string(one.words);
    for (const auto& [name, meaning] : kMeanings)
        if (root == name)
            return std::string(meaning);
    return {};
}

// Entries of one meaning stand together.
std::vector<std::string> linesOf(const simwin::Station& station, const AskedPlaces& asked,
                                 const std::set<std::string>& lost, const HiveRegistry& registry) {
    std::vector<std::pair<std::string, std::string>> all;
    for (const std::string& root : station.unknown) {
        const std::string meaning = meaningOf(root, asked, lost, registry);
        const auto same = std::ranges::find(all, meaning, &std::pair<std::string, std::string>::first);
        if (same != all.end())
            same->second += ", " + simwin::toUtf8(root);
        else
            all.emplace_back(meaning, simwin::toUtf8(root));
    }
    std::vector<std::string> lines;
    lines.reserve(all.size());
    for (const auto& [meaning, names] : all)
        lines.emplace_back(names).append(": ").append(meaning);
    return lines;
}

}  // namespace

ImportedStation importStation(HiveRegistry& registry, const WhatIf& whatIf, Reach reach) {
    HiveFacts facts = factsOf(registry);
    HiveState state(registry, std::exchange(facts.station.environment, {}));
    facts.station.description = descriptionOf(facts);
    apply(whatIf, facts.station);
    ImportedStation imported{.station = std::move(facts.station), .record = {}, .undescribed = {}, .warnings = {}};
    const Collector collector;
    const AskedPlaces asked = complete(imported.station, {}, state, collector, reach);
    addUnknownKeys(imported.station, asked, registry);
    std::set<std::string> lost = addLostKeys(imported.station, collector, registry);
    if (whatIf.version.empty()) {
        imported.station.unknown.insert(imported.station.unknown.end(), facts.lost.begin(), facts.lost.end());
        lost.insert(facts.lost.begin(), facts.lost.end());
    } else {
        addUntoldServicePack(imported.station);
    }
    addUnknownSession(imported.station);
    if (!registry.tellsCodePage())
        imported.station.unknown.emplace_back(kAnsiCodePage);
    if (!facts.knowsOemCodePage)
        imported.station.unknown.emplace_back(kOemCodePage);
    simwin::Machine machine(imported.station);
    imported.record = collector.collect(machine);
    imported.undescribed = linesOf(imported.station, asked, lost, registry);
    imported.warnings = registry.remarks();
    return imported;
}

}  // namespace kvstation
