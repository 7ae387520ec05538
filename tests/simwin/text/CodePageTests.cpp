// Expected bytes are those of the code pages' published tables.
#include <gtest/gtest.h>

#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

struct Spelled {
    unsigned page;
    const char* utf8;
    const char* bytes;
};

class EverySpelling : public testing::TestWithParam<Spelled> {
  protected:
    CodePageScope m_scope{GetParam().page};
};

TEST_P(EverySpelling, GoesToTheCodePageAndBack) {
    Utf8Error error{};
    EXPECT_EQ(fromUtf8(GetParam().utf8, error), GetParam().bytes);
    EXPECT_EQ(fromUtf8Leniently(GetParam().utf8), GetParam().bytes);
    EXPECT_EQ(toUtf8(GetParam().bytes), GetParam().utf8);
    EXPECT_EQ(fromUtf16(toUtf16(GetParam().bytes)), GetParam().bytes);
    EXPECT_TRUE(survivesUtf8(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(
    CodePage, EverySpelling,
    testing::Values(Spelled{437, "\u00E4\u2592", "\x84\xB1"}, Spelled{850, "\u00E4\u00D7", "\x84\x9E"},
                    Spelled{874, "\u0E01\u0E23", "\xA1\xC3"},
                    Spelled{932, "\u30BD\u8868\uFF71a",
                            "\x83\x5C\x95\x5C\xB1"
                            "a"},
                    Spelled{936, "\u4E2D\u6587", "\xD6\xD0\xCE\xC4"}, Spelled{949, "\uD55C\uAE00", "\xC7\xD1\xB1\xDB"},
                    Spelled{950, "\u4E2D\u6587", "\xA4\xA4\xA4\xE5"},
                    Spelled{1250, "\u0141\u00F3d\u017A",
                            "\xA3\xF3"
                            "d\x9F"},
                    Spelled{1251, "\u041B\u0430\u0437\u0435\u0440", "\xCB\xE0\xE7\xE5\xF0"},
                    Spelled{1252, "\u00E4\u20AC", "\xE4\x80"}, Spelled{1253, "\u0391\u03C9", "\xC1\xF9"},
                    Spelled{1254, "\u0130\u0131", "\xDD\xFD"}, Spelled{1255, "\u05D0", "\xE0"},
                    Spelled{1256, "\u0627", "\xC7"}, Spelled{1257, "\u0101", "\xE2"}, Spelled{1258, "\u20AB", "\xFE"},
                    Spelled{65001, "\u00E4\u4E2D\U0001F600", "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80"}),
    [](const testing::TestParamInfo<Spelled>& one) { return std::to_string(one.param.page); });

TEST(CodePage, HasATestOfASpellingForEachKnownPage) {
    EXPECT_EQ(knownCodePages().size(), 17u);
}

TEST(CodePage, IsTheWesternOneAtFirstAndAgainBehindAScope) {
    EXPECT_EQ(codePageInForce(), 1252u);
    {
        const CodePageScope scope(932);
        EXPECT_EQ(codePageInForce(), 932u);
    }
    EXPECT_EQ(codePageInForce(), 1252u);
    EXPECT_THROW(useCodePage(1249), std::out_of_range);
    EXPECT_EQ(codePageInForce(), 1252u);
}

TEST(CodePage, OfOneByteComesBackFromUnicodeForEveryByteThatIsACharacter) {
    for (const unsigned page : {437u, 850u, 1250u, 1251u, 1252u, 1254u, 1256u, 1258u}) {
        const CodePageScope scope(page);
        for (int byte = 0; byte < 256; ++byte) {
            const std::string one(1, static_cast<char>(static_cast<unsigned char>(byte)));
            EXPECT_TRUE(survivesUtf8(one)) << page << " " << byte;
        }
    }
}

TEST(CodePage, TakesLikeLettersOrAQuestionMark) {
    const struct {
        unsigned page;
        std::u16string_view wide;
        const char* bytes;
    } cases[] = {{1252, u"\u0141\u0101\uFF21\u4E2D", "LaA?"},
                 {1250, u"\u00E5\u00D8\u4E2D", "aO?"},
                 {1251, u"\u00E9\u0141\u4E2D", "eL?"},
                 {932, u"\u00E9\uD55C", "e?"},
                 {936, u"\u00C0\u0141", "\xA8\xA4?"}};
    for (const auto& one : cases) {
        const CodePageScope scope(one.page);
        EXPECT_EQ(fromUtf16(one.wide), one.bytes) << one.page;
    }
}

TEST(CodePage, HoldsNoCharacterBeyondSixteenBitsButInUtf8) {
    for (const unsigned page : {932u, 1252u}) {
        const CodePageScope scope(page);
        EXPECT_EQ(fromUtf16(u"\U0001F600"), "??");
        EXPECT_EQ(fromUtf8Leniently("\U0001F600"), "??");
    }
    const CodePageScope scope(65001);
    EXPECT_EQ(fromUtf16(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf16("\xF0\x9F\x98\x80"), u"\U0001F600");
    EXPECT_EQ(fromUtf16(std::u16string_view(u"a\xD83D", 2)), "a\xEF\xBF\xBD");  // half a pair
}

TEST(CodePage, KeepsBytesThatAreNoCharacter) {
    const struct {
        unsigned page;
        const char* bytes;
        const char* utf8;
    } cases[] = {{932, "a\x83", "a\x83"},        // half a character
                 {932, "\xA0\xFD", "\xA0\xFD"},  // no characters
                 {932,
                  "\x85\x5C"
                  "b",
                  "\x85\x5C"
                  "b"},  // no character of two bytes
                 {874, "\xDB", "\xDB"},
                 {65001, "a\xE3\x82", "a\xE3\x82"}};
    for (const auto& one : cases) {
        const CodePageScope scope(one.page);
        EXPECT_EQ(toUtf8(one.bytes), one.utf8);
        EXPECT_EQ(fromUtf8Leniently(one.utf8), one.bytes);
        EXPECT_FALSE(survivesUtf8(one.bytes));
    }
    const CodePageScope scope(932);
    EXPECT_EQ(toUtf16("a\x83"), u"a\uFFFD");
    EXPECT_EQ(toProperUtf8("a\x83"), "a?");
}

// Two codes of one character: the second would come back as the first.
TEST(CodePage, KnowsWhenUnicodeDoesNotTellAllOfTheBytes) {
    const CodePageScope scope(932);
    EXPECT_EQ(toUtf8("\x87\x8A"), "\u3231");
    EXPECT_EQ(toUtf8("\xFA\x58"), "\u3231");
    EXPECT_TRUE(survivesUtf8("\x87\x8A"));
    EXPECT_FALSE(survivesUtf8("\xFA\x58"));
}

TEST(CodePage, CountsCharacters) {
    const CodePageScope scope(932);
    EXPECT_EQ(characterLength("a\x83"), 1u);
    EXPECT_EQ(characterLength("\x83\x5C"), 2u);
    EXPECT_EQ(characterLength("\xB1\x5C"), 1u);
    EXPECT_EQ(characterLength("\x83"), 1u);
    EXPECT_EQ(characterLength(std::string_view("\x83\0", 2)), 1u);
    EXPECT_EQ(characterLength(""), 0u);
    const CodePageScope utf8(65001);
    EXPECT_EQ(characterLength("\xE4\xB8\xAD"
                              "a"),
              3u);
    EXPECT_EQ(characterLength("\xE4\xB8"), 1u);
}

TEST(CodePage, FindsCharactersAndNotBytes) {
    const CodePageScope scope(932);
    EXPECT_EQ(findCharacter("\x83\x5C\\\x83\x5C", '\\'), 2u);
    EXPECT_EQ(findLastCharacter("\x83\x5C\\\x83\x5C", '\\'), 2u);
    EXPECT_EQ(findCharacter("\x83\x5C", '\\'), std::string_view::npos);
    EXPECT_FALSE(endsWithCharacter("\x83\x5C", '\\'));
    EXPECT_TRUE(endsWithCharacter("\x83\x5C\\", '\\'));
    EXPECT_FALSE(endsWithCharacter("", '\\'));
}

TEST(CodePage, ChangesTheCaseOfItsLetters) {
    const struct {
        unsigned page;
        const char* small;
        const char* capital;
    } cases[] = {{1250, "\xB3\xF3\x9F", "\xA3\xD3\x8F"},
                 {1251, "\xEB\xB8\x90", "\xCB\xA8\x80"},
                 {1253, "\xE1\xDC", "\xC1\xA2"},
                 {932, "\x82\x81\x84\x70", "\x82\x60\x84\x40"},
                 {936, "\xA3\xE1\xA7\xD1", "\xA3\xC1\xA7\xA1"},
                 {65001, "\xC3\xA4\xD0\xBB", "\xC3\x84\xD0\x9B"}};
    for (const auto& one : cases) {
        const CodePageScope scope(one.page);
        EXPECT_EQ(upperCase(one.small), one.capital) << one.page;
        EXPECT_EQ(lowerCase(one.capital), one.small) << one.page;
        EXPECT_TRUE(equalNoCase(one.small, one.capital)) << one.page;
    }
}

// Outside of Turkish texts Windows takes neither for a letter of ASCII.
TEST(CodePage, KnowsLettersInPairsAlone) {
    {
        const CodePageScope greek(1253);
        EXPECT_EQ(upperCase("\xF2\xB5"), "\xF2\xB5");  // the final sigma and the micro sign
    }
    const CodePageScope scope(1254);
    EXPECT_EQ(upperCase("i\xFD"), "I\xFD");
    EXPECT_EQ(lowerCase("I\xDD"), "i\xDD");
    EXPECT_FALSE(equalNoCase("\xFD", "I"));
}

TEST(CodePage, ComparesCharactersOfTwoBytes) {
    const CodePageScope scope(932);
    EXPECT_FALSE(equalNoCase("\x83\x41", "\x83\x61"));  // second bytes are no letters
    EXPECT_TRUE(equalNoCase("a\x83\x5C", "A\x83\x5C"));
    EXPECT_NE(compareNoCase("\x83\x41", "\x83\x42"), 0);
    EXPECT_LT(compareNoCase("\x83\x5C",
                            "\x83\x5C"
                            "a"),
              0);
}

TEST(CodePage, ComparesNamesOfFilesInUtf8WhateverIsInForce) {
    const CodePageScope scope(932);
    EXPECT_TRUE(equalNoCaseInUtf8("\xC3\xA4\xD0\xBB", "\xC3\x84\xD0\x9B"));
    EXPECT_FALSE(equalNoCaseInUtf8("a", "ab"));
    EXPECT_EQ(upperCaseInUtf8("\xD0\xBB"), "\xD0\x9B");
}

}  // namespace
}  // namespace simwin
