#include "kvstation/cause/UnknownSources.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <utility>

#include "kvstation/calls/CallRows.h"
#include "kvstation/cause/UnansweredText.h"
#include "kvstation/experiments/Branches.h"
#include "kvstation/experiments/Words.h"
#include "kvstation/experiments/World.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::Station;

constexpr int kMostSteps = 12;  // from one supposed answer to the questions that follow from it
constexpr std::size_t kVariants = 4;
constexpr const char* kSupposed = "Another7";

struct Asked {
    Place place;
    std::string_view samples;
};

// What a run asks that no run before it did.
struct Run {
    RecordBytes record{};
    std::vector<Asked> asked;
};

Run runWith(const std::shared_ptr<const Station>& station, const Collector& collector) {
    simwin::AskedQuestions questions(isQuestion);
    simwin::Machine machine(station);
    machine.noteQuestions(&questions);
    Run run{.record = runOn(collector, machine).record, .asked = {}};
    for (const simwin::ObservedCall& call : questions.takeNew()) {
        const CallRow* row = findQuestion(call.name);
        run.asked.push_back({row->asks.place(call), row->asks.samples});
    }
    return run;
}

simwin::RegistryValue supposedValue(const std::string& name, std::size_t variant) {
    switch (variant) {
        case 0:
            return simwin::textValue(name, kSupposed);
        case 1:
            return simwin::dwordValue(name, 1);
        case 2:
            return simwin::textValue(name, "1");
        default:
            return simwin::multiTextValue(name, {kSupposed});
    }
}

class Search {
  public:
    Search(const Station& station, const Collector& collector, std::span<const std::size_t> fieldNumbers)
        : m_station(station),
          m_collector(collector),
          m_fields(fieldNumbers),
          m_base(runWith(std::make_shared<const Station>(station), collector)),
          m_sources(fieldNumbers.size()) {
        for (const Asked& one : m_base.asked)
            m_askedAtFirst.insert(one.place.id());
    }

    void suppose(const std::string& root) {
        if (std::ranges::none_of(m_base.asked, [&](const Asked& one) { return isBelow(one.place, root); }))
            return;
        std::vector<Place> values;
        Station first = supposeAll(root, 0, values);
        for (std::size_t variant = 1; variant < kVariants; ++variant)
            supposeAll(root, variant, values);
        if (!values.empty())
            tryWords(root, std::move(first), values);
    }

    std::vector<std::vector<std::string>> sources() && {
        std::vector<std::vector<std::string>> all;
        for (const std::set<std::string>& one : m_sources)
            all.emplace_back(one.begin(), one.end());
        return all;
    }

  private:
    // Answers step by step what is asked below the root, and what else nobody knows that is asked only then. `values`
    // get the places of registry values among that.
    Station supposeAll(const std::string& root, std::size_t variant, std::vector<Place>& values) {
        Station supposed = m_station;
        std::set<std::string> roots = {root};
        std::vector<std::string> lists;  // that got a key which the last run may have passed over
        for (int step = 0; step < kMostSteps; ++step) {
            World world(supposed);
            const Run run = runWith(world.station(), m_collector);
            note(run, roots);
            std::vector<std::pair<simwin::MemberPath, Json>> members;
            bool isNew = addWords(supposed.registry, run, std::exchange(lists, {}));
            for (const Asked& one : run.asked) {
                const std::optional<std::string> entry = entryOf(world, one.place, root);
                if (!entry || (one.place.kind == Place::Kind::Member && !addMember(one, variant, members)))
                    continue;
                if (one.place.isInRegistry() && !describe(supposed.registry, one.place, variant))
                    continue;
                if (one.place.kind == Place::Kind::Value && variant == 0)
                    values.push_back(one.place);
                if (one.place.kind == Place::Kind::EndOfKeys)
                    lists.push_back(one.place.key);
                roots.insert(*entry);
                isNew = true;
            }
            if (!isNew)
                break;
            putMembers(world, members, supposed);
        }
        return supposed;
    }

    // The entry that makes the place unknown, where it is to be supposed.
    std::optional<std::string> entryOf(const World& world, const Place& place, const std::string& root) const {
        const bool isList = place.kind == Place::Kind::EndOfKeys || place.kind == Place::Kind::EndOfValues;
        if (!isList && !isUnknown(world, place))
            return std::nullopt;
        if (isBelow(place, root))
            return root;
        const auto entry =
            std::ranges::find_if(m_station.unknown, [&](const std::string& one) { return isBelow(place, one); });
        return entry != m_station.unknown.end() && !m_askedAtFirst.contains(place.id()) ? std::optional(*entry)
                                                                                        : std::nullopt;
    }

    static bool addMember(const Asked& one, std::size_t variant,
                          std::vector<std::pair<simwin::MemberPath, Json>>& members) {
        const Json samples = one.samples.empty() ? Json::array() : Json::parse(one.samples);
        if (samples.empty())
            return false;
        members.emplace_back(one.place.member, samples[variant % samples.size()]);
        return true;
    }

    // False when it stands there already.
    static bool describe(RegistryTree& tree, const Place& place, std::size_t variant) {
        const std::size_t before = tree.size();
        switch (place.kind) {
            case Place::Kind::Key:
                tree.create(place.key);
                return tree.size() != before;
            case Place::Kind::EndOfKeys:
                if (!tree.subKeys(*tree.create(place.key)).empty())
                    return false;
                tree.create(place.key + "\\" + kSupposed);
                return true;
            case Place::Kind::EndOfValues:
                if (!tree.values(*tree.create(place.key)).empty())
                    return false;
                tree.set(place.key, simwin::textValue(kSupposed, kSupposed));
                return true;
            default:
                tree.set(place.key, supposedValue(place.value, variant));
                return true;
        }
    }

    // Of a list whose key was not opened, the names may be compared with words.
    static bool addWords(RegistryTree& tree, const Run& run, const std::vector<std::string>& lists) {
        bool isNew = false;
        for (const std::string& list : lists) {
            const std::string below = list + "\\";
            const std::string supposed = below + kSupposed;
            if (std::ranges::any_of(run.asked, [&](const Asked& one) {
                    return !one.place.isListed && simwin::equalNoCase(one.place.key, supposed);
                }))
                continue;
            for (const std::string& word : wordsFor({}))
                if (simwin::findCharacter(word, '\\') == std::string_view::npos)
                    tree.create(below + word);
            isNew = true;
        }
        return isNew;
    }

    static void putMembers(World& world, const std::vector<std::pair<simwin::MemberPath, Json>>& members,
                           Station& supposed) {
        std::optional<Change> change = members.empty() ? std::nullopt : world.withMembers(members);
        if (!change)
            return;
        world.toggle(*change);
        RegistryTree registry = std::move(supposed.registry);
        supposed = *world.station();
        supposed.registry = std::move(registry);
    }

    // What is compared with a word is nothing but by the word.
    void tryWords(const std::string& root, Station supposed, const std::vector<Place>& values) {
        const std::vector<std::string> words = wordsFor({});
        const auto station = std::make_shared<Station>(std::move(supposed));
        for (std::size_t turn = 0; turn < words.size(); ++turn) {
            for (std::size_t i = 0; i < values.size(); ++i)
                station->registry.set(values[i].key,
                                      simwin::textValue(values[i].value, words[(turn + i) % words.size()]));
            simwin::Machine machine(station);
            note({.record = runOn(m_collector, machine).record, .asked = {}}, {root});
        }
    }

    void note(const Run& run, const std::set<std::string>& roots) {
        const std::vector<std::size_t> differing = differingFields(m_base.record, run.record);
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            if (std::ranges::binary_search(differing, m_fields[i]) && !isToldBy(m_sources[i], roots))
                m_sources[i].insert(roots.begin(), roots.end());
    }

    // What came with one of them later is not what the field hangs on.
    static bool isToldBy(const std::set<std::string>& sources, const std::set<std::string>& roots) {
        return std::ranges::any_of(roots, [&](const std::string& root) { return sources.contains(root); });
    }

    const Station& m_station;
    const Collector& m_collector;
    std::span<const std::size_t> m_fields;
    Run m_base;
    std::set<std::string> m_askedAtFirst;
    std::vector<std::set<std::string>> m_sources;
};

}  // namespace

std::vector<std::vector<std::string>> unknownSources(const Station& station, const Collector& collector,
                                                     std::span<const std::size_t> fieldNumbers) {
    Search search(station, collector, fieldNumbers);
    if (!fieldNumbers.empty())
        for (const std::string& root : station.unknown)
            search.suppose(root);
    return std::move(search).sources();
}

}  // namespace kvstation
