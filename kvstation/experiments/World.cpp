#include "kvstation/experiments/World.h"

#include <algorithm>
#include <utility>

#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/ReadError.h"

namespace kvstation {
namespace {

using simwin::equalNoCase;
using simwin::KeyId;
using simwin::MemberPath;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;

void exchange(Station& station, MembersChange& change) {
    std::swap(station, *change.other);
    std::swap(station.registry, change.other->registry);
}
void exchange(Station& station, ValuesChange& change) {
    station.registry.exchangeValues(change.key, change.values);
}
void exchange(Station& station, SubKeysChange& change) {
    station.registry.exchangeSubKeys(change.key, change.subKeys);
}
void exchange(Station& station, NameChange& change) {
    station.registry.exchangeName(change.key, change.name);
}

// Sets what the path leads to, or removes it for null; false when something on the way is no object.
bool put(Json& object, const MemberPath& path, Json content) {
    Json* place = &object;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        if (!place->is_object() || (!place->contains(path[i]) && content.is_null()))
            return false;
        place = &(*place)[path[i]];
        if (place->is_null())
            *place = Json::object();
    }
    if (!place->is_object())
        return false;
    if (content.is_null())
        return place->erase(path.back()) != 0;
    (*place)[path.back()] = std::move(content);
    return true;
}

// The member of that name, in any letter case where there is none of just that; null when there is none.
const std::string* nameIn(const Json& object, const std::string& name) {
    const std::string* found = nullptr;
    for (const auto& [one, value] : object.get_ref<const Json::object_t&>()) {
        if (one == name)
            return &one;
        if (found == nullptr && simwin::equalNoCaseInUtf8(one, name))
            found = &one;
    }
    return found;
}

// A file in the folder.
const std::string* fileIn(const Json& files, const std::string& folder) {
    for (const auto& [path, value] : files.get_ref<const Json::object_t&>())
        if (path.size() > folder.size() && path[folder.size()] == '\\' &&
            simwin::equalNoCaseInUtf8(path.substr(0, folder.size()), folder))
            return &path;
    return nullptr;
}

std::ptrdiff_t indexOf(const std::vector<RegistryValue>& values, std::string_view name) {
    const auto found =
        std::ranges::find_if(values, [&](const RegistryValue& value) { return equalNoCase(value.name, name); });
    return found - values.begin();
}

// The key, made with its parents and then kept from view by the change, which is then in force no more.
struct MadeKey {
    KeyId key;
    SubKeysChange appearance;  // makes it seen
};

MadeKey makeUnseen(RegistryTree& tree, const std::string& path) {
    std::string parent = path.substr(0, simwin::findCharacter(path, '\\'));
    std::size_t end = parent.size();
    for (std::size_t next = end; next != std::string::npos; next = simwin::findCharacter(path, '\\', end + 1)) {
        if (!tree.find(path.substr(0, next)))
            break;
        end = next;
        parent = path.substr(0, end);
    }
    const KeyId above = *tree.find(parent);
    std::vector<KeyId> before = tree.subKeys(above);
    const KeyId made = *tree.create(path);
    tree.exchangeSubKeys(above, before);
    return {made, {above, std::move(before)}};
}

}  // namespace

World::World(Station station)
    : m_station(std::make_shared<Station>(std::move(station))),
      m_shared(m_station),
      m_json(simwin::stationJson(*m_station)) {}

void World::toggle(Change& change) {
    std::visit([&](auto& one) { exchange(*m_station, one); }, change);
}

void World::make(std::vector<Change>& changes) {
    std::for_each(changes.begin(), changes.end(), [this](Change& change) { toggle(change); });
}

void World::unmake(std::vector<Change>& changes) {
    std::for_each(changes.rbegin(), changes.rend(), [this](Change& change) { toggle(change); });
}

const Json* World::find(const MemberPath& path) const {
    const Json* place = &m_json;
    for (const std::string& name : path) {
        if (!place->is_object() || !place->contains(name))
            return nullptr;
        place = &(*place)[name];
    }
    return place->is_null() ? nullptr : place;
}

MemberPath World::resolved(MemberPath path) const {
    const Json* place = &m_json;
    for (std::size_t i = 0; i < path.size() && place->is_object(); ++i) {
        const std::string* name = nameIn(*place, path[i]);
        if (name == nullptr && i == 1 && path.front() == "files")
            name = fileIn(*place, path[i]);
        if (name == nullptr)
            break;
        path[i] = *name;
        place = &(*place)[path[i]];
    }
    return path;
}

const Station& World::without(const std::string& member) {
    for (const auto& [name, station] : m_without)
        if (name == member)
            return station;
    Json members = m_json;
    members.erase(member);
    Station station;
    station.codePages.ansi = m_station->codePages.ansi;  // what all texts are in is no answer
    simwin::describe(station, members, "station.json");
    return m_without.emplace_back(member, std::move(station)).second;
}

std::optional<Change> World::withMember(const MemberPath& path, Json content) {
    Json members = Json::object();
    if (const auto top = m_json.find(path.front()); top != m_json.end())
        members[path.front()] = *top;
    if (!put(members, path, std::move(content)))
        return std::nullopt;
    auto other = std::make_shared<Station>(without(path.front()));
    try {
        simwin::describe(*other, members, "station.json");
    } catch (const simwin::ReadError&) {
        return std::nullopt;
    }
    return MembersChange{std::move(other)};
}

std::optional<Change> World::withMembers(const std::vector<std::pair<MemberPath, Json>>& contents) {
    Json members = m_json;
    for (const auto& [path, content] : contents)
        if (!put(members, path, content))
            return std::nullopt;
    auto other = std::make_shared<Station>();
    try {
        simwin::describe(*other, members, "station.json");
    } catch (const simwin::ReadError&) {
        return std::nullopt;
    }
    return MembersChange{std::move(other)};
}

std::optional<Change> World::withValue(const Place& place, RegistryValue value) {
    RegistryTree& tree = m_station->registry;
    const std::optional<KeyId> key = tree.find(place.key);
    if (!key)
        return std::nullopt;
    const bool isRenamed = !equalNoCase(value.name, place.value);
    if (isRenamed && tree.findValue(*key, value.name) != nullptr)
        return std::nullopt;
    if (isRenamed && tree.findValue(*key, place.value) != nullptr) {
        std::vector<RegistryValue> values = tree.values(*key);
        values[static_cast<std::size_t>(indexOf(values, place.value))] = std::move(value);
        return ValuesChange{*key, std::move(values)};
    }
    simwin::ListedValues values = tree.listedValues(*key);
    values.set(std::move(value));
    return ValuesChange{*key, std::move(values)};
}

std::optional<Change> World::withoutValue(const Place& place) {
    const std::optional<KeyId> key = registry().find(place.key);
    if (!key)
        return std::nullopt;
    std::vector<RegistryValue> values = registry().values(*key);
    const std::ptrdiff_t index = indexOf(values, place.value);
    if (index == std::ssize(values))
        return std::nullopt;
    values.erase(values.begin() + index);
    return ValuesChange{*key, std::move(values)};
}

std::optional<Change> World::withoutKey(const std::string& path) {
    const std::optional<KeyId> key = registry().find(path);
    if (!key || registry().parent(*key) == *key)
        return std::nullopt;
    const KeyId parent = registry().parent(*key);
    std::vector<KeyId> subKeys = registry().subKeys(parent);
    std::erase(subKeys, *key);
    return SubKeysChange{parent, std::move(subKeys)};
}

std::optional<Change> World::withoutFirst(const Place& place, std::size_t count) {
    const bool isValue = place.kind == Place::Kind::Value;
    const std::optional<KeyId> key = registry().find(place.key);
    if (!key)
        return std::nullopt;
    if (isValue) {
        const std::vector<RegistryValue>& values = registry().values(*key);
        if (values.size() < count)
            return std::nullopt;
        return ValuesChange{*key, std::vector(values.begin() + static_cast<std::ptrdiff_t>(count), values.end())};
    }
    const KeyId parent = registry().parent(*key);
    const std::vector<KeyId>& subKeys = registry().subKeys(parent);
    if (subKeys.size() < count)
        return std::nullopt;
    return SubKeysChange{parent, std::vector(subKeys.begin() + static_cast<std::ptrdiff_t>(count), subKeys.end())};
}

std::optional<Change> World::withKey(const std::string& path) {
    RegistryTree& tree = m_station->registry;
    if (simwin::holdsEmptyPiece(path) || !simwin::splitHive(path) || tree.find(path))
        return std::nullopt;
    return makeUnseen(tree, path).appearance;
}

std::optional<Change> World::withSubKeys(const std::string& path, const std::vector<std::string>& names) {
    RegistryTree& tree = m_station->registry;
    const std::optional<KeyId> key = tree.find(path);
    if (!key)
        return std::nullopt;
    std::vector<KeyId> before = tree.subKeys(*key);
    std::vector<KeyId> more = before;
    const std::string below = path + "\\";
    for (const std::string& name : names) {
        if (name.empty() || simwin::findCharacter(name, '\\') != std::string::npos || tree.find(*key, name))
            continue;
        const auto [spare, isNew] = m_spareKeys.try_emplace({*key, simwin::upperCase(name)});
        if (isNew)
            spare->second = *tree.create(below + name);
        if (std::ranges::find(more, spare->second) == more.end())
            more.push_back(spare->second);
    }
    if (more.size() == before.size())
        return std::nullopt;
    tree.exchangeSubKeys(*key, before);
    return SubKeysChange{*key, std::move(more)};
}

std::optional<Change> World::withKeyNamed(const std::string& path, const std::string& name) {
    const std::optional<KeyId> key = registry().find(path);
    if (!key || name.empty() || simwin::findCharacter(name, '\\') != std::string::npos)
        return std::nullopt;
    const std::optional<KeyId> other = registry().find(registry().parent(*key), name);
    if (other && *other != *key)
        return std::nullopt;
    return NameChange{*key, name};
}

}  // namespace kvstation
