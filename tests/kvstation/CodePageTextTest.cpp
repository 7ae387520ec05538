#include "kvstation/CodePageText.h"

#include <gtest/gtest.h>

namespace kvstation {
namespace {

TEST(CodePageText, AsciiStays) {
    EXPECT_EQ(utf8FromAnsi("PC-LAB3 ~\x1b"), "PC-LAB3 ~\x1b");
}

TEST(CodePageText, LettersOfTheUpperHalfBecomeTwoBytes) {
    EXPECT_EQ(utf8FromAnsi("M\xFCller"), "M\xC3\xBCller");
}

TEST(CodePageText, TheEuroSignBecomesThreeBytes) {
    EXPECT_EQ(utf8FromAnsi("\x80"), "\xE2\x82\xAC");
}

TEST(CodePageText, UnusedBytesBecomeTheControlCharactersOfTheirNumber) {
    EXPECT_EQ(utf8FromAnsi("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(CodePageText, NothingStaysNothing) {
    EXPECT_EQ(utf8FromAnsi(""), "");
}

}  // namespace
}  // namespace kvstation
