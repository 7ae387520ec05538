#include "kvstation/capture/Completion.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "kvstation/experiments/World.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;

constexpr int kMostRounds = 16;
constexpr int kMostLevels = 64;  // of the way from key to key

// Members with an entry for each thing that others can be asked for, of which nobody can write down all.
const simwin::MemberPath kOpenEnded[] = {{"network", "hosts"}, {"network", "addresses"}, {"network", "arp"}};
// Members that are unknown as a whole when a part of them is.
const simwin::MemberPath kWholes[] = {{"drives"},  {"files"},          {"profile"},
                                      {"process"}, {"keyboard"},       {"network", "hosts"},
                                      {"version"}, {"network", "arp"}, {"network", "addresses"}};

bool isVariable(const Place& place) {
    return place.kind == Place::Kind::Member && place.member.front() == "environment";
}
bool isFile(const Place& place) {
    return place.kind == Place::Kind::Member && place.member.front() == "files";
}

// The member that is unknown when one that was asked for is.
Place rootOf(const Place& place) {
    for (const simwin::MemberPath& path : kWholes)
        if (place.member.size() > path.size() && std::equal(path.begin(), path.end(), place.member.begin()))
            return memberPlace(path);
    return place;
}

// With an entry for each thing that can be asked for, so that one entry says nothing of the others.
bool isMap(const Place& place) {
    return std::ranges::find(kOpenEnded, place.member) != std::end(kOpenEnded) || place.member.front() == "files" ||
           place.member.front() == "environment";
}

void addOnce(std::vector<std::string>& list, const std::string& text) {
    if (!text.empty() && std::ranges::find(list, text) == list.end())
        list.push_back(text);
}

// The places of names in a list, without regard to letter case; others stand behind them.
class NameOrder {
  public:
    void add(const std::string& name) { m_places.emplace(simwin::upperCase(name), m_places.size()); }
    std::size_t of(const std::string& name) const {
        const auto found = m_places.find(simwin::upperCase(name));
        return found != m_places.end() ? found->second : m_places.size();
    }

  private:
    std::map<std::string, std::size_t> m_places;
};

class Completer {
  public:
    Completer(Station& station, const AskedPlaces& asked, LocalState& state)
        : m_station(station), m_asked(asked), m_state(state) {}

    // Writes down what is new; false when nothing was.
    bool takeIn(const AskedPlaces& branches) {
        bool isNew = false;
        for (const auto& [id, one] : branches.all())
            isNew = takeMember(one.place) || takeKey(one.place) || isNew;
        putGrownInOrder();
        m_branches.add(branches);
        return isNew;
    }

    bool takeMembers(const std::vector<Place>& places) {
        bool isNew = false;
        for (const Place& place : places)
            isNew = takeMember(place) || isNew;
        return isNew;
    }

    bool takeKeys(const std::vector<Place>& places) {
        bool isNew = false;
        for (const Place& place : places)
            isNew = takeKey(place) || isNew;
        putGrownInOrder();
        return isNew;
    }

    void listUnknown() {
        const World described = members();
        const auto isDescribed = [&](const Place& place) {
            return described.find(described.resolved(place.member)) != nullptr;
        };
        for (const auto& [id, one] : m_branches.all()) {
            const Place root = rootOf(one.place);
            if (isMember(one.place) && !m_asked.holds(one.place) && !isDescribed(one.place) &&
                (!isDescribed(root) || isMap(root)))
                addOnce(m_station.unknown, nameOf(root));
        }
        for (const simwin::MemberPath& path : kOpenEnded)
            addOnce(m_station.unknown, nameOf(memberPlace(path)));
        for (const auto& [id, one] : m_asked.all())
            if (isMember(one.place) && !isDescribed(one.place) && isListedAsUnknown(one.place))
                m_station.absent.push_back(one.place.member);
    }

    const AskedPlaces& branches() const { return m_branches; }

  private:
    bool isMember(const Place& place) const {
        if (place.kind == Place::Kind::Member && (isVariable(place) || isFile(place)))
            return !m_state.knows(place);
        return place.kind == Place::Kind::Member && place.member.front() != "fails";
    }
    bool isListedAsUnknown(const Place& place) const {
        return std::ranges::any_of(m_station.unknown, [&](const std::string& root) { return isBelow(place, root); });
    }

    // The station's members alone, to look for what is described.
    World members() const {
        Station copy = m_station;
        copy.registry = RegistryTree();
        return World(std::move(copy));
    }

    bool takeMember(const Place& place) {
        return (isVariable(place) && takeVariable(place)) || (isFile(place) && takeFile(place));
    }
    bool takeKey(const Place& place) { return place.isInRegistry() && takeFromRegistry(place); }

    void putGrownInOrder() {
        for (const std::string& path : std::exchange(m_grown, {}))
            putInOrder(path);
    }

    bool takeVariable(const Place& place) {
        const std::string name = simwin::fromUtf8Leniently(place.member.back());
        const auto isSame = [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); };
        const std::optional<std::string> value = m_state.variable(name);
        if (!value || std::ranges::any_of(m_station.environment, isSame))
            return false;
        m_station.environment.push_back({name, *value});
        return true;
    }

    bool takeFile(const Place& place) {
        const std::string path = simwin::fromUtf8Leniently(place.member.back());
        const auto isSame = [&](const simwin::File& one) { return simwin::equalNoCase(one.path, path); };
        std::optional<simwin::File> file = m_state.file(path);
        if (!file || std::ranges::any_of(m_station.files, isSame))
            return false;
        m_station.files.push_back(std::move(*file));
        return true;
    }

    bool takeFromRegistry(const Place& place) {
        RegistryTree found;
        const bool isThere = m_state.copyKey(place.key, found);
        const std::optional<KeyId> key = isThere ? found.find(place.key) : std::nullopt;
        if (!key)
            return false;
        const std::string path = found.path(*key);
        bool isNew = describeKey(path);
        if (place.kind == Place::Kind::EndOfKeys)
            for (const KeyId subKey : found.subKeys(*key))
                isNew = describeKey(found.path(subKey)) || isNew;
        for (const RegistryValue& value : found.values(*key))
            if (place.kind == Place::Kind::EndOfValues ||
                (place.kind == Place::Kind::Value && simwin::equalNoCase(value.name, place.value)))
                isNew = takeValue(path, value) || isNew;
        return isNew;
    }

    bool describeKey(const std::string& path) {
        const std::size_t before = m_station.registry.size();
        if (!m_station.registry.create(path) || m_station.registry.size() == before)
            return false;
        for (std::string_view parent = simwin::withoutLastPiece(path); !parent.empty();
             parent = simwin::withoutLastPiece(parent))
            m_grown.insert(std::string(parent));
        return true;
    }

    // One of which no more than name, type or size were told so far has NULs for data.
    bool takeValue(const std::string& path, const RegistryValue& value) {
        const std::optional<KeyId> key = m_station.registry.find(path);
        const RegistryValue* known = key ? m_station.registry.findValue(*key, value.name) : nullptr;
        const bool isTold = known != nullptr && known->bytes.find_first_not_of('\0') != std::string::npos;
        if (!key || isTold || (known != nullptr && known->bytes == value.bytes))
            return false;
        m_station.registry.set(*key, value);
        m_grown.insert(path);
        return true;
    }

    // Names stand in the order in which the machine lists them, whenever they were written down.
    void putInOrder(const std::string& path) {
        RegistryTree machine;
        if (!m_state.copyKey(path, machine) || !machine.find(path) || !m_station.registry.find(path))
            return;
        orderSubKeys(*m_station.registry.find(path), machine, *machine.find(path));
        orderValues(*m_station.registry.find(path), machine, *machine.find(path));
    }

    void orderSubKeys(KeyId key, const RegistryTree& machine, KeyId there) {
        NameOrder order;
        for (const KeyId subKey : machine.subKeys(there))
            order.add(machine.name(subKey));
        std::vector<KeyId> subKeys = m_station.registry.subKeys(key);
        std::ranges::stable_sort(subKeys, {}, [&](KeyId one) { return order.of(m_station.registry.name(one)); });
        m_station.registry.exchangeSubKeys(key, subKeys);
    }

    void orderValues(KeyId key, const RegistryTree& machine, KeyId there) {
        NameOrder order;
        for (const RegistryValue& value : machine.values(there))
            order.add(value.name);
        std::vector<RegistryValue> values = m_station.registry.values(key);
        std::ranges::stable_sort(values, {}, [&](const RegistryValue& one) { return order.of(one.name); });
        simwin::ListedValues ordered(std::move(values));
        m_station.registry.exchangeValues(key, ordered);
    }

    Station& m_station;
    const AskedPlaces& m_asked;
    LocalState& m_state;
    AskedPlaces m_branches;
    std::set<std::string> m_grown;  // keys with new names
};

}  // namespace

AskedPlaces complete(Station& station, const AskedPlaces& asked, LocalState& state, const Collector& collector,
                     Reach reach) {
    Completer completer(station, asked, state);
    const auto follow = [&](auto askedByRuns) {
        for (int step = 0; step < kMostLevels && completer.takeIn(askedByRuns(station, collector)); ++step) {
        }
    };
    follow(askedOnce);
    for (int round = 0; reach == Reach::AllBranches && round < kMostRounds; ++round) {
        follow(askedByVersions);
        // An experiment finds what it asks of the registry at once, what else there is in the next round.
        bool hasMoreMembers = false;
        completer.takeIn(askedInBranches(station, collector, [&](const std::vector<Place>& places, Station& world) {
            hasMoreMembers = completer.takeMembers(places) || hasMoreMembers;
            completer.takeKeys(places);
            return Completer(world, asked, state).takeKeys(places);
        }));
        if (!hasMoreMembers)
            break;
    }
    completer.listUnknown();
    return completer.branches();
}

}  // namespace kvstation
