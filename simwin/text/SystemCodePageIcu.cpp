#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "simwin/text/BestFit.h"
#include "simwin/text/SystemCodePage.h"

namespace simwin {
namespace {

struct Range {
    unsigned char first;
    unsigned char last;
};

struct KnownPage {
    const char* converter;
    unsigned number;
    std::array<Range, 2> leads{{{1, 0}, {1, 0}}};  // none
};

constexpr std::array<Range, 2> kLeads{{{0x81, 0xFE}, {1, 0}}};

// ICU's tables that are Windows' own, by the names that no alias changes.
constexpr KnownPage kPages[] = {
    {"ibm-437_P100-1995", 437},        {"ibm-850_P100-1995", 850},
    {"windows-874-2000", 874},         {"ibm-943_P15A-2003", 932, {{{0x81, 0x9F}, {0xE0, 0xFC}}}},
    {"windows-936-2000", 936, kLeads}, {"windows-949-2000", 949, kLeads},
    {"windows-950-2000", 950, kLeads}, {"ibm-5346_P100-1998", 1250},
    {"ibm-5347_P100-1998", 1251},      {"ibm-5348_P100-1997", 1252},
    {"ibm-5349_P100-1998", 1253},      {"ibm-5350_P100-1998", 1254},
    {"ibm-9447_P100-2002", 1255},      {"ibm-9448_X100-2005", 1256},
    {"ibm-9449_P100-2002", 1257},      {"ibm-5354_P100-1998", 1258}};

// Characters that Windows and ICU's table tell differently, both ways. None: Windows has no character there.
struct Deviation {
    unsigned page;
    unsigned char byte;
    std::optional<char16_t> character;
};

constexpr Deviation kDeviations[] = {
    // IBM's tables exchange three control characters, as the programs of its hosts expected.
    {437, 0x1A, u'\x1A'},   {437, 0x1C, u'\x1C'},       {437, 0x7F, u'\x7F'},
    {437, 0xE6, u'\u00B5'},  // the micro sign, not the letter mu
    {850, 0x1A, u'\x1A'},   {850, 0x1C, u'\x1C'},       {850, 0x7F, u'\x7F'},
    {932, 0x1A, u'\x1A'},   {932, 0x1C, u'\x1C'},       {932, 0x7F, u'\x7F'},
    {932, 0x80, u'\u0080'}, {1253, 0xAA, std::nullopt}, {1255, 0xCA, u'\u05BA'},  // later than the table
};

// Windows gives the bytes that are no character numbers of the private area, so that they survive the way there and
// back. ICU takes some of those for characters.
constexpr bool isPlaceholder(char16_t character) {
    return character >= 0xF880 && character <= 0xF8FF;
}

const KnownPage& pageOf(unsigned number) {
    for (const KnownPage& page : kPages)
        if (page.number == number)
            return page;
    throw std::out_of_range("no code page " + std::to_string(number));
}

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

Converter openConverter(unsigned number) {
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(pageOf(number).converter, &error));
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    if (U_FAILURE(error))
        throw std::runtime_error("ICU has no " + std::string(pageOf(number).converter) + ": " + u_errorName(error));
    return converter;
}

const Deviation* deviationAt(unsigned page, std::string_view bytes) {
    for (const Deviation& one : kDeviations)
        if (one.page == page && bytes.size() == 1 && one.byte == static_cast<unsigned char>(bytes[0]))
            return &one;
    return nullptr;
}

const Deviation* deviationOf(unsigned page, char16_t character) {
    for (const Deviation& one : kDeviations)
        if (one.page == page && one.character == character)
            return &one;
    return nullptr;
}

// Empty for a character that the page does not have; with `takesLike` the bytes of a like one instead.
std::string encoded(UConverter* converter, char16_t character, bool takesLike) {
    std::array<char, 4> bytes{};
    const UChar unit = character;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setFallback(converter, takesLike);
    const int length = ucnv_fromUChars(converter, bytes.data(), bytes.size(), &unit, 1, &error);
    return U_FAILURE(error) || length <= 0 ? std::string()
                                           : std::string(bytes.data(), static_cast<std::size_t>(length));
}

}  // namespace

struct SystemCodePage::Tables {
    unsigned number;
    Converter converter;
};

SystemCodePage::SystemCodePage(unsigned number)
    : m_tables(std::make_unique<Tables>(Tables{number, openConverter(number)})) {}

SystemCodePage::SystemCodePage(SystemCodePage&&) noexcept = default;
SystemCodePage::~SystemCodePage() = default;

bool SystemCodePage::isLead(unsigned char byte) const {
    const auto& leads = pageOf(m_tables->number).leads;
    return std::ranges::any_of(leads, [byte](Range one) { return byte >= one.first && byte <= one.last; });
}

std::optional<char16_t> SystemCodePage::decode(std::string_view bytes) const {
    if (const Deviation* deviation = deviationAt(m_tables->number, bytes))
        return deviation->character;
    std::array<UChar, 2> units{};
    UErrorCode error = U_ZERO_ERROR;
    const int length = ucnv_toUChars(m_tables->converter.get(), units.data(), units.size(), bytes.data(),
                                     static_cast<std::int32_t>(bytes.size()), &error);
    if (U_FAILURE(error) || length != 1 || (bytes.size() == 1 && isPlaceholder(units[0])))
        return std::nullopt;
    return units[0];
}

std::string SystemCodePage::encode(char16_t character) const {
    if (const Deviation* deviation = deviationOf(m_tables->number, character))
        return std::string(1, static_cast<char>(deviation->byte));
    UConverter* converter = m_tables->converter.get();
    // Two of ICU's characters have bytes that mean another one.
    if (std::string same = encoded(converter, character, false); !same.empty() && decode(same) == character)
        return same;
    if (const std::optional<std::string> like = bestFit(m_tables->number, character))
        return *like;
    const std::string like = encoded(converter, character, true);
    return like == "?" ? std::string() : like;
}

// Windows knows letters in pairs alone: a final sigma, the micro sign and the Turkish i's of another language have no
// other case.
char32_t systemUpperCase(char32_t character) {
    const UChar32 upper = u_toupper(static_cast<UChar32>(character));
    return u_tolower(upper) == static_cast<UChar32>(character) ? static_cast<char32_t>(upper) : character;
}

char32_t systemLowerCase(char32_t character) {
    const UChar32 lower = u_tolower(static_cast<UChar32>(character));
    return u_toupper(lower) == static_cast<UChar32>(character) ? static_cast<char32_t>(lower) : character;
}

}  // namespace simwin
