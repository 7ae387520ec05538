#include "kvstation/experiments/Words.h"

#include <algorithm>
#include <map>
#include <set>

#include "kvstation/calls/CallRows.h"
#include "kvstation/experiments/OtherTexts.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryType;
using simwin::RegistryValue;

constexpr std::size_t kLongestJoined = 60;

// A text as the value before has texts; of none, a plain one.
RegistryValue textLike(const RegistryValue* before, const std::string& name, const std::string& word) {
    if (before != nullptr && static_cast<RegistryType>(before->type) == RegistryType::MultiText)
        return simwin::multiTextValue(name, {word});
    RegistryValue made = simwin::textValue(name, word);
    if (before != nullptr)
        made.type = before->type;
    return made;
}

auto valueNamed(std::vector<RegistryValue>& values, std::string_view name) {
    return std::ranges::find_if(values,
                                [&](const RegistryValue& value) { return simwin::equalNoCase(value.name, name); });
}

class Words {
  public:
    explicit Words(World& world) : m_world(world) {}

    void put(const PlacedWord& one) {
        const Place& place = *one.place;
        switch (place.kind) {
            case Place::Kind::Member:
                m_members.emplace_back(place.member, simwin::toUtf8(*one.word));
                break;
            case Place::Kind::Value:
            case Place::Kind::EndOfValues:
                putValue(place, *one.word);
                break;
            case Place::Kind::Key:
                add(m_world.withKeyNamed(place.key, *one.word));
                break;
            case Place::Kind::EndOfKeys:
                m_subKeys[place.key].push_back(*one.word);
                break;
            case Place::Kind::None:
            case Place::Kind::Item:
                break;
        }
    }

    std::vector<Change> changes() {
        for (auto& [key, values] : m_values)
            m_changes.emplace_back(ValuesChange{key, std::move(values)});
        for (const auto& [key, names] : m_subKeys)
            add(m_world.withSubKeys(key, names));
        putMembers(m_members);
        return std::move(m_changes);
    }

  private:
    void add(std::optional<Change> change) {
        if (change)
            m_changes.push_back(std::move(*change));
    }

    // Without those whose place can hold no such text.
    void putMembers(std::vector<std::pair<simwin::MemberPath, Json>> members) {
        while (!members.empty()) {
            if (std::optional<Change> change = m_world.withMembers(members))
                return m_changes.push_back(std::move(*change));
            std::erase_if(members, [&](const auto& one) { return !m_world.withMember(one.first, one.second); });
        }
    }

    void putValue(const Place& place, const std::string& word) {
        const std::optional<KeyId> key = m_world.registry().find(place.key);
        if (!key)
            return;
        const auto [found, isNew] = m_values.try_emplace(*key);
        std::vector<RegistryValue>& values = found->second;
        if (isNew)
            values = m_world.registry().values(*key);
        const auto before = valueNamed(values, place.value);
        if (place.kind == Place::Kind::EndOfValues) {
            if (valueNamed(values, word) == values.end())
                values.push_back(simwin::textValue(word, word));
        } else if (before == values.end()) {
            values.push_back(simwin::textValue(place.value, word));
        } else {
            *before = textLike(&*before, before->name, word);
            if (place.isListed && valueNamed(values, word) == values.end())
                before->name = word;
        }
    }

    World& m_world;
    std::vector<Change> m_changes;
    std::map<KeyId, std::vector<RegistryValue>> m_values;
    std::map<std::string, std::vector<std::string>> m_subKeys;
    std::vector<std::pair<simwin::MemberPath, Json>> m_members;
};

void addTexts(AskedNames& names, const simwin::ObservedCall& call) {
    for (const simwin::Fact& fact : call.parameters)
        if (std::holds_alternative<std::string>(fact))
            names.emplace(simwin::textOf(fact));
}

}  // namespace

// What the module compares an answer with is no name that it asks for.
void addNames(AskedNames& names, const std::vector<AskedCall>& calls) {
    for (const AskedCall& one : calls)
        if (findQuestion(one.call.name) != nullptr)
            addTexts(names, one.call);
}

std::vector<std::string> wordsFor(const AskedNames& asked) {
    std::vector<std::string> words;
    std::string joined;
    for (const std::string_view word : moduleWords()) {
        if (asked.contains(word))
            continue;
        words.emplace_back(word);
        if (joined.size() + word.size() > kLongestJoined)
            words.push_back(std::exchange(joined, {}));
        joined += (joined.empty() ? "" : " ") + std::string(word);
    }
    words.push_back(std::move(joined));
    for (char digit = '0'; digit <= '9'; ++digit)
        words.emplace_back(1, digit);
    return words;
}

bool takesWord(const World& world, const Place& place, std::string_view samples) {
    switch (place.kind) {
        case Place::Kind::Member: {
            if (const Json* content = world.find(place.member))
                return content->is_string() || (content->is_object() && content->contains("hex"));
            const Json sample = samples.empty() ? Json() : Json::parse(samples);
            return !sample.empty() && sample.front().is_string();
        }
        case Place::Kind::Value: {
            const std::optional<KeyId> key = world.registry().find(place.key);
            const RegistryValue* value = key ? world.registry().findValue(*key, place.value) : nullptr;
            return key && (value == nullptr || isText(*value) || place.isListed);
        }
        case Place::Kind::Key:
            return place.isListed;
        case Place::Kind::EndOfKeys:
        case Place::Kind::EndOfValues:
            return true;
        case Place::Kind::None:
        case Place::Kind::Item:
            break;
    }
    return false;
}

std::vector<Change> withWords(World& world, std::span<const PlacedWord> words) {
    Words made(world);
    for (const PlacedWord& one : words)
        made.put(one);
    return made.changes();
}

}  // namespace kvstation
