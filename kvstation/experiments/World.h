// A described station that can be changed and changed back, for experiments.
#pragma once

#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kvstation/calls/Place.h"
#include "simwin/station/Station.h"

namespace kvstation {

using Json = nlohmann::ordered_json;

// What stands in the other's place while a change is in force; the change then holds what stood there before.
struct MembersChange {
    std::shared_ptr<simwin::Station> other;  // its registry is not heeded
};
struct ValuesChange {
    simwin::KeyId key;
    simwin::ListedValues values;
};
struct SubKeysChange {
    simwin::KeyId key;
    std::vector<simwin::KeyId> subKeys;
};
struct NameChange {
    simwin::KeyId key;
    std::string name;
};
using Change = std::variant<MembersChange, ValuesChange, SubKeysChange, NameChange>;

class World {
  public:
    explicit World(simwin::Station station);

    // The station as it is now; it changes with every change that is made or unmade.
    const std::shared_ptr<const simwin::Station>& station() const { return m_shared; }
    const simwin::RegistryTree& registry() const { return m_station->registry; }
    // To write more keys and values into, while no change is in force.
    simwin::Station& described() { return *m_station; }
    // Its station.json, as it was at first.
    const Json& json() const { return m_json; }

    // Makes a change, or unmakes it when it is in force. Changes are unmade in the reverse order of their making.
    void toggle(Change& change);
    void make(std::vector<Change>& changes);
    void unmake(std::vector<Change>& changes);

    // Null when nothing is described there.
    const Json* find(const simwin::MemberPath& path) const;
    // In the letter case in which the file has the names, where it has them; of a folder a file in it.
    simwin::MemberPath resolved(simwin::MemberPath path) const;

    // The station with something else in a member's place; none when no station can hold that. Null: nothing.
    std::optional<Change> withMember(const simwin::MemberPath& path, Json content);

    // The same of several places.
    std::optional<Change> withMembers(const std::vector<std::pair<simwin::MemberPath, Json>>& contents);

    std::optional<Change> withValue(const Place& place, simwin::RegistryValue value);
    std::optional<Change> withoutValue(const Place& place);
    std::optional<Change> withoutKey(const std::string& path);
    // Without the first names of the list that the place is in; none when it has fewer.
    std::optional<Change> withoutFirst(const Place& place, std::size_t count);
    std::optional<Change> withKey(const std::string& path);  // an empty one, that is not there yet
    // The key with more empty ones in it, behind its own: those that it does not have yet.
    std::optional<Change> withSubKeys(const std::string& path, const std::vector<std::string>& names);
    std::optional<Change> withKeyNamed(const std::string& path, const std::string& name);

  private:
    const simwin::Station& without(const std::string& member);

    std::shared_ptr<simwin::Station> m_station;
    std::shared_ptr<const simwin::Station> m_shared;
    Json m_json;
    // Sub-keys that were made for a change and that no key lists while none is in force, by their names in upper case.
    std::map<std::pair<simwin::KeyId, std::string>, simwin::KeyId> m_spareKeys;
    std::vector<std::pair<std::string, simwin::Station>> m_without;  // without one member each, and without registry
};

}  // namespace kvstation
