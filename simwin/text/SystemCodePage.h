// What the system itself knows of code pages and letters: Windows on Windows, ICU elsewhere.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace simwin {

// The tables of one single- or double-byte code page. Not for use by two threads at once.
class SystemCodePage {
  public:
    // Throws std::out_of_range where the system has no such page.
    explicit SystemCodePage(unsigned number);
    SystemCodePage(SystemCodePage&&) noexcept;
    ~SystemCodePage();

    // The first byte of two.
    bool isLead(unsigned char byte) const;
    // One character's one or two bytes; none where they are no character.
    std::optional<char16_t> decode(std::string_view bytes) const;
    // The character's bytes, or those of a like one that Windows takes for it; empty when there is neither.
    std::string encode(char16_t character) const;

  private:
    struct Tables;
    std::unique_ptr<Tables> m_tables;
};

// A letter's other case, where the two are a pair; any other character as it is.
char32_t systemUpperCase(char32_t character);
char32_t systemLowerCase(char32_t character);

}  // namespace simwin
