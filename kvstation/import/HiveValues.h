// The values of one key in the hives, as far as they are of the type that is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/import/HiveRegistry.h"
#include "simwin/station/RegistryTree.h"

namespace kvstation {

class HiveValues {
  public:
    // A key that is not there has no values.
    HiveValues(HiveRegistry& registry, std::string_view fullPath);

    // REG_SZ, up to its first NUL.
    std::optional<std::string> text(std::string_view name) const;
    // REG_MULTI_SZ, up to its first empty text; empty when there is none.
    std::vector<std::string> texts(std::string_view name) const;
    // REG_DWORD of 4 bytes.
    std::optional<std::uint32_t> number(std::string_view name) const;

    // Whether damage may have taken a value: it is missing where not all could be read, or of another type.
    bool mayHaveLost(std::string_view name, simwin::RegistryType type) const;

    const std::vector<simwin::RegistryValue>& all() const { return m_values; }

  private:
    const simwin::RegistryValue* find(std::string_view name, simwin::RegistryType type) const;

    std::vector<simwin::RegistryValue> m_values;
    bool m_isWhole;
};

// The bytes up to the first NUL.
std::string valueText(const simwin::RegistryValue& value);

}  // namespace kvstation
