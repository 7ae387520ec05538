#include "kvstation/redact/NamedParts.h"

#include <algorithm>
#include <span>

#include "kvstation/redact/LongAddress.h"
#include "simwin/text/Address.h"

namespace kvstation {
namespace {

// How a form is found: how many characters one takes at a place of the text, 0 where none is.
struct PartForm {
    PartKind kind;
    std::size_t (*lengthAt)(PageTextView text, std::size_t place);
};

constexpr std::size_t kFewestPairs = 6;
constexpr std::size_t kMostPairs = 16;
constexpr PageTextView kUncPrefix = U"?\\unc\\";  // of \\?\UNC\server\share

bool isSlash(char32_t character) {
    return character == U'\\' || character == U'/';
}
bool isMailboxCharacter(char32_t character) {
    return isNameCharacter(character) || character == U'+';
}

char32_t characterAt(PageTextView text, std::size_t place) {
    return place < text.size() ? text[place] : U'\0';
}
char32_t characterBefore(PageTextView text, std::size_t place) {
    return place == 0 ? U'\0' : text[place - 1];
}

PageTextView withoutDotsBehind(PageTextView text) {
    while (text.ends_with(U'.'))
        text.remove_suffix(1);
    return text;
}

// "i7@2.40GHz" is no mailbox: the last piece of a domain begins with a letter, and one letter is none.
bool isDomain(PageTextView text) {
    if (text.empty() || !isWordCharacter(text.front()))
        return false;
    const PageTextView last = text.substr(text.rfind(U'.') + 1);
    return simwin::parseDotted(bytesOf(text)) || (last.size() > 1 && isLetter(last.front()));
}

// The length of what has the form and begins at the place, or 0.

std::size_t physicalAt(PageTextView text, std::size_t place) {
    const auto at = [&](std::size_t one) { return characterAt(text, one); };
    const char32_t joint = at(place + 2);
    if ((joint != U'-' && joint != U':') || isWordCharacter(characterBefore(text, place)))
        return 0;
    std::size_t pairs = 0;
    std::size_t end = place;
    while (isHexDigit(at(end)) && isHexDigit(at(end + 1)) && !isWordCharacter(at(end + 2))) {
        ++pairs;
        end += 2;
        if (at(end) != joint)
            break;
        ++end;
    }
    if (at(end - 1) == joint)
        --end;
    return pairs >= kFewestPairs && pairs <= kMostPairs ? end - place : 0;
}

// Eight pairs joined by ":" are a physical address.
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

// Tried in their order: 10.1.2.3@srv is a mailbox, 00-1a-2b-3c-4d-5e@srv begins with a physical address.
constexpr PartForm kFormsBehindMailbox[] = {
    {PartKind::Address, addressAt},
};
constexpr PartForm kFormsBeforeMailbox[] = {
    {PartKind::Physical, physicalAt},
    {PartKind::LongAddress, longAddressAt},
};

class Splitter {
  public:
    explicit Splitter(PageTextView text) : m_text(text) {}

    std::vector<NamedPart> split() {
        while (m_place < m_text.size())
            if (!takeServer() && !takeForm(kFormsBeforeMailbox) && !takeMailbox() && !takeForm(kFormsBehindMailbox))
                ++m_place;
        endText(m_text.size());
        return std::move(m_parts);
    }

  private:
    char32_t before(std::size_t place) const { return characterBefore(m_text, place); }
    char32_t at(std::size_t place) const { return characterAt(m_text, place); }

    void endText(std::size_t end) {
        if (end > m_textStart)
            m_parts.push_back({PartKind::Text, m_text.substr(m_textStart, end - m_textStart)});
        m_textStart = end;
    }
    void take(PartKind kind, std::size_t place, std::size_t length) {
        endText(place);
        m_parts.push_back({kind, m_text.substr(place, length)});
        m_place = m_textStart = place + length;
    }

    bool isDriveColon(std::size_t place) const {
        return at(place) == U':' && place > 0 && isLetter(m_text[place - 1]) &&
               (place == 1 || !isWordCharacter(m_text[place - 2]));
    }
    bool beginsItem(std::size_t place) const { return before(place) == U'\0' || before(place) == U'\\'; }

    // Where a server's name begins, when what tells so stands here. Two slashes within a path, as in C:\\x, do not.
    std::size_t serverPlace() const {
        const char32_t mark = at(m_place);
        if (isSlash(mark) && at(m_place + 1) == mark) {
            constexpr PageTextView kInPaths = U"%)]}\\/._-~$";
            const char32_t previous = before(m_place);
            if (isWordCharacter(previous) || (m_place != 0 && kInPaths.find(previous) != PageTextView::npos) ||
                (m_place != 0 && isDriveColon(m_place - 1)))
                return 0;
            std::size_t place = m_text.find_first_not_of(mark, m_place);
            place = std::min(place, m_text.size());
            if (lowerCase(m_text.substr(place, kUncPrefix.size())) == kUncPrefix)
                place += kUncPrefix.size();
            return place;
        }
        // As a connection to a printer and a mounted share stand in names of keys, which hold no backslash.
        const bool isKeyForm = (mark == U',' || mark == U'#') && at(m_place + 1) == mark && beginsItem(m_place);
        return isKeyForm && at(m_place + 2 + runOf(m_text.substr(m_place + 2), isNameCharacter).size()) == mark
                   ? m_place + 2
                   : 0;
    }

    bool takeServer() {
        const std::size_t place = serverPlace();
        if (place == 0)
            return false;
        if (at(m_place) == U'/' && takeMailboxAt(place))
            return true;
        const PageTextView name = withoutDotsBehind(runOf(m_text.substr(place), isNameCharacter));
        if (std::ranges::none_of(name, isWordCharacter) || isDriveColon(place + name.size()) ||
            lowerCase(name) == U"localhost")
            return false;
        if (physicalAt(m_text, place) == name.size())
            take(PartKind::Physical, place, name.size());
        else
            takeComputer(place, name);
        return true;
    }
    void takeComputer(std::size_t place, PageTextView name) {
        take(simwin::parseDotted(bytesOf(name)) ? PartKind::ServerAddress : PartKind::Computer, place, name.size());
    }

    bool takeForm(std::span<const PartForm> forms) {
        for (const PartForm& form : forms)
            if (const std::size_t length = form.lengthAt(m_text, m_place); length != 0) {
                take(form.kind, m_place, length);
                return true;
            }
        return false;
    }

    bool takeMailbox() { return !isMailboxCharacter(before(m_place)) && takeMailboxAt(m_place); }
    bool takeMailboxAt(std::size_t place) {
        const PageTextView user = runOf(m_text.substr(place), isMailboxCharacter);
        const std::size_t sign = place + user.size();
        if (at(sign) != U'@' || std::ranges::none_of(user, isWordCharacter))
            return false;
        const PageTextView domain = withoutDotsBehind(runOf(m_text.substr(sign + 1), isNameCharacter));
        if (!isDomain(domain))
            return false;
        take(PartKind::User, place, user.size());
        takeComputer(sign + 1, domain);
        return true;
    }

    PageTextView m_text;
    std::size_t m_place = 0;
    std::size_t m_textStart = 0;
    std::vector<NamedPart> m_parts;
};

}  // namespace

bool isNameCharacter(char32_t character) {
    return isWordCharacter(character) || character == U'-' || character == U'_' || character == U'.';
}

std::vector<NamedPart> namedPartsOf(PageTextView text) {
    return Splitter(text).split();
}

}  // namespace kvstation
