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
    // Each takes what a call on a key of a known path told, or that it failed.
    void takeOpening(const simwin::ObservedCall& call);
    void takeValue(const simwin::ObservedCall& call);
    void takeSubKey(const simwin::ObservedCall& call);
    void takeValueName(const simwin::ObservedCall& call);

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

    std::vector<std::string> m_keys;  // opened
    std::vector<std::string> m_denied;
    std::vector<NamePlace> m_subKeys;
    std::vector<NamePlace> m_valueNames;
    std::vector<NamedValue> m_values;
};

}  // namespace kvstation
