// Texts put in the place of others, and what moved with them.
#include <gtest/gtest.h>

#include <algorithm>

#include "kvstation/experiments/MovedText.h"
#include "kvstation/experiments/OtherTexts.h"

#include "simwin/text/CodePage.h"

namespace kvtest {
namespace {

using kvstation::Role;
using kvstation::roleOfText;
using kvstation::sameShape;

TEST(OtherText, HasAnotherLetterOrDigitAtEachPlaceAndTheSameForm) {
    EXPECT_EQ(sameShape("Abc-19 z"), "Bcd-28 g");
    EXPECT_EQ(sameShape(""), "");
    EXPECT_EQ(sameShape("-- \\"), "-- \\");
}

TEST(OtherText, OfBytesInHexadecimalIsStillThat) {
    const std::string other = sameShape("00-02-A5-4F-18-C6");
    EXPECT_EQ(other.find_first_not_of("0123456789ABCDEF-"), std::string::npos);
    EXPECT_EQ(other.size(), 17u);
}

TEST(OtherText, OfAnAddressIsAnAddressOfTheSameLength) {
    EXPECT_EQ(sameShape("255.255.255.0"), "100.100.100.1");
    EXPECT_EQ(sameShape("192.168.31.44"), "200.200.10.10");
}

TEST(OtherText, WordsOfTheModuleHoldWhatItComparesWith) {
    for (const char* word : {"WinFrame"})
        EXPECT_NE(std::ranges::find(kvstation::moduleWords(), word), kvstation::moduleWords().end()) << word;
}

TEST(MovedText, GivesAFieldThatIsTheWholeOfIt) {
    EXPECT_EQ(roleOfText("DH@HW.EXAMPLE", "EI@IX.FYBNQMF", {"dh@hw.example", "ei@ix.fybnqmf"}), Role::Gives);
    EXPECT_EQ(roleOfText("192.168.7.20;10", "200.200.1.10;20", {"192.168.7.20;10.8.0.6", "200.200.1.10;20.1.1.1"}),
              Role::Gives)
        << "cut";
}

TEST(MovedText, AddsToAFieldOfWhichItIsAPart) {
    EXPECT_EQ(roleOfText("TC-LAGER07#1", "UD-MBHFS18#1", {"tc-lager07", "ud-mbhfs18"}), Role::Adds);
}

TEST(MovedText, DecidesWhereNothingOfItMoved) {
    EXPECT_EQ(roleOfText("unknown", "", {"3", "4"}), Role::Decides);
    EXPECT_EQ(roleOfText("ALPHA-LAB", "OTHER", {"3", "4"}), Role::Decides);
    EXPECT_EQ(roleOfText("", "Xyz", {"Abc", "Xyz"}), Role::Decides) << "an empty field has no giver";
}

// The masks "255.255.255.0" and behind them another value's, of which one digit is seen: what stands before that digit
// is the same in both values and moves with the first alone.
TEST(MovedText, IsNoPartThatStandsThereByChance) {
    EXPECT_EQ(roleOfText("255.255.255.0;2", "255.255.255.0;3",
                         {"255.255.255.0;255.255.255.0", "366.366.366.1;366.366.366.1"}),
              Role::Decides);
}

TEST(MovedText, WithMoreBehindItMovesToo) {
    EXPECT_EQ(roleOfText("LAB", "LAB0", {"Lab", "Lab0"}), Role::Gives);
    EXPECT_EQ(roleOfText("7 LAB;x", "7 LAB0;x", {"Lab", "Lab0"}), Role::Adds);
}

// A letter's other case can have another length in UTF-8.
TEST(MovedText, GoesByCharactersInUtf8) {
    const simwin::CodePageScope scope(65001);
    EXPECT_EQ(kvstation::plain("PC-\u023A!"), "pc\u2C65");
    EXPECT_EQ(roleOfText("PC\u023A", "OTHER\u023A", {"pc\u2C65", "other\u2C65"}), Role::Gives);
}

TEST(MovedText, GoesByCharactersOfTwoBytes) {
    const simwin::CodePageScope scope(932);
    EXPECT_EQ(kvstation::plain("A-\x83\x5C\x83\x41"), "a\x83\x5C\x83\x41");
    EXPECT_EQ(kvstation::sameShape("a\x83\x41").substr(0, 1), "b");
    EXPECT_NE(kvstation::sameShape("\x83\x41"), "\x83\x41");
    EXPECT_EQ(kvstation::sameShape("\x83\x41").size(), 2u);
}

TEST(MovedText, OfANumberIsItsBeginning) {
    EXPECT_EQ(kvstation::roleOfNumber("7", "9", {"7", "9"}), Role::Gives);
    EXPECT_EQ(kvstation::roleOfNumber("7", "9", {"7 and more", "9 and more"}), Role::Gives);
    EXPECT_EQ(kvstation::roleOfNumber("7", "9", {"77", "99"}), Role::Decides);
    EXPECT_EQ(kvstation::roleOfNumber("1", "0", {"7", "9"}), Role::Decides);
}

}  // namespace
}  // namespace kvtest
