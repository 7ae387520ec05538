#include "kvstation/experiments/Alternatives.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>

#include "kvstation/experiments/OtherTexts.h"
#include "simwin/station/JsonView.h"
#include "simwin/station/TextForms.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::MemberPath;
using simwin::RegistryType;
using simwin::RegistryValue;

constexpr std::size_t kMostLeaves = 64;
constexpr std::uint64_t kSmallNumbers = 17;  // kinds, levels and versions are among them
constexpr std::string_view kNewName = "Another7";

std::string lastName(const Place& place) {
    return std::string(simwin::lastPiece(place.key));
}

// Three that differ in every way of rounding, and behind them small ones.
std::vector<std::uint64_t> otherNumbers(std::uint64_t number) {
    std::vector<std::uint64_t> others = {number / 2, number * 2 + 1, number * 3 + 2, number + 1};
    for (std::uint64_t small = 0; small < kSmallNumbers; ++small)
        others.push_back(small);
    return others;
}

class Maker {
  public:
    Maker(World& world, const Place& place, std::string_view samples)
        : m_world(world), m_place(place), m_samples(samples) {}

    std::vector<Alternative> make() {
        switch (m_place.kind) {
            case Place::Kind::None:
                break;
            case Place::Kind::Member:
                member();
                break;
            case Place::Kind::Item:
                item();
                break;
            case Place::Kind::Key:
                key();
                break;
            case Place::Kind::Value:
                value();
                break;
            case Place::Kind::EndOfKeys:
                moreKeys();
                break;
            case Place::Kind::EndOfValues:
                moreValues();
                break;
        }
        return std::move(m_made);
    }

  private:
    Alternative* add(std::optional<Change> change) {
        if (!change)
            return nullptr;
        m_made.emplace_back();
        m_made.back().changes.push_back(std::move(*change));
        return &m_made.back();
    }
    void addAbsence(std::optional<Change> change) {
        if (Alternative* made = add(std::move(change)))
            made->isAbsence = true;
    }
    void addReplacement(std::optional<Change> change, Replacement replacement, int series = 0, bool isNumber = false) {
        if (Alternative* made = add(std::move(change))) {
            made->replacement = std::move(replacement);
            made->series = series;
            made->isNumber = isNumber;
        }
    }

    void member() {
        const Json* content = m_world.find(m_place.member);
        if (content != nullptr) {
            addAbsence(m_world.withMember(m_place.member, nullptr));
            MemberPath path = m_place.member;
            leaves(*content, path);
        }
        const Json samples = m_samples.empty() ? Json::array() : Json::parse(m_samples);
        for (const Json& sample : samples)
            if (content == nullptr || sample != *content)
                add(m_world.withMember(m_place.member, sample));
    }

    void leaves(const Json& content, MemberPath& path) {
        if (content.is_object()) {
            for (const auto& [name, one] : content.items()) {
                path.push_back(name);
                leaves(one, path);
                add(m_world.withMember(path, nullptr));
                path.pop_back();
            }
        } else if (content.is_array()) {
            list(content, path);
        } else if (++m_leaves <= kMostLeaves) {
            leaf(content, [&](Json other) { return m_world.withMember(path, std::move(other)); });
        }
    }

    void list(const Json& content, const MemberPath& path) {
        for (std::size_t i = 0; i < content.size() && ++m_leaves <= kMostLeaves; ++i) {
            Json shorter = content;
            shorter.erase(i);
            add(m_world.withMember(path, std::move(shorter)));
            listed(content, content[i], path, [i](Json& whole) -> Json& { return whole[i]; });
        }
    }

    // A list's item, or what lies in it: `find` gives its place in a copy of the list.
    void listed(const Json& whole, const Json& content, const MemberPath& path,
                const std::function<Json&(Json& list)>& find) {
        if (content.is_object()) {
            for (const auto& part : content.items())
                listed(whole, part.value(), path, [&](Json& list) -> Json& { return find(list)[part.key()]; });
            return;
        }
        leaf(content, [&](Json other) {
            Json changed = whole;
            find(changed) = std::move(other);
            return m_world.withMember(path, std::move(changed));
        });
    }

    template <class With>
    void leaf(const Json& content, With with) {
        if (content.is_string()) {
            const std::string before = simwin::fromUtf8Leniently(content.get<std::string>());
            const std::string after = sameShape(before);
            addReplacement(with(simwin::toUtf8(after)), {before, after});
            add(with(""));
            addReplacement(with(simwin::toUtf8(before + "0")), {before, before + "0"});
        } else if (content.is_boolean()) {
            add(with(!content.get<bool>()));
        } else if (content.is_number_integer()) {
            number(content.get<std::uint64_t>(), with);
        }
    }

    template <class With>
    void number(std::uint64_t before, With with) {
        ++m_series;
        std::size_t count = 0;
        for (const std::uint64_t after : otherNumbers(before)) {
            const int series = count++ < kSeriesLength ? m_series : 0;
            if (after != before)
                addReplacement(with(after), {std::to_string(before), std::to_string(after)}, series, true);
        }
    }

    // Off the list where it is on it, else on it. What is on it is missing or denied.
    void item() {
        const Json* list = m_world.find(m_place.member);
        Json items = list != nullptr ? *list : Json::array();
        const std::string name = simwin::fromUtf8Leniently(m_place.value);
        const auto isIt = [&](const Json& item) {
            return simwin::equalNoCase(simwin::readText(simwin::JsonView(item, "station.json", "")), name);
        };
        const auto found = std::ranges::find_if(items, isIt);
        const bool wasListed = found != items.end();
        if (wasListed)
            items.erase(found);
        else
            items.push_back(m_place.value);
        std::optional<Change> change = m_world.withMember(m_place.member, std::move(items));
        if (wasListed)
            add(std::move(change));
        else
            addAbsence(std::move(change));
    }

    void key() {
        if (!m_world.registry().find(m_place.key)) {
            add(m_world.withKey(m_place.key));
            return;
        }
        addAbsence(m_world.withoutKey(m_place.key));
        if (!m_place.isListed)
            return;
        const std::string before = lastName(m_place);
        const std::string after = sameShape(before);
        addReplacement(m_world.withKeyNamed(m_place.key, after), {before, after});
    }

    void moreKeys() { add(m_world.withSubKeys(m_place.key, {std::string(kNewName)})); }

    void moreValues() {
        add(m_world.withValue({.key = m_place.key, .value = std::string(kNewName)},
                              simwin::textValue(kNewName, kNewName)));
    }

    const RegistryValue* present() const {
        const std::optional<simwin::KeyId> found = m_world.registry().find(m_place.key);
        return found ? m_world.registry().findValue(*found, m_place.value) : nullptr;
    }

    void value() {
        const RegistryValue* found = present();
        if (found == nullptr)
            return newData();
        const RegistryValue before = *found;
        addAbsence(m_world.withoutValue(m_place));
        otherData(before);
        if (m_place.isListed)
            otherName(before);
    }

    void otherData(const RegistryValue& before) {
        RegistryValue other = before;
        if (static_cast<RegistryType>(before.type) == RegistryType::DWord && before.bytes.size() == 4) {
            std::uint32_t number = 0;
            for (std::size_t i = before.bytes.size(); i-- > 0;)
                number = number << 8 | static_cast<unsigned char>(before.bytes[i]);
            this->number(number, [&](std::uint64_t after) {
                return m_world.withValue(m_place, simwin::dwordValue(before.name, static_cast<std::uint32_t>(after)));
            });
        }
        other.bytes = sameShape(before.bytes);
        addReplacement(m_world.withValue(m_place, other), {before.bytes, other.bytes});
        other.bytes = isText(before) ? std::string(1, '\0') : std::string();
        add(m_world.withValue(m_place, other));
        const std::string text = before.bytes.substr(0, before.bytes.find('\0'));
        other.bytes = text + "0" + std::string(before.bytes.substr(text.size()));
        addReplacement(m_world.withValue(m_place, other), {before.bytes, other.bytes});
        other = before;
        other.type = static_cast<std::uint32_t>(isText(before) ? RegistryType::Binary : RegistryType::Text);
        add(m_world.withValue(m_place, other));
    }

    void otherName(const RegistryValue& before) {
        RegistryValue other = before;
        other.name = sameShape(before.name);
        addReplacement(m_world.withValue(m_place, other), {before.name, other.name});
    }

    void newData() {
        const std::string& name = m_place.value;
        add(m_world.withValue(m_place, simwin::textValue(name, kNewName)));
        add(m_world.withValue(m_place, simwin::dwordValue(name, 1)));
        add(m_world.withValue(m_place, simwin::multiTextValue(name, {std::string(kNewName)})));
        add(m_world.withValue(m_place, simwin::binaryValue(name, kNewName)));
    }

    World& m_world;
    const Place& m_place;
    std::string_view m_samples;
    std::vector<Alternative> m_made;
    std::size_t m_leaves = 0;
    int m_series = 0;
};

}  // namespace

std::vector<Alternative> alternativesAt(World& world, const Place& place, std::string_view samples) {
    return Maker(world, place, samples).make();
}

std::vector<Alternative> alternativesOf(World& world, std::span<const Place> listed) {
    const bool areValues = listed.front().kind == Place::Kind::Value;
    const std::string& first = listed.front().key;
    const simwin::RegistryTree& tree = world.registry();
    const std::optional<simwin::KeyId> key = tree.find(areValues ? first : simwin::withoutLastPiece(first));
    if (!key)
        return {};
    std::set<std::string> names;
    for (const Place& place : listed)
        names.insert(simwin::upperCase(areValues ? place.value : lastName(place)));
    const auto isListed = [&](const std::string& name) { return names.contains(simwin::upperCase(name)); };
    std::vector<Alternative> made(2);
    made[0].isAbsence = true;
    if (areValues) {
        std::vector<RegistryValue> fewer = tree.values(*key);
        std::vector<RegistryValue> others = fewer;
        std::erase_if(fewer, [&](const RegistryValue& one) { return isListed(one.name); });
        for (RegistryValue& one : others)
            if (isListed(one.name))
                one = {sameShape(one.name), one.type, sameShape(one.bytes)};
        made[0].changes.emplace_back(ValuesChange{*key, std::move(fewer)});
        made[1].changes.emplace_back(ValuesChange{*key, std::move(others)});
        return made;
    }
    std::vector<simwin::KeyId> fewer = tree.subKeys(*key);
    std::erase_if(fewer, [&](simwin::KeyId one) { return isListed(tree.name(one)); });
    made[0].changes.emplace_back(SubKeysChange{*key, std::move(fewer)});
    for (const Place& place : listed)
        if (std::optional<Change> change = world.withKeyNamed(place.key, sameShape(lastName(place))))
            made[1].changes.push_back(std::move(*change));
    return made;
}

}  // namespace kvstation
