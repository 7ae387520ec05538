#include "kvstation/HiveImport.h"

#include <algorithm>
#include <set>
#include <utility>

#include "kvstation/Errors.h"
#include "kvstation/HiveFacts.h"
#include "kvstation/ProductName.h"
#include "kvstation/Stage.h"
#include "kvstation/capture/Completion.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

// Windows makes these keys at each start, so that no hive holds them.
constexpr std::string_view kHardware = "HKEY_LOCAL_MACHINE\\HARDWARE";
constexpr std::string_view kServices = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services";

bool isMadeAtStart(const std::string& key) {
    return simwin::restBelow(key, kServices) && simwin::equalNoCase(key.substr(key.find_last_of('\\') + 1), "Enum");
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
    return isMadeAtStart(key) && registry.copyKey(key.substr(0, key.find_last_of('\\')), service);
}

// Keys that were asked for and that no hive can tell, one root for each reason.
void addUnknownKeys(simwin::Station& station, const AskedPlaces& asked, HiveRegistry& registry) {
    std::vector<std::string> roots = registry.missingRoots();
    roots.emplace_back(kHardware);
    std::set<std::string> unknown;
    for (const auto& [id, one] : asked.all()) {
        if (!one.place.isInRegistry())
            continue;
        for (const std::string& root : roots)
            if (isBelow(one.place, root))
                unknown.insert(root);
        if (isMissingOfService(one.place.key, registry))
            unknown.insert(one.place.key);
    }
    station.unknown.insert(station.unknown.begin(), unknown.begin(), unknown.end());
}

std::string meaningOf(const std::string& root, const AskedPlaces& asked) {
    if (simwin::splitHive(root))
        return root == kHardware || isMadeAtStart(root) ? "in no hive, since Windows makes it at each start"
                                                        : "there is no hive of it";
    for (const auto& [id, one] : asked.all())
        if (isBelow(one.place, root))
            return std::string(one.words);
    return "the OEM code page; 437 stands in its place";
}

// Entries of one meaning stand together.
std::vector<std::string> linesOf(const simwin::Station& station, const AskedPlaces& asked) {
    std::vector<std::pair<std::string, std::string>> all;
    for (const std::string& root : station.unknown) {
        const std::string meaning = meaningOf(root, asked);
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

std::vector<std::string> warningsOf(const HiveFacts& facts, const HiveRegistry& registry) {
    std::vector<std::string> lines;
    for (const std::string& file : registry.dirtyFiles())
        lines.push_back(file + " was not written to its end; what Windows kept in the log beside it is missing");
    if (!facts.ansiCodePage.empty() && facts.ansiCodePage != std::to_string(simwin::kDefaultCodePage))
        lines.push_back("this Windows has the ANSI code page " + facts.ansiCodePage +
                        "; a station has 1252, which turns other characters into \"?\"");
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
    if (!facts.knowsOemCodePage)
        imported.station.unknown.emplace_back("codePages.oem");
    simwin::Machine machine(imported.station);
    imported.record = collector.collect(machine);
    imported.undescribed = linesOf(imported.station, asked);
    imported.warnings = warningsOf(facts, registry);
    return imported;
}

}  // namespace kvstation
