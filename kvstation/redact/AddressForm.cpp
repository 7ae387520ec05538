// IPv4 addresses. Their stand-ins are of the same kind, in the same nets, and as long as texts.
#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "kvstation/redact/AddressKind.h"
#include "kvstation/redact/TextForm.h"
#include "simwin/text/Address.h"

namespace kvstation {
namespace {

constexpr unsigned kEveryNumber = 255;

// Four numbers up to 255 and no fifth. "v1.2.3.4" says itself that it is a version.
std::size_t addressAt(PageTextView text, std::size_t place) {
    const char32_t before = characterBefore(text, place);
    const bool goesOn = isDigit(before == U'.' ? characterBefore(text, place - 1) : before);
    if (!isDigit(characterAt(text, place)) || goesOn)
        return 0;
    const auto isOfOne = [](char32_t character) { return isDigit(character) || character == U'.'; };
    const PageTextView run = withoutDotsBehind(runOf(text.substr(place), isOfOne));
    const bool saysVersion = toLower(before) == U'v' && !isWordCharacter(characterBefore(text, place - 1));
    return !saysVersion && simwin::parseDotted(bytesOf(run)) ? run.size() : 0;
}

std::size_t digitsOf(unsigned number) {
    return std::to_string(number).size();
}
bool endsInZero(unsigned number) {
    return number % 10 == 0;
}
// Stays what it is where its length does.
bool isFixed(unsigned number) {
    return number == 0 || number == kEveryNumber;
}

std::string prefixOf(const IPv4& address, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += std::to_string(address[i]) + ".";
    return text;
}

// "0010" is 10 with two zeros in front, which stay.
std::string withZerosOf(std::string_view dotted, const IPv4& old, const IPv4& made) {
    std::string text;
    for (std::size_t i = 0; i < made.size(); ++i) {
        const std::string_view number = dotted.substr(0, dotted.find('.'));
        text += (i == 0 ? "" : ".") + std::string(number.size() - digitsOf(old[i]), '0') + std::to_string(made[i]);
        dotted.remove_prefix(std::min(number.size() + 1, dotted.size()));
    }
    return text;
}

// Addresses of one net get stand-ins of one net, so that a gateway that cannot be reached stays one. A private address
// stays in its range, and so does each of rangeOf's; a public one becomes one of kReserved or kThisNet, whichever has
// the length. A number keeps its digits, a 0 stays, and so do a 0 at its end and a 255: what contains "0.0.0.0" is no
// address to the module, and what ends in 255 mostly calls a whole net.
class AddressStandIns : public FormStandIns {
  public:
    AddressStandIns(Chance& chance, const AddWord&) : m_chance(chance) {}

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
    std::map<std::string, std::set<unsigned>> m_numbersBehind;  // a prefix, in what was learned
    std::map<IPv4, IPv4> m_standIns;
    std::set<IPv4> m_made;
    std::map<Class, std::map<unsigned, unsigned>> m_assigned;
};

// The range of the stand-in and the digits of its numbers.
struct AddressStandIns::Form {
    AddressRange range;
    std::array<std::size_t, 4> digits;

    // The numbers that may stand for one. One that gets longer or shorter need not keep its 0.
    Numbers candidates(std::size_t index, unsigned number) const {
        if (range.bits >= (index + 1) * 8)
            return {range.start[index]};
        const bool keepsLength = digits[index] == digitsOf(number);
        if (keepsLength && isFixed(number) && range.allows(index, number))
            return {number};
        Numbers all;
        for (unsigned one = 0; one < kEveryNumber; ++one)
            if (digitsOf(one) == digits[index] && range.allows(index, one) &&
                (keepsLength ? endsInZero(one) == endsInZero(number) : one != 0))
                all.push_back(one);
        return all;
    }
};

// Of the name of a public net of the largest size: what contains "0.0.0.0" goes on to, and what does not does not.
std::optional<IPv4> AddressStandIns::wholeNet(const IPv4& address) {
    const bool isWhole = !rangeOf(address) && address[1] + address[2] + address[3] == 0;
    if (isWhole && digitsOf(address[0]) == 1)
        return IPv4{0, 0, 0, 1 + m_chance.next(9)};
    if (isWhole && digitsOf(address[0]) == 2 && endsInZero(address[0]))
        return IPv4{10, 0, 0, 0};
    return std::nullopt;
}

// Of a public address whose first number has two digits another number takes over one, since no range has two that
// reaches nobody.
AddressStandIns::Form AddressStandIns::formFor(const IPv4& address) {
    Form form{kThisNet, {}};
    std::ranges::transform(address, form.digits.begin(), digitsOf);
    if (const std::optional<AddressRange> range = rangeOf(address)) {
        form.range = *range;
        return form;
    }
    if (form.digits[0] == 3) {
        form.range = kReserved;
        return form;
    }
    if (form.digits[0] == 1)
        return form;
    const auto shorter = std::find_if(form.digits.begin() + 1, form.digits.end(), [](auto count) { return count < 3; });
    if (shorter != form.digits.end()) {
        form.digits[0] = 1;
        ++*shorter;
    } else {
        form.range = kReserved;
        form.digits[0] = 3;
        form.digits[1] = 2;
    }
    return form;
}

void AddressStandIns::learn(std::string_view shown, TextPlace place) {
    const std::optional<IPv4> address = parseIPv4(shown);
    if (place == TextPlace::Version || !address || isNobodys(*address))
        return;
    bool& isCertain = m_isCertain[*address];
    isCertain = isCertain || place == TextPlace::Address;
    for (std::size_t i = 0; i < address->size(); ++i)
        m_numbersBehind[prefixOf(*address, i)].insert((*address)[i]);
}

std::string AddressStandIns::standIn(std::string_view shown, TextPlace place) {
    const std::optional<IPv4> address = parseIPv4(shown);
    const auto learned = address ? m_isCertain.find(*address) : m_isCertain.end();
    if (learned == m_isCertain.end() || (place == TextPlace::Version && !learned->second))
        return std::string(shown);
    const auto [made, isNew] = m_standIns.emplace(*address, IPv4{});
    if (isNew) {
        made->second = make(*address);
        m_made.insert(made->second);
    }
    return withZerosOf(shown, *address, made->second);
}

void AddressStandIns::learnBytes(std::string_view bytes) {
    learn(simwin::dotted(bytes), TextPlace::Address);
}

std::string AddressStandIns::ofBytes(std::string_view bytes) {
    return simwin::parseDotted(standIn(simwin::dotted(bytes), TextPlace::Address)).value();
}

IPv4 AddressStandIns::make(const IPv4& address) {
    if (const std::optional<IPv4> net = wholeNet(address))
        return *net;
    const Form form = formFor(address);
    IPv4 made = inSameNets(address, form);
    const auto fits = [&] {
        const std::optional<AddressRange> range = rangeOf(made);
        return made != address && !isNobodys(made) && !m_made.contains(made) && range &&
               range->start == form.range.start;
    };
    for (int tries = 0; tries < 100 && !fits(); ++tries)
        made = byChance(address, form);
    return made;
}

IPv4 AddressStandIns::inSameNets(const IPv4& address, const Form& form) {
    IPv4 made{};
    for (std::size_t i = 0; i < made.size(); ++i)
        made[i] = numberFor(
            {prefixOf(address, i), digitsOf(address[i]), endsInZero(address[i]), form.candidates(i, address[i])},
            address[i]);
    return made;
}

IPv4 AddressStandIns::byChance(const IPv4& address, const Form& form) {
    IPv4 made{};
    for (std::size_t i = 0; i < made.size(); ++i) {
        const Numbers all = form.candidates(i, address[i]);
        made[i] = all[m_chance.next(static_cast<unsigned>(all.size()))];
    }
    return made;
}

unsigned AddressStandIns::numberFor(const Class& place, unsigned number) {
    if (place.candidates.size() == 1)
        return place.candidates.front();
    const auto [known, isNewClass] = m_assigned.try_emplace(place);
    if (isNewClass)
        known->second = assign(place);
    const auto [found, isNew] = known->second.try_emplace(number);
    if (isNew)
        found->second = place.candidates[m_chance.next(static_cast<unsigned>(place.candidates.size()))];
    return found->second;
}

// By numbers that nobody has where there are enough, else by each other's.
std::map<unsigned, unsigned> AddressStandIns::assign(const Class& place) {
    const std::set<unsigned>& noted = m_numbersBehind[place.prefix];
    Numbers wanted;
    std::ranges::copy_if(noted, std::back_inserter(wanted), [&](unsigned number) {
        return digitsOf(number) == place.digits && endsInZero(number) == place.endsInZero && !isFixed(number);
    });
    Numbers others;
    std::ranges::copy_if(place.candidates, std::back_inserter(others),
                         [&](unsigned one) { return !noted.contains(one); });
    if (others.size() >= wanted.size()) {
        m_chance.shuffle(others);
    } else {
        wanted = others = place.candidates;
        m_chance.derange(others);
    }
    std::map<unsigned, unsigned> made;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        made[wanted[i]] = others[i];
    return made;
}

}  // namespace

const TextForm kAddressForm = {addressAt, true, makeStandIns<AddressStandIns>};

}  // namespace kvstation
