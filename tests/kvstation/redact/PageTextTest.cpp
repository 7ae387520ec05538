#include "kvstation/redact/PageText.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "simwin/text/CodePage.h"

namespace kvtest {
namespace {

using kvstation::PageText;
using kvstation::pageText;

TEST(PageText, GivesTheBytesBackInEveryPage) {
    std::mt19937 random(1);
    for (const unsigned page : simwin::knownCodePages()) {
        const simwin::CodePageScope scope(page);
        std::string bytes;
        for (int i = 0; i < 20000; ++i)
            bytes += static_cast<char>(static_cast<unsigned char>(random() % 256));
        const PageText text = pageText(bytes);
        EXPECT_EQ(kvstation::bytesOf(text), bytes) << page;
        EXPECT_EQ(kvstation::sizeOf(text), bytes.size()) << page;
    }
}

TEST(PageText, HoldsACharacterOfSeveralBytesAsOne) {
    {
        const simwin::CodePageScope scope(932);
        EXPECT_EQ(pageText("\x83\x5C-1\xB1\x83"), (PageText{0x835C, U'-', U'1', 0xB1, 0x83}));
    }
    const simwin::CodePageScope scope(65001);
    EXPECT_EQ(pageText("a\xC3\xA9\xE5\xB1\xB1\xF0\xA0\xAE\xB7\xE5"),
              (PageText{U'a', 0xC3A9, 0xE5B1B1, 0xF0A0AEB7, 0xE5}));
}

std::string nameOf(unsigned page, char32_t character) {
    return std::to_string(page) + ": " + std::to_string(std::uint32_t{character});
}

struct CharacterKind {
    unsigned page;
    char32_t character;
    bool isLetter;
    char32_t upper;
    char32_t lower;
    std::size_t weight;
};

constexpr CharacterKind kCharacterKinds[] = {
    {1252, U'a', true, U'A', U'a', 1},
    {1252, U'7', false, U'7', U'7', 1},
    {1252, U'_', false, U'_', U'_', 1},
    {1252, 0x80, false, 0x80, 0x80, 1},       // the euro's sign
    {1252, 0x8A, true, 0x8A, 0x9A, 1},        // S with a caron
    {1252, 0xC9, true, 0xC9, 0xE9, 1},        // E with an acute
    {1252, 0xD7, false, 0xD7, 0xD7, 1},       // the sign of a product
    {1252, 0xDF, true, 0xDF, 0xDF, 1},        // sharp s
    {1251, 0xE0, true, 0xC0, 0xE0, 1},        // the first letter
    {874, 0xA1, true, 0xA1, 0xA1, 1},         // ko kai
    {932, 0x8140, false, 0x8140, 0x8140, 3},  // an ideographic space
    {932, 0x8145, false, 0x8145, 0x8145, 3},  // a dot between words
    {932, 0x815B, true, 0x815B, 0x815B, 3},   // what makes a vowel long
    {932, 0x8260, true, 0x8260, 0x8281, 3},   // a wide Latin A
    {932, 0x8E52, true, 0x8E52, 0x8E52, 3},   // a mountain
    {932, 0xB1, true, 0xB1, 0xB1, 3},         // a narrow kana
    {932, 0x81, false, 0x81, 0x81, 1},        // half a character
    {949, 0xB1E8, true, 0xB1E8, 0xB1E8, 3},   // Gim
    {65001, 0xC3A9, true, 0xC389, 0xC3A9, 1},
    {65001, 0xC4B0, true, 0xC4B0, 0xC4B0, 1},        // I with a dot, whose small letter takes one byte
    {65001, 0xE5B1B1, true, 0xE5B1B1, 0xE5B1B1, 3},  // a mountain
    {65001, 0xE2809C, false, 0xE2809C, 0xE2809C, 1},
    {65001, 0xE5, false, 0xE5, 0xE5, 1},
};

TEST(PageText, KnowsLettersTheirCaseAndHowMuchTheyTell) {
    for (const CharacterKind& kind : kCharacterKinds) {
        const simwin::CodePageScope scope(kind.page);
        const std::string told = nameOf(kind.page, kind.character);
        EXPECT_EQ(kvstation::isLetter(kind.character), kind.isLetter) << told;
        EXPECT_EQ(kvstation::toUpper(kind.character), kind.upper) << told;
        EXPECT_EQ(kvstation::toLower(kind.character), kind.lower) << told;
        EXPECT_EQ(kvstation::weightOf({&kind.character, 1}), kind.weight) << told;
    }
}

// Every letter of the pages of one and two bytes.
PageText allLetters() {
    PageText letters;
    for (char32_t first = 0x80; first < 0x100; ++first) {
        if (!simwin::isLeadByte(static_cast<char>(first)) && kvstation::isLetter(first))
            letters += first;
        for (char32_t second = 0x40; simwin::isLeadByte(static_cast<char>(first)) && second < 0x100; ++second)
            if (kvstation::isLetter(first << 8 | second))
                letters += first << 8 | second;
    }
    return letters;
}

// What a reader of bytes makes of the second one.
char32_t readByBytes(char32_t character) {
    const char32_t last = character & 0xFF;
    return last < 0x80 ? last : 0x80;
}

TEST(PageText, LettersAreReplacedByOthersOfAsManyBytesThatReadersOfBytesTakeAlike) {
    for (const unsigned page : simwin::knownCodePages()) {
        const simwin::CodePageScope scope(page);
        const PageText letters = page == 65001
                                     ? pageText("\xC3\xA9\xD0\x96\xE5\xB1\xB1\xEA\xB9\x80\xE1\xBA\xBF\xF0\xA0\xAE\xB7")
                                     : allLetters();
        ASSERT_FALSE(letters.empty());
        std::set<const char32_t*> seen;
        for (const char32_t letter : letters) {
            const kvstation::PageTextView standIns = kvstation::standInsFor(letter);
            ASSERT_GT(standIns.size(), 1u) << nameOf(page, letter);
            EXPECT_EQ(kvstation::sizeOf(standIns.substr(0, 1)), kvstation::sizeOf({&letter, 1}));
            EXPECT_EQ(readByBytes(standIns[0]), readByBytes(kvstation::toLower(letter))) << nameOf(page, letter);
            if (!seen.insert(standIns.data()).second)
                continue;
            for (const char32_t standIn : standIns) {
                EXPECT_EQ(kvstation::sizeOf({&standIn, 1}), kvstation::sizeOf(standIns.substr(0, 1)));
                EXPECT_EQ(readByBytes(standIn), readByBytes(standIns[0]));
                EXPECT_TRUE(kvstation::isLower(standIn));
                EXPECT_TRUE(simwin::survivesUtf8(kvstation::bytesOf({&standIn, 1})));
            }
        }
    }
}

TEST(PageText, LettersStayInTheirScript) {
    const auto isAmong = [](char32_t letter, char32_t one) {
        return kvstation::standInsFor(letter).find(one) != kvstation::PageTextView::npos;
    };
    {
        const simwin::CodePageScope scope(932);
        EXPECT_TRUE(isAmong(0x90EC, 0x93EC));   // a river, the south
        EXPECT_FALSE(isAmong(0x90EC, 0x82A0));  // hiragana
        EXPECT_TRUE(isAmong(0x82A0, 0x82A2));
        EXPECT_TRUE(isAmong(0x8281, 0x829A));  // wide Latin
        EXPECT_FALSE(isAmong(0x8281, 0x90EC));
        EXPECT_TRUE(isAmong(0x8470, 0x8B70));  // no other Cyrillic letter has a small p as its second byte
    }
    {
        const simwin::CodePageScope scope(65001);
        EXPECT_TRUE(isAmong(0xD0B6, 0xD0B9));   // Cyrillic
        EXPECT_FALSE(isAmong(0xD0B6, 0xC3A9));  // Latin
    }
    const simwin::CodePageScope scope(1252);
    EXPECT_TRUE(isAmong(0xDF, 0xE9));  // a sharp s, one of two without another case
}

}  // namespace
}  // namespace kvtest
