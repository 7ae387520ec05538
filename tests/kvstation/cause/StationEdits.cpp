#include "tests/kvstation/cause/StationEdits.h"

#include <algorithm>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"
#include "simwin/text/CodePage.h"

namespace kvtest {
namespace {

using Json = nlohmann::ordered_json;
using simwin::KeyId;
using simwin::ObservedCall;
using simwin::RegistryType;
using simwin::RegistryValue;
using simwin::Station;
using simwin::textOf;

struct ByName {
    bool operator()(const std::string& left, const std::string& right) const {
        return simwin::upperCase(left) < simwin::upperCase(right);
    }
};

class Editor {
  public:
    Editor(const Station& station, Random& random)
        : m_station(station), m_json(simwin::stationJson(station)), m_random(random) {}

    std::vector<StationEdit> edits(const std::vector<ObservedCall>& calls) {
        for (const auto& [name, content] : m_json.items())
            if (name != "description" && name != "unknown")
                member(Json::json_pointer() / name, content);
        for (const ObservedCall& call : calls)
            asked(call);
        for (const auto& [path, names] : m_values)
            for (const std::string& name : names)
                value(path, name);
        for (const std::string& path : m_keys)
            key(path);
        for (const std::string& path : m_listed)
            rename(path);
        return std::move(m_edits);
    }

  private:
    void add(std::string what, std::function<std::optional<Station>()> make, simwin::MemberPath member = {}) {
        m_edits.push_back({std::move(what), std::move(member), std::move(make)});
    }

    std::optional<Station> described(const Json& json) const {
        Station made;
        try {
            simwin::describe(made, json, "station.json");
        } catch (const simwin::ReadError&) {
            return std::nullopt;
        }
        made.registry = m_station.registry;
        return made;
    }

    static simwin::MemberPath piecesOf(Json::json_pointer path) {
        simwin::MemberPath pieces;
        for (; !path.empty(); path.pop_back())
            pieces.insert(pieces.begin(), path.back());
        return pieces;
    }

    void member(const Json::json_pointer& path, const Json& content) {
        if (!isListOfFaults(path) || content.size() == 1)
            without(path);
        if (content.is_object())
            for (const auto& [name, one] : content.items())
                member(path / name, one);
        else if (content.is_array())
            for (std::size_t i = 0; i < content.size(); ++i)
                member(path / i, content[i]);
        else
            leaf(path, content);
    }

    // Without all of them several answers change, of which none need be a cause by itself.
    static bool isListOfFaults(const Json::json_pointer& path) {
        const std::string name = path.to_string();
        return name == "/fails" || name == "/deniedKeys" || name == "/missing";
    }

    void without(const Json::json_pointer& path) {
        const auto make = [this, path] {
            Json json = m_json;
            Json& parent = json[path.parent_pointer()];
            if (parent.is_array())
                parent.erase(std::stoul(path.back()));
            else
                parent.erase(path.back());
            return described(json);
        };
        add("station.json without " + path.to_string(), make, piecesOf(path));
    }

    void put(const Json::json_pointer& path, Json content) {
        std::string what = "station.json with " + path.to_string() + " = " + content.dump();
        const auto make = [this, path, content = std::move(content)] {
            Json json = m_json;
            json[path] = content;
            return described(json);
        };
        add(std::move(what), make, piecesOf(path));
    }

    void leaf(const Json::json_pointer& path, const Json& content) {
        if (content.is_string()) {
            const std::string text = content.get<std::string>();
            put(path, "");
            for (int i = 0; i < 2; ++i)
                if (std::string other = m_random.sameShape(text); other != text)
                    put(path, std::move(other));
        } else if (content.is_boolean()) {
            put(path, !content.get<bool>());
        } else {
            const auto number = content.get<std::int64_t>();
            for (const std::int64_t other : {number / 5 + 1, number / 7, number / 2, number / 3,
                                             std::int64_t{m_random.below(100)}, std::int64_t{m_random.number()}})
                if (other != number)
                    put(path, other < 0 ? Json(other) : Json(static_cast<std::uint64_t>(other)));
        }
    }

    void asked(const ObservedCall& call) {
        const std::string subject = simwin::withClassesInPlace(call.subject);
        if (call.name == "KVGetEnv" || call.name == "GetEnvironmentVariableA")
            variable(std::string(textOf(call.parameters[0])));
        else if (call.name == "FindFirstFileA" || call.name == "_access" || call.name == "GetFileVersionInfoSizeA")
            file(std::string(textOf(call.parameters[0])));
        else if (subject.empty())
            return;
        else if (call.name.starts_with("RegOpenKey"))
            m_keys.insert(simwin::withClassesInPlace(simwin::openedKey(call)));
        else if (call.name == "RegQueryValueExA")
            m_values[subject].insert(std::string(textOf(call.parameters[1])));
        else if (call.name == "RegEnumValueA" && call.succeeded)
            m_values[subject].insert(std::string(textOf(call.parameters[2])));
        else if (call.name == "RegEnumKeyA" && call.succeeded)
            m_listed.insert(subject + "\\" + std::string(textOf(call.parameters[2])));
        else if (call.name == "RegEnumKeyA")
            m_keys.insert(subject + "\\Qxzvwk");
        else if (call.name == "RegEnumValueA")
            m_values[subject].insert("Qxzvwk");
    }

    void variable(const std::string& name) {
        const auto isIt = [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); };
        if (name.empty() || std::ranges::any_of(m_station.environment, isIt) ||
            !m_added.insert(simwin::upperCase(name)).second)
            return;
        for (const std::string& text : {m_random.sameShape("Qxzvwk4"), m_random.sameShape("5")})
            add("variable " + name + " = " + text, [this, name, text] {
                Station made = m_station;
                made.environment.push_back({name, text});
                return std::optional(std::move(made));
            });
    }

    void file(const std::string& path) {
        const auto isIt = [&](const simwin::File& one) { return simwin::equalNoCase(one.path, path); };
        // station.json holds no other.
        const bool isFull = path.size() > 3 && path[1] == ':' && path[2] == '\\' && !path.ends_with('\\');
        if (!isFull || std::ranges::any_of(m_station.files, isIt) || !m_added.insert(simwin::upperCase(path)).second)
            return;
        add("file " + path, [this, path] {
            Station made = m_station;
            made.files.push_back({path, simwin::FileVersion{7, 1, 2, 3}, {}});
            return std::optional(std::move(made));
        });
    }

    void value(const std::string& path, const std::string& name) {
        const std::optional<KeyId> found = m_station.registry.find(path);
        if (!found)
            return;
        const RegistryValue* before = m_station.registry.findValue(*found, name);
        if (before == nullptr) {
            setValue(*found, simwin::textValue(name, m_random.sameShape("Qxzvwk4")));
            setValue(*found, simwin::dwordValue(name, m_random.below(100)));
            return;
        }
        add("without value " + path + "\\" + name, [this, key = *found, name] {
            Station made = m_station;
            std::vector<RegistryValue> values = made.registry.values(key);
            std::erase_if(values, [&](const RegistryValue& one) { return simwin::equalNoCase(one.name, name); });
            simwin::ListedValues fewer(std::move(values));
            made.registry.exchangeValues(key, fewer);
            return std::optional(std::move(made));
        });
        setValue(*found, {before->name, before->type, ""});
        for (int i = 0; i < 2; ++i) {
            const bool isNumber = before->type == static_cast<std::uint32_t>(RegistryType::DWord);
            std::string bytes = isNumber ? m_random.bytes(before->bytes.size()) : m_random.sameShape(before->bytes);
            if (bytes != before->bytes)
                setValue(*found, {before->name, before->type, std::move(bytes)});
        }
        if (before->type == static_cast<std::uint32_t>(RegistryType::DWord))
            setValue(*found, simwin::dwordValue(before->name, m_random.below(10)));
    }

    void setValue(KeyId key, RegistryValue value) {
        std::string what = m_station.registry.path(key) + "\\" + value.name + " = " + value.bytes;
        add(std::move(what), [this, key, value = std::move(value)] {
            Station made = m_station;
            made.registry.set(key, value);
            return std::optional(std::move(made));
        });
    }

    void key(const std::string& path) {
        const std::optional<KeyId> found = m_station.registry.find(path);
        if (!found) {
            add("key " + path, [this, path] {
                Station made = m_station;
                return made.registry.create(path) ? std::optional(std::move(made)) : std::nullopt;
            });
            return;
        }
        const KeyId parent = m_station.registry.parent(*found);
        if (parent == *found)
            return;
        add("without key " + path, [this, key = *found, parent] {
            Station made = m_station;
            std::vector<KeyId> subKeys = made.registry.subKeys(parent);
            std::erase(subKeys, key);
            made.registry.exchangeSubKeys(parent, subKeys);
            return std::optional(std::move(made));
        });
    }

    void rename(const std::string& path) {
        const std::optional<KeyId> found = m_station.registry.find(path);
        if (!found)
            return;
        const std::string name = m_random.sameShape(m_station.registry.name(*found));
        if (m_station.registry.find(m_station.registry.parent(*found), name))
            return;
        add("key " + path + " named " + name, [this, key = *found, name]() mutable {
            Station made = m_station;
            std::string other = name;
            made.registry.exchangeName(key, other);
            return std::optional(std::move(made));
        });
    }

    const Station& m_station;
    Json m_json;
    Random& m_random;
    std::vector<StationEdit> m_edits;
    std::map<std::string, std::set<std::string, ByName>, ByName> m_values;  // by key
    std::set<std::string, ByName> m_keys;
    std::set<std::string, ByName> m_listed;
    std::set<std::string> m_added;
};

}  // namespace

std::vector<StationEdit> editsOf(const Station& station, const std::vector<ObservedCall>& calls, Random& random) {
    const auto editor = std::make_shared<Editor>(station, random);
    std::vector<StationEdit> edits = editor->edits(calls);
    for (StationEdit& edit : edits)  // which live on what the editor keeps
        edit.make = [editor, make = std::move(edit.make)] { return make(); };
    return edits;
}

Station writtenAndRead(const Station& station) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    Station again = simwin::parseStation(simwin::writeStation(station), "station.json");
    again.registry = simwin::readRegistry(simwin::writeRegistry(station.registry), "registry.reg");
    return again;
}

}  // namespace kvtest
