#include "kvstation/HiveImport.h"

#include <algorithm>

#include "kvstation/Errors.h"
#include "kvstation/HiveFacts.h"
#include "kvstation/ProductName.h"
#include "kvstation/Questions.h"
#include "kvstation/Stage.h"
#include "kvstation/Undescribed.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

// A round for each value that leads to another key, of which the module never follows more than a few.
constexpr int kMostRounds = 32;

// Keys come before those below them, so that each key's sub-keys stand in their own order.
simwin::RegistryTree copyKeys(HiveRegistry& registry, const KeyPaths& paths) {
    simwin::RegistryTree tree;
    for (const std::string& path : paths.byDepth())
        registry.copyKey(path, tree);
    return tree;
}

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

// The whole station, with what was asked of it alone.
simwin::Station asAsked(simwin::Station station, const Questions& questions) {
    station.registry = simwin::RegistryTree();
    questions.registry().describe(station);
    std::erase_if(station.environment,
                  [&](const simwin::Variable& variable) { return !questions.hasAskedVariable(variable.name); });
    return station;
}

std::vector<std::string> linesOf(const HiveFacts& facts, const Questions& questions, const HiveRegistry& registry) {
    std::vector<std::string> lines = undescribed(facts.station, questions, registry.missingRoots());
    if (!facts.knowsOemCodePage)
        lines.emplace_back("codePages.oem          the OEM code page; 437 stands in its place");
    return lines;
}

std::vector<std::string> warningsOf(const HiveFacts& facts, const HiveRegistry& registry) {
    std::vector<std::string> lines;
    for (const std::string& file : registry.dirtyFiles())
        lines.push_back(file + " was not written to its end; what Windows kept in the log beside it is missing");
    if (!facts.ansiCodePage.empty() && facts.ansiCodePage != std::to_string(simwin::kAnsiCodePage))
        lines.push_back("this Windows has the ANSI code page " + facts.ansiCodePage +
                        "; a station has 1252, which turns other characters into \"?\"");
    return lines;
}

}  // namespace

ImportedStation importStation(HiveRegistry& registry) {
    HiveFacts facts = factsOf(registry);
    simwin::Station& whole = facts.station;
    whole.description = descriptionOf(facts);
    KeyPaths known;
    for (int round = 0; round < kMostRounds; ++round) {
        whole.registry = copyKeys(registry, known);
        Questions questions;
        simwin::Machine machine(whole);
        machine.observe(&questions);
        const RecordBytes record = collectOn(machine);
        if (!known.add(questions.keys()))
            return {asAsked(whole, questions), record, linesOf(facts, questions, registry),
                    warningsOf(facts, registry)};
    }
    throw Failure("the hives lead from key to key without an end");
}

}  // namespace kvstation
