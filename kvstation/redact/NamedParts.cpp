#include "kvstation/redact/NamedParts.h"

#include <algorithm>

#include "kvstation/redact/LongAddress.h"
#include "simwin/text/Address.h"

namespace kvstation {
namespace {

constexpr std::size_t kFewestPairs = 6;
constexpr std::size_t kMostPairs = 16;
constexpr PageTextView kUncPrefix = U"?\\unc\\";  // of \\?\UNC\server\share

bool isSlash(char32_t character) {
    return character == U'\\' || character == U'/';
}
bool isMailboxCharacter(char32_t character) {
    return isNameCharacter(character) || character == U'+';
}
bool isOfLongAddress(char32_t character) {
    return isHexDigit(character) || character == U':';
}
bool isDotted(char32_t character) {
    return isDigit(character) || character == U'.';
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

class Splitter {
  public:
    explicit Splitter(PageTextView text) : m_text(text) {}

    std::vector<NamedPart> split() {
        while (m_place < m_text.size())
            if (!takeServer() && !takePhysical() && !takeLongAddress() && !takeMailbox() && !takeAddress())
                ++m_place;
        endText(m_text.size());
        return std::move(m_parts);
    }

  private:
    char32_t before(std::size_t place) const { return place == 0 ? U'\0' : m_text[place - 1]; }
    char32_t at(std::size_t place) const { return place < m_text.size() ? m_text[place] : U'\0'; }

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
        if (pairsAt(place) == name.size())
            take(PartKind::Physical, place, name.size());
        else
            takeComputer(place, name);
        return true;
    }
    void takeComputer(std::size_t place, PageTextView name) {
        take(simwin::parseDotted(bytesOf(name)) ? PartKind::ServerAddress : PartKind::Computer, place, name.size());
    }

    // The length of joined pairs, or 0.
    std::size_t pairsAt(std::size_t start) const {
        const char32_t joint = at(start + 2);
        if ((joint != U'-' && joint != U':') || isWordCharacter(before(start)))
            return 0;
        std::size_t pairs = 0;
        std::size_t place = start;
        while (isHexDigit(at(place)) && isHexDigit(at(place + 1)) && !isWordCharacter(at(place + 2))) {
            ++pairs;
            place += 2;
            if (at(place) != joint)
                break;
            ++place;
        }
        if (at(place - 1) == joint)
            --place;
        return pairs >= kFewestPairs && pairs <= kMostPairs ? place - start : 0;
    }
    bool takePhysical() {
        const std::size_t length = pairsAt(m_place);
        if (length != 0)
            take(PartKind::Physical, m_place, length);
        return length != 0;
    }

    // Eight pairs joined by ":" are a physical address.
    bool takeLongAddress() {
        const char32_t first = at(m_place);
        if ((!isHexDigit(first) && first != U':') || isWordCharacter(before(m_place)) || before(m_place) == U':')
            return false;
        PageTextView run = runOf(m_text.substr(m_place), isOfLongAddress);
        const std::size_t end = m_place + run.size();
        const bool endsDotted = at(end) == U'.' && isDigit(at(end + 1));  // ::ffff:10.0.0.5
        if (isWordCharacter(at(end)) || endsDotted)
            return false;
        if (run.ends_with(U':') && !run.ends_with(U"::"))
            run.remove_suffix(1);
        if (!parseIPv6(bytesOf(run)))
            return false;
        take(PartKind::LongAddress, m_place, run.size());
        return true;
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

    // Four numbers up to 255 and no fifth. "v1.2.3.4" says itself that it is a version.
    bool takeAddress() {
        const bool goesOn = before(m_place) == U'.' ? isDigit(before(m_place - 1)) : isDigit(before(m_place));
        if (!isDigit(at(m_place)) || goesOn)
            return false;
        const PageTextView run = withoutDotsBehind(runOf(m_text.substr(m_place), isDotted));
        const bool saysVersion =
            m_place != 0 && toLower(before(m_place)) == U'v' && (m_place == 1 || !isWordCharacter(m_text[m_place - 2]));
        if (saysVersion || !simwin::parseDotted(bytesOf(run)))
            return false;
        take(PartKind::Address, m_place, run.size());
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
