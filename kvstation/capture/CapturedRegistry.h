// The registry that a collection saw: what it asked for, in the order in which it was told.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"

namespace kvstation {

class CapturedRegistry {
  public:
    // Takes what a registry call told; other calls are none of its business.
    void take(const simwin::ObservedCall& call);

    void describe(simwin::Station& station) const;

  private:
    struct NamePlace {
        std::string key;
        std::uint64_t index;
        std::string name;
        std::uint32_t type;  // a value's, where it was told
    };
    struct NamedValue {
        std::string key;
        simwin::RegistryValue value;  // as many NULs where only type and size were told
    };

    void takeOpen(const simwin::ObservedCall& call);
    void takeValue(const simwin::ObservedCall& call);

    std::vector<std::string> m_keys;  // opened
    std::vector<std::string> m_denied;
    std::vector<NamePlace> m_subKeys;
    std::vector<NamePlace> m_valueNames;
    std::vector<NamedValue> m_values;
};

}  // namespace kvstation
