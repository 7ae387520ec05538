// IPv6 addresses. Their stand-ins are of the same kind, in the same nets, and as long as texts.
#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "kvstation/redact/LongAddress.h"
#include "kvstation/redact/TextForm.h"

namespace kvstation {
namespace {

std::size_t longAddressAt(PageTextView text, std::size_t place) {
    const auto isOfOne = [](char32_t character) { return isHexDigit(character) || character == U':'; };
    const char32_t before = characterBefore(text, place);
    if (!isOfOne(characterAt(text, place)) || isWordCharacter(before) || before == U':')
        return 0;
    PageTextView run = runOf(text.substr(place), isOfOne);
    const std::size_t end = place + run.size();
    const bool endsDotted = characterAt(text, end) == U'.' && isDigit(characterAt(text, end + 1));  // ::ffff:10.0.0.5
    if (isWordCharacter(characterAt(text, end)) || endsDotted)
        return 0;
    if (run.ends_with(U':') && !run.ends_with(U"::"))
        run.remove_suffix(1);
    return parseIPv6(bytesOf(run)) ? run.size() : 0;
}

// What of the first two groups the kind tells: those bits are the stand-in's.
struct Kind {
    std::uint16_t start;
    std::uint16_t startBits;  // of the address, for it to be of the kind
    std::uint16_t second;
    std::uint16_t secondBits;
    IPv6 standIn;
    IPv6 standInBits;
};

// The first row that fits.
constexpr Kind kKinds[] = {
    {0x2001, 0xFFFF, 0x0DB8, 0xFFFF, {0x2001, 0x0DB8}, {0xFFFF, 0xFFFF}},  // documentation
    {0x2000, 0xE000, 0, 0, {0x3FFF, 0}, {0xFFFF, 0xF000}},                 // public, and documentation
    {0xFC00, 0xFF00, 0, 0, {0xFC00, 0}, {0xFF00, 0}},                      // private
    {0xFD00, 0xFF00, 0, 0, {0xFD00, 0}, {0xFF00, 0}},                      // private, of a house's own making
};

bool isOf(const Kind& kind, const IPv6& address) {
    return (address[0] & kind.startBits) == kind.start && (address[1] & kind.secondBits) == kind.second;
}

bool isNobodys(const IPv6& address) {
    const bool hasMiddle = std::any_of(address.begin() + 1, address.end() - 1, [](auto group) { return group != 0; });
    const bool isMulticast = address[0] >= 0xFF00;
    return !hasMiddle && (isMulticast || (address[0] == 0 && address[7] <= 1));
}

int digitsOf(std::uint16_t group) {
    return group < 0x10 ? 1 : group < 0x100 ? 2 : group < 0x1000 ? 3 : 4;
}

// Link-local, private, multicast and documentation addresses stay such; a public one becomes one of 3fff::/20, which is
// kept for documentation. Groups of 0 stay, and so do ::, ::1 and the known multicast groups (ff02::1).
class LongAddressStandIns : public FormStandIns {
  public:
    LongAddressStandIns(Chance& chance, const AddWord&) : m_chance(chance) {}

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

std::string LongAddressStandIns::standIn(std::string_view shown, TextPlace) {
    const std::optional<IPv6> address = parseIPv6(shown);
    return address ? inWritingOf(shown, standIn(*address)) : std::string(shown);
}

std::string LongAddressStandIns::ofBytes(std::string_view bytes) {
    IPv6 address{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        address.at(i / 2) = static_cast<std::uint16_t>(address.at(i / 2) << 8 | static_cast<unsigned char>(bytes[i]));
    std::string made;
    for (const std::uint16_t group : standIn(address))
        made += {static_cast<char>(group >> 8), static_cast<char>(group & 0xFF)};
    return made;
}

IPv6 LongAddressStandIns::standIn(const IPv6& address) {
    if (isNobodys(address))
        return address;
    // Of any other kind the first group tells it.
    IPv6 fixed = {address[0]};
    IPv6 fixedBits = {0xFFFF};
    const auto* const kind = std::ranges::find_if(kKinds, [&](const Kind& one) { return isOf(one, address); });
    if (kind != std::end(kKinds)) {
        fixed = kind->standIn;
        fixedBits = kind->standInBits;
    }
    IPv6 made{};
    Groups prefix;
    for (std::size_t i = 0; i < made.size(); ++i) {
        made[i] = groupFor(prefix, address[i], fixedBits[i], fixed[i]);
        prefix.push_back(address[i]);
    }
    return made;
}

// Of as many digits, or of fewer where the kind leaves no more.
std::uint16_t LongAddressStandIns::groupFor(const Groups& prefix, std::uint16_t group, std::uint16_t fixedBits,
                                            std::uint16_t fixed) {
    if (fixedBits == 0xFFFF)
        return fixed;
    if (group == 0)
        return 0;
    Groups place = prefix;
    place.push_back(group);
    const auto [known, isNew] = m_groups.try_emplace(place);
    if (!isNew)
        return known->second;
    std::set<std::uint16_t>& made = m_made[prefix];
    const auto fits = [&](std::uint16_t one) {
        return one != 0 && one != group &&
               (fixed != 0 || digitsOf(one) == std::min(digitsOf(group), fixedBits != 0 ? 3 : 4));
    };
    std::uint16_t one = 0;
    for (int tries = 0; !fits(one) || (tries < 100 && made.contains(one)); ++tries) {
        const unsigned most = 1U << 4 * digitsOf(group);
        one = static_cast<std::uint16_t>((m_chance.next(most) & ~unsigned{fixedBits}) | fixed);
    }
    made.insert(one);
    return known->second = one;
}

}  // namespace

const TextForm kLongAddressForm = {longAddressAt, false, makeStandIns<LongAddressStandIns>};

}  // namespace kvstation
