// The tables of one single- or double-byte code page, made from what the system knows of it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simwin/text/SystemCodePage.h"

namespace simwin {

// Not for use by two threads at once. A character is its code here: its byte, or the first of its two bytes times 256
// and the second.
class CodePageTables {
  public:
    // Throws std::out_of_range where the system has no such page.
    explicit CodePageTables(unsigned number);

    // The page as such a table; made at its first use, and kept. Throws as the constructor does.
    static const CodePageTables& of(unsigned number);

    bool isLead(unsigned char byte) const noexcept { return m_isLead[byte]; }
    bool hasDoubleBytes() const noexcept { return m_characters.size() > 256; }

    // None where the bytes are no character.
    std::optional<char16_t> character(std::uint16_t code) const noexcept;
    // None for a character that the page does not hold.
    std::optional<std::uint16_t> code(char32_t character) const noexcept;
    // The bytes of the character, or of the one that Windows takes for it; empty when there is neither.
    std::string likeBytes(char16_t character) const;

    std::uint16_t upper(std::uint16_t code) const noexcept { return m_upper[code]; }
    std::uint16_t lower(std::uint16_t code) const noexcept { return m_lower[code]; }

  private:
    void readCharacters();
    void addCharacter(std::uint16_t code, const std::string& bytes);
    void makeCases();
    std::uint16_t otherCase(std::uint16_t code, char32_t (*mapped)(char32_t)) const;

    SystemCodePage m_system;
    std::array<bool, 256> m_isLead{};
    std::vector<char16_t> m_characters;  // by code
    std::vector<std::uint16_t> m_codes;  // by character
    std::vector<std::uint16_t> m_upper;  // by code
    std::vector<std::uint16_t> m_lower;  // by code
};

}  // namespace simwin
