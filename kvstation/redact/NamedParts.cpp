#include "kvstation/redact/NamedParts.h"

#include <algorithm>

#include "kvstation/redact/LongAddress.h"
#include "kvstation/redact/PageLetters.h"
#include "simwin/Address.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kFewestPairs = 6;
constexpr std::size_t kMostPairs = 16;
constexpr std::string_view kUncPrefix = "?\\UNC\\";  // of \\?\UNC\server\share

bool isHexDigit(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
}
bool isSlash(char character) {
    return character == '\\' || character == '/';
}
bool isMailboxCharacter(char character) {
    return isNameCharacter(character) || character == '+';
}
bool isOfLongAddress(char character) {
    return isHexDigit(character) || character == ':';
}
bool isDotted(char character) {
    return isDigit(character) || character == '.';
}

std::string_view runOf(std::string_view text, bool (*belongs)(char)) {
    const auto end = std::ranges::find_if_not(text, belongs);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::string_view withoutDotsBehind(std::string_view text) {
    while (text.ends_with('.'))
        text.remove_suffix(1);
    return text;
}

// "i7@2.40GHz" is no mailbox: the last piece of a domain begins with a letter, and one letter is none.
bool isDomain(std::string_view text) {
    if (text.empty() || !isWordCharacter(text.front()))
        return false;
    const std::string_view last = text.substr(text.rfind('.') + 1);
    return simwin::parseDotted(text) || (last.size() > 1 && isLetter(last.front()));
}

class Splitter {
  public:
    explicit Splitter(std::string_view text) : m_text(text) {}

    std::vector<NamedPart> split() {
        while (m_place < m_text.size())
            if (!takeServer() && !takePhysical() && !takeLongAddress() && !takeMailbox() && !takeAddress())
                ++m_place;
        endText(m_text.size());
        return std::move(m_parts);
    }

  private:
    char before(std::size_t place) const { return place == 0 ? '\0' : m_text[place - 1]; }
    char at(std::size_t place) const { return place < m_text.size() ? m_text[place] : '\0'; }

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
        return at(place) == ':' && place > 0 && isLetter(m_text[place - 1]) &&
               (place == 1 || !isWordCharacter(m_text[place - 2]));
    }
    bool beginsItem(std::size_t place) const { return before(place) == '\0' || before(place) == '\\'; }

    // Where a server's name begins, when what tells so stands here. Two slashes within a path, as in C:\\x, do not.
    std::size_t serverPlace() const {
        const char mark = at(m_place);
        if (isSlash(mark) && at(m_place + 1) == mark) {
            constexpr std::string_view kInPaths = "%)]}\\/._-~$";
            const char previous = before(m_place);
            if (isWordCharacter(previous) || (m_place != 0 && kInPaths.find(previous) != std::string_view::npos) ||
                (m_place != 0 && isDriveColon(m_place - 1)))
                return 0;
            std::size_t place = m_text.find_first_not_of(mark, m_place);
            place = std::min(place, m_text.size());
            if (simwin::equalNoCase(m_text.substr(place, kUncPrefix.size()), kUncPrefix))
                place += kUncPrefix.size();
            return place;
        }
        // As a connection to a printer and a mounted share stand in names of keys, which hold no backslash.
        const bool isKeyForm = (mark == ',' || mark == '#') && at(m_place + 1) == mark && beginsItem(m_place);
        return isKeyForm && at(m_place + 2 + runOf(m_text.substr(m_place + 2), isNameCharacter).size()) == mark
                   ? m_place + 2
                   : 0;
    }

    bool takeServer() {
        const std::size_t place = serverPlace();
        if (place == 0)
            return false;
        if (at(m_place) == '/' && takeMailboxAt(place))
            return true;
        const std::string_view name = withoutDotsBehind(runOf(m_text.substr(place), isNameCharacter));
        if (std::ranges::none_of(name, isWordCharacter) || isDriveColon(place + name.size()) ||
            simwin::equalNoCase(name, "localhost"))
            return false;
        if (pairsAt(place) == name.size())
            take(PartKind::Physical, place, name.size());
        else
            takeComputer(place, name);
        return true;
    }
    void takeComputer(std::size_t place, std::string_view name) {
        take(simwin::parseDotted(name) ? PartKind::ServerAddress : PartKind::Computer, place, name.size());
    }

    // The length of joined pairs, or 0.
    std::size_t pairsAt(std::size_t start) const {
        const char joint = at(start + 2);
        if ((joint != '-' && joint != ':') || isWordCharacter(before(start)))
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
        const char first = at(m_place);
        if ((!isHexDigit(first) && first != ':') || isWordCharacter(before(m_place)) || before(m_place) == ':')
            return false;
        std::string_view run = runOf(m_text.substr(m_place), isOfLongAddress);
        const std::size_t end = m_place + run.size();
        const bool endsDotted = at(end) == '.' && isDigit(at(end + 1));  // ::ffff:10.0.0.5
        if (isWordCharacter(at(end)) || endsDotted)
            return false;
        if (run.ends_with(':') && !run.ends_with("::"))
            run.remove_suffix(1);
        if (!parseIPv6(run))
            return false;
        take(PartKind::LongAddress, m_place, run.size());
        return true;
    }

    bool takeMailbox() { return !isMailboxCharacter(before(m_place)) && takeMailboxAt(m_place); }
    bool takeMailboxAt(std::size_t place) {
        const std::string_view user = runOf(m_text.substr(place), isMailboxCharacter);
        const std::size_t sign = place + user.size();
        if (at(sign) != '@' || std::ranges::none_of(user, isWordCharacter))
            return false;
        const std::string_view domain = withoutDotsBehind(runOf(m_text.substr(sign + 1), isNameCharacter));
        if (!isDomain(domain))
            return false;
        take(PartKind::User, place, user.size());
        takeComputer(sign + 1, domain);
        return true;
    }

    // Four numbers up to 255 and no fifth. "v1.2.3.4" says itself that it is a version.
    bool takeAddress() {
        const bool goesOn = before(m_place) == '.' ? isDigit(before(m_place - 1)) : isDigit(before(m_place));
        if (!isDigit(at(m_place)) || goesOn)
            return false;
        const std::string_view run = withoutDotsBehind(runOf(m_text.substr(m_place), isDotted));
        const bool saysVersion = m_place != 0 && simwin::toLower(before(m_place)) == 'v' &&
                                 (m_place == 1 || !isWordCharacter(m_text[m_place - 2]));
        if (saysVersion || !simwin::parseDotted(run))
            return false;
        take(PartKind::Address, m_place, run.size());
        return true;
    }

    std::string_view m_text;
    std::size_t m_place = 0;
    std::size_t m_textStart = 0;
    std::vector<NamedPart> m_parts;
};

}  // namespace

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
bool isWordCharacter(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           isPageLetter(character);
}
bool isLetter(char character) {
    return isWordCharacter(character) && !isDigit(character);
}
bool isNameCharacter(char character) {
    return isWordCharacter(character) || character == '-' || character == '_' || character == '.';
}

std::vector<NamedPart> namedPartsOf(std::string_view text) {
    return Splitter(text).split();
}

}  // namespace kvstation
