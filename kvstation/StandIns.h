// Stand-ins for words, addresses and numbers that must not leave a house: of the same length and form, and the same
// one for the same text wherever it stands.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace kvstation {

class StandIns {
  public:
    // Words that stay wherever they stand but in a text that is secret as a whole: the module asks for them.
    explicit StandIns(std::set<std::string> vocabulary) : m_vocabulary(std::move(vocabulary)) {}

    // Every word of the text is a secret from now on.
    void addWords(std::string_view text);
    // A dotted IPv4 address; 0.0.0.0, 127.0.0.1 and what begins with 255 are nobody's.
    void addAddress(std::string_view dotted);
    // A physical address' bytes.
    void addPhysical(std::string_view bytes);

    // The text with all its words replaced.
    std::string whole(std::string_view text);
    // The text with the secrets in it replaced: whole words, long ones inside longer words too, in any letter case.
    std::string inside(std::string_view text) const;

    std::string address(std::string_view dotted) const;
    std::string physical(std::string_view bytes) const;
    // Another number of as many digits; 0 stays.
    std::uint32_t number(std::uint32_t value);

  private:
    unsigned next(unsigned below);
    std::string make(std::string_view word);
    const std::string& standInFor(const std::string& lowerWord);
    std::string replaceWord(std::string_view word, bool isShortName) const;

    std::set<std::string> m_vocabulary;
    std::map<std::string, std::string> m_words;      // in lower case
    std::map<std::string, std::string> m_addresses;  // dotted
    std::map<std::string, std::string> m_physical;   // bytes
    std::map<std::uint32_t, std::uint32_t> m_numbers;
    std::uint32_t m_state = 1;
};

// The words of a text, in lower case: runs of letters and digits.
std::set<std::string> wordsOf(std::string_view text);

}  // namespace kvstation
