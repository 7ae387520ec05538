// A machine that a station is captured from, for tests of what is written down of it.
#pragma once

#include <optional>
#include <string>

#include "kvstation/capture/LocalState.h"
#include "simwin/station/Station.h"
#include "simwin/text/CodePage.h"

namespace kvtest {

// A machine that tells what a station describes of its registry, its variables and its files.
class DescribedState : public kvstation::LocalState {
  public:
    simwin::Station described;
    bool knowsAll = true;

    bool copyKey(const std::string& fullPath, simwin::RegistryTree& tree) override {
        const simwin::RegistryTree& registry = described.registry;
        const std::optional<simwin::KeyId> key = registry.find(fullPath);
        const std::optional<simwin::KeyId> copy = key ? tree.create(fullPath) : std::nullopt;
        if (!copy)
            return false;
        for (const simwin::KeyId subKey : registry.subKeys(*key))
            tree.create(fullPath + "\\" + registry.name(subKey));
        for (const simwin::RegistryValue& value : registry.values(*key))
            tree.set(*copy, value);
        return true;
    }
    std::optional<std::string> variable(const std::string& name) override {
        for (const simwin::Variable& one : described.environment)
            if (simwin::equalNoCase(one.name, name))
                return one.value;
        return std::nullopt;
    }
    std::optional<simwin::File> file(const std::string& path) override {
        for (const simwin::File& one : described.files)
            if (simwin::equalNoCase(one.path, path))
                return one;
        return std::nullopt;
    }
    bool knows(const kvstation::Place&) override { return knowsAll; }
};

// The zero-terminated text of a value, or what is missing of it.
inline std::string textOf(const simwin::Station& station, const std::string& path, const std::string& name) {
    const std::optional<simwin::KeyId> key = station.registry.find(path);
    const simwin::RegistryValue* value = key ? station.registry.findValue(*key, name) : nullptr;
    return !key ? "no key" : value == nullptr ? "no value" : value->bytes.c_str();
}

inline std::string textOf(const simwin::Station& station, const std::string& variable) {
    for (const simwin::Variable& one : station.environment)
        if (one.name == variable)
            return one.value;
    return "not set";
}

inline bool hasKey(const simwin::Station& station, const std::string& path) {
    return station.registry.find(path).has_value();
}

}  // namespace kvtest
