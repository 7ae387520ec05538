#include "kvstation/import/HiveValues.h"

#include <algorithm>

#include "kvstation/hives/LittleEndian.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

using simwin::RegistryType;
using simwin::RegistryValue;

HiveValues::HiveValues(HiveRegistry& registry, std::string_view fullPath)
    : m_isWhole(!registry.lossAt(fullPath, HiveRegistry::Part::Values)) {
    simwin::RegistryTree tree;
    if (!registry.copyKey(fullPath, tree))
        return;
    const std::optional<simwin::KeyId> key = tree.find(fullPath);
    for (std::size_t i = 0; const RegistryValue* value = key ? tree.value(*key, i) : nullptr; ++i)
        m_values.push_back(*value);
}

const RegistryValue* HiveValues::find(std::string_view name, RegistryType type) const {
    const auto found = std::ranges::find_if(m_values, [&](const RegistryValue& value) {
        return simwin::equalNoCase(value.name, name) && static_cast<RegistryType>(value.type) == type;
    });
    return found != m_values.end() ? &*found : nullptr;
}

std::optional<std::string> HiveValues::text(std::string_view name) const {
    const RegistryValue* value = find(name, RegistryType::Text);
    return value != nullptr ? std::optional(valueText(*value)) : std::nullopt;
}

std::vector<std::string> HiveValues::texts(std::string_view name) const {
    std::vector<std::string> all;
    const RegistryValue* value = find(name, RegistryType::MultiText);
    for (std::string_view rest = value != nullptr ? std::string_view(value->bytes) : std::string_view();
         !rest.empty() && rest.front() != '\0';) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        all.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return all;
}

std::optional<std::uint32_t> HiveValues::number(std::string_view name) const {
    const RegistryValue* value = find(name, RegistryType::DWord);
    if (value == nullptr || value->bytes.size() != sizeof(std::uint32_t))
        return std::nullopt;
    return numberAt(value->bytes, 0);
}

bool HiveValues::mayHaveLost(std::string_view name, RegistryType type) const {
    return find(name, type) == nullptr && (!m_isWhole || std::ranges::any_of(m_values, [&](const RegistryValue& value) {
               return simwin::equalNoCase(value.name, name);
           }));
}

std::string valueText(const RegistryValue& value) {
    return value.bytes.substr(0, value.bytes.find('\0'));
}

}  // namespace kvstation
