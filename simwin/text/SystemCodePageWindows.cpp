#include <stdexcept>

#include "framework/Windows.h"
#include "simwin/text/SystemCodePage.h"

namespace simwin {

struct SystemCodePage::Tables {
    unsigned number;
};

SystemCodePage::SystemCodePage(unsigned number) : m_tables(std::make_unique<Tables>(Tables{number})) {
    if (IsValidCodePage(number) == FALSE)
        throw std::out_of_range("no code page " + std::to_string(number));
}

SystemCodePage::SystemCodePage(SystemCodePage&&) noexcept = default;
SystemCodePage::~SystemCodePage() = default;

bool SystemCodePage::isLead(unsigned char byte) const {
    return IsDBCSLeadByteEx(m_tables->number, byte) != FALSE;
}

std::optional<char16_t> SystemCodePage::decode(std::string_view bytes) const {
    WCHAR units[2];
    const int length = MultiByteToWideChar(m_tables->number, MB_ERR_INVALID_CHARS, bytes.data(),
                                           static_cast<int>(bytes.size()), units, 2);
    return length == 1 ? std::optional(static_cast<char16_t>(units[0])) : std::nullopt;
}

std::string SystemCodePage::encode(char16_t character) const {
    const auto unit = static_cast<WCHAR>(character);
    char bytes[2];
    BOOL isReplaced = FALSE;
    const int length = WideCharToMultiByte(m_tables->number, 0, &unit, 1, bytes, sizeof bytes, nullptr, &isReplaced);
    return isReplaced != FALSE || length <= 0 ? std::string() : std::string(bytes, static_cast<std::size_t>(length));
}

namespace {

// Beyond 16 bits two units stand for a letter.
char32_t mapped(char32_t character, DWORD mapping) {
    const bool isPair = character > 0xFFFF;
    WCHAR units[2] = {static_cast<WCHAR>(isPair ? 0xD800 + ((character - 0x10000) >> 10) : character),
                      static_cast<WCHAR>(0xDC00 + ((character - 0x10000) & 0x3FF))};
    const int length = isPair ? 2 : 1;
    WCHAR result[2];
    if (LCMapStringW(LOCALE_INVARIANT, mapping, units, length, result, length) != length)
        return character;
    return isPair ? 0x10000 + ((result[0] & 0x3FFu) << 10 | (result[1] & 0x3FFu)) : char32_t{result[0]};
}

}  // namespace

char32_t systemUpperCase(char32_t character) {
    return mapped(character, LCMAP_UPPERCASE);
}

char32_t systemLowerCase(char32_t character) {
    return mapped(character, LCMAP_LOWERCASE);
}

}  // namespace simwin
