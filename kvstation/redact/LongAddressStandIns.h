// Stand-ins for IPv6 addresses: of the same kind, in the same nets, and as long as texts.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/redact/Chance.h"
#include "kvstation/redact/FormStandIns.h"
#include "kvstation/redact/LongAddress.h"

namespace kvstation {

// Link-local, private, multicast and documentation addresses stay such; a public one becomes one of 3fff::/20, which is
// kept for documentation. Groups of 0 stay, and so do ::, ::1 and the known multicast groups (ff02::1).
class LongAddressStandIns : public FormStandIns {
  public:
    LongAddressStandIns(FormsByKind& forms, Chance& chance)
        : FormStandIns(forms, {PartKind::LongAddress}), m_chance(chance) {}

    // The text itself when it is no address.
    std::string standIn(std::string_view shown, TextPlace place) override;
    // An address' 16 bytes.
    std::string ofBytes(std::string_view bytes) override;

  private:
    using Groups = std::vector<std::uint16_t>;

    IPv6 standIn(const IPv6& address);
    std::uint16_t groupFor(const Groups& prefix, std::uint16_t group, std::uint16_t fixedBits, std::uint16_t fixed);

    Chance& m_chance;
    std::map<Groups, std::uint16_t> m_groups;          // by the group with those in front, as they were
    std::map<Groups, std::set<std::uint16_t>> m_made;  // by those in front
};

}  // namespace kvstation
