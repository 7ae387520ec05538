#include "kvstation/redact/NamedParts.h"

#include <algorithm>

namespace kvstation {
namespace {

constexpr PageTextView kUncPrefix = U"?\\unc\\";  // of \\?\UNC\server\share

bool isSlash(char32_t character) {
    return character == U'\\' || character == U'/';
}
bool isMailboxCharacter(char32_t character) {
    return isNameCharacter(character) || character == U'+';
}

// "i7@2.40GHz" is no mailbox: the last piece of a domain without a form begins with a letter, and one letter is none.
bool isDomain(PageTextView text, const TextForm* form) {
    if (text.empty() || !isWordCharacter(text.front()))
        return false;
    const PageTextView last = text.substr(text.rfind(U'.') + 1);
    return form != nullptr || (last.size() > 1 && isLetter(last.front()));
}

class Splitter {
  public:
    explicit Splitter(PageTextView text) : m_text(text) {}

    std::vector<NamedPart> split() {
        while (m_place < m_text.size())
            if (!takeServer() && !takeFormOrMailbox())
                ++m_place;
        endText(m_text.size());
        return std::move(m_parts);
    }

  private:
    char32_t before(std::size_t place) const { return characterBefore(m_text, place); }
    char32_t at(std::size_t place) const { return characterAt(m_text, place); }

    void endText(std::size_t end) {
        if (end > m_textStart)
            m_parts.push_back({PartKind::Text, nullptr, m_text.substr(m_textStart, end - m_textStart)});
        m_textStart = end;
    }
    void take(PartKind kind, const TextForm* form, std::size_t place, std::size_t length) {
        endText(place);
        m_parts.push_back({kind, form, m_text.substr(place, length)});
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
        take(PartKind::Computer, formOf(place, name.size()), place, name.size());
        return true;
    }

    // The form of so much of the text, or null.
    const TextForm* formOf(std::size_t place, std::size_t length) const {
        const auto* const form = std::ranges::find_if(
            kTextForms, [&](const TextForm* one) { return one->lengthAt(m_text, place) == length; });
        return form != std::end(kTextForms) ? *form : nullptr;
    }

    bool takeFormOrMailbox() {
        for (const TextForm* form : kTextForms)
            if (const std::size_t length = form->lengthAt(m_text, m_place); length != 0) {
                if (!form->isInMailboxes || !takeMailbox())
                    take(PartKind::Text, form, m_place, length);
                return true;
            }
        return takeMailbox();
    }

    bool takeMailbox() { return !isMailboxCharacter(before(m_place)) && takeMailboxAt(m_place); }
    bool takeMailboxAt(std::size_t place) {
        const PageTextView user = runOf(m_text.substr(place), isMailboxCharacter);
        const std::size_t sign = place + user.size();
        if (at(sign) != U'@' || std::ranges::none_of(user, isWordCharacter))
            return false;
        const PageTextView domain = withoutDotsBehind(runOf(m_text.substr(sign + 1), isNameCharacter));
        const TextForm* whole = formOf(sign + 1, domain.size());
        const TextForm* form = whole != nullptr && whole->isInMailboxes ? whole : nullptr;
        if (!isDomain(domain, form))
            return false;
        take(PartKind::User, nullptr, place, user.size());
        take(PartKind::Computer, form, sign + 1, domain.size());
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
