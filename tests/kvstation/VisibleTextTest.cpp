#include "kvstation/VisibleText.h"

#include <gtest/gtest.h>

namespace kvstation {
namespace {

TEST(VisibleText, OrdinaryTextStays) {
    EXPECT_EQ(visible("M\xC3\xBCller \xE2\x82\xAC"), "M\xC3\xBCller \xE2\x82\xAC");
}

TEST(VisibleText, ControlCharactersAreSpelledOut) {
    EXPECT_EQ(visible("a\nb\x1b[31m\x7f"), "a\\x0ab\\x1b[31m\\x7f");
    EXPECT_EQ(visible("\xC2\x9B"), "\\x9b");
}

TEST(VisibleText, NoBreakSpaceIsNoControlCharacter) {
    EXPECT_EQ(visible("\xC2\xA0"), "\xC2\xA0");
}

TEST(VisibleText, CutCharacterStays) {
    EXPECT_EQ(visible("\xC2"), "\xC2");
}

TEST(VisibleText, ColumnsAreCharacters) {
    EXPECT_EQ(columns("M\xC3\xBC\xE2\x82\xAC"), 3u);
}

TEST(VisibleText, BytesOfCharactersNeverCutOne) {
    EXPECT_EQ(bytesOf("M\xC3\xBC\xE2\x82\xAC", 0), 0u);
    EXPECT_EQ(bytesOf("M\xC3\xBC\xE2\x82\xAC", 1), 1u);
    EXPECT_EQ(bytesOf("M\xC3\xBC\xE2\x82\xAC", 2), 3u);
    EXPECT_EQ(bytesOf("M\xC3\xBC\xE2\x82\xAC", 3), 6u);
    EXPECT_EQ(bytesOf("M\xC3\xBC\xE2\x82\xAC", 9), 6u);
}

}  // namespace
}  // namespace kvstation
