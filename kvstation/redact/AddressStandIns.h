// Stand-ins for IPv4 addresses: of the same kind, in the same nets, and as long as texts.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/redact/AddressKind.h"
#include "kvstation/redact/Chance.h"
#include "kvstation/redact/FormStandIns.h"

namespace kvstation {

// Addresses of one net get stand-ins of one net, so that a gateway that cannot be reached stays one. A private address
// stays in its range, and so does each of rangeOf's; a public one becomes one of kReserved or kThisNet, whichever has
// the length. A number keeps its digits, a 0 stays, and so do a 0 at its end and a 255: what contains "0.0.0.0" is no
// address to the module, and what ends in 255 mostly calls a whole net.
class AddressStandIns : public FormStandIns {
  public:
    AddressStandIns(FormsByKind& forms, Chance& chance)
        : FormStandIns(forms, {PartKind::ServerAddress, PartKind::Address}), m_chance(chance) {}

    // Told of all addresses before, so that none of them becomes another's.
    void learn(std::string_view shown, TextPlace place) override;
    // The address itself when it was not learned, when no other one is of its form (isNobodys, 10.0.0.0), and in the
    // place of a version when nothing told for certain that it is one.
    std::string standIn(std::string_view shown, TextPlace place) override;

    void learnBytes(std::string_view bytes) override;
    std::string ofBytes(std::string_view bytes) override;

  private:
    using Numbers = std::vector<unsigned>;

    // The numbers behind one prefix that are replaced by the same others.
    struct Class {
        std::string prefix;  // the numbers in front, as they were
        std::size_t digits;  // of the old number
        bool endsInZero;
        Numbers candidates;

        // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy takes the 0 of its comparisons for a pointer.
        auto operator<=>(const Class&) const = default;
    };

    struct Form;
    static Form formFor(const IPv4& address);
    std::optional<IPv4> wholeNet(const IPv4& address);
    IPv4 inSameNets(const IPv4& address, const Form& form);
    IPv4 byChance(const IPv4& address, const Form& form);
    unsigned numberFor(const Class& place, unsigned number);
    std::map<unsigned, unsigned> assign(const Class& place);
    IPv4 make(const IPv4& address);

    Chance& m_chance;
    std::map<IPv4, bool> m_isCertain;                           // those that were learned
    std::map<std::string, std::set<unsigned>> m_numbersBehind;  // a prefix, in what was noted
    std::map<IPv4, IPv4> m_standIns;
    std::set<IPv4> m_made;
    std::map<Class, std::map<unsigned, unsigned>> m_assigned;
};

}  // namespace kvstation
