#include "simwin/text/CodePageTables.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace simwin {
namespace {

constexpr char16_t kNoCharacter = 0xFFFF;
constexpr std::uint16_t kNoCode = 0xFFFF;

std::uint16_t codeOf(const std::string& bytes) {
    std::uint16_t code = 0;
    for (const char byte : bytes)
        code = static_cast<std::uint16_t>(code << 8 | static_cast<unsigned char>(byte));
    return code;
}

std::string bytesOf(unsigned lead, unsigned trail) {
    return {static_cast<char>(lead), static_cast<char>(trail)};
}

}  // namespace

const CodePageTables& CodePageTables::of(unsigned number) {
    static std::map<unsigned, CodePageTables> pages;
    return pages.try_emplace(number, number).first->second;
}

CodePageTables::CodePageTables(unsigned number) : m_system(number), m_codes(0x10000, kNoCode) {
    for (unsigned byte = 0; byte < 256; ++byte)
        m_isLead[byte] = m_system.isLead(static_cast<unsigned char>(byte));
    const bool isDouble = std::ranges::find(m_isLead, true) != m_isLead.end();
    m_characters.assign(isDouble ? 0x10000 : 0x100, kNoCharacter);
    readCharacters();
    makeCases();
}

void CodePageTables::readCharacters() {
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (!m_isLead[byte]) {
            addCharacter(static_cast<std::uint16_t>(byte), std::string(1, static_cast<char>(byte)));
            continue;
        }
        for (unsigned trail = 1; trail < 256; ++trail)
            addCharacter(static_cast<std::uint16_t>(byte << 8 | trail), bytesOf(byte, trail));
    }
}

// Where several codes mean one character, the system tells which of them it writes.
void CodePageTables::addCharacter(std::uint16_t code, const std::string& bytes) {
    const std::optional<char16_t> character = m_system.decode(bytes);
    if (!character)
        return;
    m_characters[code] = *character;
    std::uint16_t& known = m_codes[*character];
    known = known == kNoCode ? code : codeOf(m_system.encode(*character));
}

void CodePageTables::makeCases() {
    m_upper.resize(m_characters.size());
    std::iota(m_upper.begin(), m_upper.end(), std::uint16_t{0});
    m_lower = m_upper;
    for (std::size_t place = 0; place < m_characters.size(); ++place) {
        if (m_characters[place] == kNoCharacter)
            continue;
        const auto code = static_cast<std::uint16_t>(place);
        m_upper[place] = otherCase(code, systemUpperCase);
        m_lower[place] = otherCase(code, systemLowerCase);
    }
}

std::uint16_t CodePageTables::otherCase(std::uint16_t self, char32_t (*mapped)(char32_t)) const {
    const std::optional<std::uint16_t> found = code(mapped(m_characters[self]));
    // The length of a text stays.
    return found && (*found > 0xFF) == (self > 0xFF) ? *found : self;
}

std::optional<char16_t> CodePageTables::character(std::uint16_t code) const noexcept {
    const char16_t found = m_characters[code];
    return found != kNoCharacter ? std::optional(found) : std::nullopt;
}

std::optional<std::uint16_t> CodePageTables::code(char32_t character) const noexcept {
    const std::uint16_t found = character < 0x10000 ? m_codes[character] : kNoCode;
    return found != kNoCode ? std::optional(found) : std::nullopt;
}

std::string CodePageTables::likeBytes(char16_t character) const {
    return m_system.encode(character);
}

}  // namespace simwin
