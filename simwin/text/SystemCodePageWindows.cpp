#include <stdexcept>

#include "framework/Windows.h"
#include "simwin/text/SystemCodePage.h"
#include "simwin/text/Utf16.h"

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

char32_t mapped(char32_t character, DWORD mapping) {
    std::u16string units;
    appendUtf16(units, character);
    const std::wstring wide(units.begin(), units.end());
    const int length = static_cast<int>(wide.size());
    WCHAR result[2];
    if (LCMapStringW(LOCALE_INVARIANT, mapping, wide.data(), length, result, length) != length)
        return character;
    return decodeUtf16(std::u16string(result, result + length)).character;
}

}  // namespace

char32_t systemUpperCase(char32_t character) {
    return mapped(character, LCMAP_UPPERCASE);
}

char32_t systemLowerCase(char32_t character) {
    return mapped(character, LCMAP_LOWERCASE);
}

}  // namespace simwin
