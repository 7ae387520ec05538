#include "tests/kvstation/cause/PlaceEdits.h"

#include <algorithm>
#include <optional>

#include "kvstation/experiments/OtherTexts.h"
#include "kvstation/platform/Files.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/StationReader.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/cause/Random.h"

namespace kvtest {
namespace {

using Json = nlohmann::ordered_json;
using kvstation::Place;
using simwin::KeyId;
using simwin::RegistryType;
using simwin::RegistryValue;
using simwin::Station;
using Edited = StationFiles::Edited;

constexpr std::size_t kLargestFile = 1024 * 1024;
constexpr const char* kNewText = "Qxzvwk4";
constexpr std::uint64_t kSmallNumbers = 20;

// What a member can be, of whatever kind it is; most of it is refused at most places.
constexpr const char* kMembers = R"([
  "Qxzvwk4", "02-07-01-AB-CD-EF", "198.51.100.23", 7, true, {}, [777],
  {"type": "fixed", "label": "Qxzvwk4", "fileSystem": "FAT", "total": 1073741824, "free": 536870912},
  {"type": "cdrom"}, {"type": "removable"}, {"type": "remote"}, {"version": "7.1.2.3"},
  {"addresses": ["198.51.100.23"]}, {"clientName": "Qxzvwk4"},
  {"platformId": 1, "major": 4, "minor": 10, "build": 2222}, {"platformId": 2, "major": 4, "minor": 0, "build": 1381},
  {"platformId": 2, "major": 5, "minor": 2, "build": 3790, "terminalServices": true}])";

// Texts that the module may compare with, and digits, of which switches are made.
std::vector<std::string> words() {
    std::vector<std::string> all;
    for (char digit = '0'; digit <= '9'; ++digit)
        all.emplace_back(1, digit);
    for (const std::string_view word : kvstation::moduleWords())
        all.emplace_back(word);
    return all;
}

std::vector<std::string> otherTexts(const std::string& text) {
    Random random(1);
    std::vector<std::string> texts = {random.sameShape(text), "", text + "0"};
    for (std::string& word : words())
        texts.push_back(std::move(word));
    std::erase(texts, text);
    return texts;
}

std::vector<std::uint64_t> otherNumbers(std::uint64_t number) {
    std::vector<std::uint64_t> numbers = {number * 5 + 3, number * 3 + 1, number / 2, number / 3, number + 1};
    for (std::uint64_t small = 0; small < kSmallNumbers; ++small)
        numbers.push_back(small);
    std::erase(numbers, number);
    return numbers;
}

class Edits {
  public:
    Edits(const Station& station, const Json& json, const Place& place, const StationFiles::Visit& visit)
        : m_station(station), m_json(json), m_place(place), m_visit(visit) {}

    void make() {
        switch (m_place.kind) {
            case Place::Kind::None:
                break;
            case Place::Kind::Member:
                member();
                break;
            case Place::Kind::Item:
                toggle(m_place.member, m_place.value);
                break;
            case Place::Kind::Key:
                key();
                break;
            case Place::Kind::Value:
                value();
                break;
            case Place::Kind::EndOfKeys:
                for (const std::string& name : otherTexts(kNewText))
                    withKey(m_place.key + "\\" + name);
                break;
            case Place::Kind::EndOfValues:
                for (const std::string& name : otherTexts(kNewText))
                    newValue(simwin::textValue(name, name), name);
                break;
        }
    }

  private:
    void visit(const Station& station, std::string text = {}, bool isNumber = false) {
        m_isOver = m_isOver || !m_visit({station, std::move(text), isNumber});
    }

    void visit(const Json& json, std::string text = {}, bool isNumber = false) {
        if (m_isOver)
            return;
        try {
            Station other = simwin::parseStation(json.dump(), "station.json");
            other.registry = m_station.registry;
            visit(other, std::move(text), isNumber);
        } catch (const simwin::ReadError&) {  // no station holds it
        }
    }

    static Json::json_pointer pointerTo(const simwin::MemberPath& member) {
        Json::json_pointer path;
        for (const std::string& name : member)
            path /= name;
        return path;
    }

    void member() {
        const Json::json_pointer path = pointerTo(m_place.member);
        if (m_json.contains(path))
            without(path);
        for (const Json& content : Json::parse(kMembers))
            put(path, content);
        if (m_json.contains(path))
            inside(path, m_json[path]);
        else
            for (const std::string& word : words())
                put(path, word);
    }

    // Members at the end of a path that is not there are made with the way to them.
    void put(const Json::json_pointer& path, const Json& content) {
        Json json = m_json;
        json[path] = content;
        visit(json, content.is_string() ? simwin::fromUtf8Leniently(content.get<std::string>()) : content.dump(),
              content.is_number());
    }

    void without(const Json::json_pointer& path) {
        Json json = m_json;
        Json& parent = json[path.parent_pointer()];
        if (parent.is_array())
            parent.erase(std::stoul(path.back()));
        else
            parent.erase(path.back());
        visit(json);
    }

    void inside(const Json::json_pointer& path, const Json& content) {
        if (content.is_object())
            for (const auto& [name, one] : content.items())
                part(path / name, one);
        else if (content.is_array())
            for (std::size_t i = 0; i < content.size(); ++i)
                part(path / i, content[i]);
        else if (content.is_string())
            for (const std::string& text : otherTexts(simwin::fromUtf8Leniently(content.get<std::string>())))
                put(path, simwin::toUtf8(text));
        else if (content.is_boolean())
            put(path, !content.get<bool>());
        else
            for (const std::uint64_t number : otherNumbers(content.get<std::uint64_t>()))
                put(path, number);
    }

    void part(const Json::json_pointer& path, const Json& content) {
        without(path);
        inside(path, content);
    }

    // Off the list where it is on it, else on it.
    void toggle(const simwin::MemberPath& member, const std::string& item) {
        Json json = m_json;
        Json& list = json[pointerTo(member)];
        if (list.is_null())
            list = Json::array();
        const auto found = std::ranges::find_if(
            list, [&](const Json& one) { return simwin::equalNoCase(one.get<std::string>(), item); });
        if (found != list.end())
            list.erase(found);
        else
            list.push_back(item);
        visit(json);
    }

    template <class Change>
    void withRegistry(Change change, std::string text = {}, bool isNumber = false) {
        if (m_isOver)
            return;
        Station other = m_station;
        if (change(other.registry))
            visit(other, std::move(text), isNumber);
    }

    void withKey(const std::string& path) {
        withRegistry([&](simwin::RegistryTree& tree) { return !tree.find(path) && tree.create(path).has_value(); },
                     path.substr(path.find_last_of('\\') + 1));
    }

    void key() {
        const std::optional<KeyId> found = m_station.registry.find(m_place.key);
        if (!found)
            return withKey(m_place.key);
        withRegistry([&](simwin::RegistryTree& tree) {
            std::vector<KeyId> subKeys = tree.subKeys(tree.parent(*found));
            std::erase(subKeys, *found);
            tree.exchangeSubKeys(tree.parent(*found), subKeys);
            return true;
        });
        toggle({"deniedKeys"}, simwin::toUtf8(m_station.registry.path(*found)));
        if (m_place.isListed)
            for (std::string name : otherTexts(m_station.registry.name(*found)))
                withRegistry(
                    [&](simwin::RegistryTree& tree) {
                        if (name.empty() || name.find('\\') != std::string::npos ||
                            tree.find(tree.parent(*found), name))
                            return false;
                        std::string other = name;
                        tree.exchangeName(*found, other);
                        return true;
                    },
                    name);
    }

    void value() {
        const std::optional<KeyId> found = m_station.registry.find(m_place.key);
        const RegistryValue* before = found ? m_station.registry.findValue(*found, m_place.value) : nullptr;
        if (before == nullptr) {
            for (const std::string& text : otherTexts(kNewText))
                newValue(simwin::textValue(m_place.value, text), text);
            newValue(simwin::dwordValue(m_place.value, 1), "1", true);
            newValue(simwin::multiTextValue(m_place.value, {kNewText}), kNewText);
            newValue(simwin::binaryValue(m_place.value, kNewText), kNewText);
            return;
        }
        replaceValue(*found, std::nullopt);
        if (before->type == static_cast<std::uint32_t>(RegistryType::DWord))
            for (const std::uint64_t number : otherNumbers(numberIn(*before)))
                replaceValue(*found, simwin::dwordValue(before->name, static_cast<std::uint32_t>(number)),
                             std::to_string(number), true);
        replaceValue(*found, simwin::textValue(before->name, kNewText), kNewText);
        Random random(1);
        const std::string other = random.sameShape(before->bytes);
        for (const std::uint32_t type : {before->type, static_cast<std::uint32_t>(RegistryType::Text),
                                         static_cast<std::uint32_t>(RegistryType::Binary)})
            replaceValue(*found, RegistryValue{before->name, type, other}, other);
        for (const std::string& text : otherTexts(kNewText))
            replaceValue(*found, RegistryValue{before->name, before->type, text + std::string(2, '\0')}, text);
        if (m_place.isListed)
            for (const std::string& name : otherTexts(before->name))
                if (m_station.registry.findValue(*found, name) == nullptr)
                    replaceValue(*found, RegistryValue{name, before->type, before->bytes}, name);
    }

    static std::uint32_t numberIn(const RegistryValue& value) {
        std::uint32_t number = 0;
        for (std::size_t i = std::min<std::size_t>(value.bytes.size(), 4); i-- > 0;)
            number = number << 8 | static_cast<unsigned char>(value.bytes[i]);
        return number;
    }

    void newValue(const RegistryValue& value, const std::string& text, bool isNumber = false) {
        withRegistry(
            [&](simwin::RegistryTree& tree) {
                const std::optional<KeyId> found = tree.find(m_place.key);
                if (!found || tree.findValue(*found, value.name) != nullptr)
                    return false;
                tree.set(*found, value);
                return true;
            },
            text, isNumber);
    }

    // In its place in the list; none: without it.
    void replaceValue(KeyId inKey, const std::optional<RegistryValue>& other, const std::string& text = {},
                      bool isNumber = false) {
        withRegistry(
            [&](simwin::RegistryTree& tree) {
                std::vector<RegistryValue> values = tree.values(inKey);
                const auto found = std::ranges::find_if(
                    values, [&](const RegistryValue& one) { return simwin::equalNoCase(one.name, m_place.value); });
                if (other)
                    *found = *other;
                else
                    values.erase(found);
                simwin::ListedValues listed(std::move(values));
                tree.exchangeValues(inKey, listed);
                return true;
            },
            text, isNumber);
    }

    const Station& m_station;
    const Json& m_json;
    const Place& m_place;
    const StationFiles::Visit& m_visit;
    bool m_isOver = false;
};

}  // namespace

StationFiles::StationFiles(const std::string& folder)
    : m_json(Json::parse(kvstation::readFile(folder + "/station.json", kLargestFile))) {
    m_station = simwin::parseStation(m_json.dump(), "station.json");
    m_station.registry =
        simwin::readRegistry(kvstation::readFile(folder + "/registry.reg", kLargestFile), "registry.reg");
}

void StationFiles::editAt(const Place& place, const Visit& visit) const {
    Edits(m_station, m_json, place, visit).make();
}

}  // namespace kvtest
