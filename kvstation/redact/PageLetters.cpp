#include "kvstation/redact/PageLetters.h"

#include <array>
#include <string>

#include "kvstation/Errors.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr int kFirstBeyondAscii = 0x80;
constexpr int kFirstLetterOf1252 = 0xC0;
constexpr int kBytes = 0x100;

struct Letters {
    unsigned page = 0;
    std::array<bool, kBytes> isLetter{};
    std::string standIns;
};

Letters lettersOf(unsigned page) {
    Letters letters;
    letters.page = page;
    std::string all;
    for (int i = page == simwin::kDefaultCodePage ? kFirstLetterOf1252 : kFirstBeyondAscii; i < kBytes; ++i) {
        const char character = static_cast<char>(i);
        if (!simwin::survivesUtf8({&character, 1}))
            continue;
        letters.isLetter[static_cast<std::size_t>(i)] = true;
        all += character;
    }
    // Of 1252's y with two dots the capital is no letter here.
    for (const char character : all)
        if (const char capital = simwin::toUpper(character);
            capital != character && letters.isLetter[static_cast<unsigned char>(capital)])
            letters.standIns += character;
    if (letters.standIns.empty())
        letters.standIns = all;
    return letters;
}

const Letters& lettersInForce() {
    static Letters letters = lettersOf(simwin::codePageInForce());
    if (letters.page != simwin::codePageInForce())
        letters = lettersOf(simwin::codePageInForce());
    return letters;
}

}  // namespace

bool isPageLetter(char character) {
    return lettersInForce().isLetter[static_cast<unsigned char>(character)];
}

std::string_view pageLetters() {
    return lettersInForce().standIns;
}

void refuseWidePage(unsigned number) {
    const simwin::CodePageScope scope(number);
    bool isWide = number == simwin::kUtf8CodePage;
    for (int i = kFirstBeyondAscii; i < kBytes; ++i)
        isWide = isWide || simwin::isLeadByte(static_cast<char>(i));
    if (isWide)
        throw Failure("a station of code page " + std::to_string(number) +
                      " cannot be redacted: its characters take more than one byte");
}

}  // namespace kvstation
