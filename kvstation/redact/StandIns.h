// Stand-ins for words, addresses and numbers that must not leave a house: of the same length and form, and the same
// one for the same text wherever it stands.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "kvstation/redact/Beginnings.h"
#include "kvstation/redact/Chance.h"
#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/PageText.h"
#include "kvstation/redact/TextForm.h"
#include "kvstation/redact/TextPlace.h"

namespace kvstation {

class StandIns {
  public:
    // Words that stay wherever they stand but in a text that is secret as a whole: the module asks for them.
    explicit StandIns(std::set<PageText> vocabulary);
    StandIns(const StandIns&) = delete;
    StandIns& operator=(const StandIns&) = delete;

    // From now on inside() replaces every word that isTelling too.
    void leaveNothing() { m_leavesNothing = true; }

    // Every word of the text is a secret from now on, and so is what "-", "_" and "." join: of PC-17, whose words are
    // too short to look for, or too common, the whole is.
    void addName(std::string_view text);
    // What the text shows by its form.
    void learn(std::string_view text, TextPlace place = TextPlace::Anywhere);

    // The text with all its words replaced.
    std::string whole(std::string_view text);
    // The text with the secrets in it replaced: whole words, long ones inside longer words too, in any letter case.
    // Where the form shows a name, all its words that learn() met, the short and the common ones too.
    std::string inside(std::string_view text, TextPlace place = TextPlace::Anywhere) {
        return replaced(text, place, m_leavesNothing);
    }
    // The same, but that what nobody knows to be a secret stays after leaveNothing() too.
    std::string insideKnown(std::string_view text, TextPlace place) { return replaced(text, place, false); }

    // Those for one of kTextForms, which inside() and learn() ask too.
    FormStandIns& of(const TextForm& form) { return *m_forms.at(&form); }
    // Replaces in binary data what has a form as bytes and is known.
    void replaceIn(std::string& data);
    // Another number of as many digits; 0 stays.
    std::uint32_t number(std::uint32_t value);

  private:
    struct Word {
        PageText standIn;
        bool standsAlone;  // looked for by itself, not only within what it is joined to
    };
    PageText make(PageTextView word);
    const PageText& standInFor(const PageText& lowerWord);
    void addMadeWord(const PageText& lowerWord, const PageText& standIn);
    void lookFor(const PageText& lowerWord);
    void addNames(PageTextView text);
    void addJoined(PageTextView joined);
    bool isUsable(const PageText& secret, TextPlace place) const;
    PageText knownWords(PageTextView text) const;
    std::size_t joinedAt(PageTextView text, PageTextView lowerText, std::size_t place) const;
    std::string replaced(std::string_view text, TextPlace place, bool othersToo);
    PageText replacePart(const NamedPart& part, TextPlace place, bool othersToo);
    PageText replaceText(PageTextView text, TextPlace place, bool othersToo);
    PageText replaceWord(PageTextView word, bool isShortName, TextPlace place) const;
    PageText replaceInside(PageTextView word, const PageText& lowerWord, TextPlace place) const;
    PageText shortNameOf(const PageText& lowerWord, TextPlace place) const;
    PageText replaceOther(PageTextView word);
    PageText makeFree(const PageText& lowerWord);

    std::set<PageText> m_vocabulary;
    std::map<PageText, Word> m_words;       // in lower case
    std::map<PageText, PageText> m_others;  // in lower case: what could tell something
    bool m_leavesNothing = false;
    std::set<PageText> m_made;           // the stand-ins of words
    BasicBeginnings<PageText> m_joined;  // in lower case
    // Those of the words that are looked for inside longer ones, and the longest by how its short name begins, apart
    // for words with a letter and for numbers.
    BasicBeginnings<PageText> m_inside;
    std::array<std::map<PageText, PageText>, 2> m_longest;
    Chance m_chance;
    std::map<const TextForm*, std::unique_ptr<FormStandIns>> m_forms;
    std::map<std::uint32_t, std::uint32_t> m_numbers;
};

// The words of a text, in lower case: runs of letters and digits.
std::set<PageText> wordsOf(PageTextView text);

}  // namespace kvstation
