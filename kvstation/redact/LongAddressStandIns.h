// Stand-ins for IPv6 addresses: of the same kind, in the same nets, and as long as texts.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/redact/Chance.h"
#include "kvstation/redact/LongAddress.h"

namespace kvstation {

// Link-local, private, multicast and documentation addresses stay such; a public one becomes one of 3fff::/20, which is
// kept for documentation. Groups of 0 stay, and so do ::, ::1 and the known multicast groups (ff02::1).
class LongAddressStandIns {
  public:
    explicit LongAddressStandIns(Chance& chance) : m_chance(chance) {}

    // Whatever is an address; the text itself when it is none.
    std::string standIn(std::string_view text);
    IPv6 standIn(const IPv6& address);

  private:
    using Groups = std::vector<std::uint16_t>;

    std::uint16_t groupFor(const Groups& prefix, std::uint16_t group, std::uint16_t fixedBits, std::uint16_t fixed);

    Chance& m_chance;
    std::map<Groups, std::uint16_t> m_groups;          // by the group with those in front, as they were
    std::map<Groups, std::set<std::uint16_t>> m_made;  // by those in front
};

}  // namespace kvstation
