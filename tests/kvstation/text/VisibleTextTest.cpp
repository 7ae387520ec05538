#include "kvstation/text/VisibleText.h"

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

TEST(VisibleText, SpellsOutBytesThatAreNoCharacter) {
    EXPECT_EQ(visible("\xC2"), "\\xc2");
    EXPECT_EQ(visible("a\x83\x5C\xE3\x82"), "a\\x83\\\\xe3\\x82");
}

TEST(VisibleText, ColumnsAreThoseOfATerminal) {
    EXPECT_EQ(columns("M\xC3\xBC\xE2\x82\xAC"), 3u);
    EXPECT_EQ(columns("\xE5\xB1\xB1\xEF\xBE\x94\xE3\x82\xBD"), 5u);  // two wide, one half-width
    EXPECT_EQ(columns("\xED\x95\x9C\xEA\xB8\x80"), 4u);
}

TEST(VisibleText, CountsCharacters) {
    EXPECT_EQ(characters("M\xC3\xBC\xE2\x82\xAC\xE5\xB1\xB1"), 4u);
    EXPECT_EQ(characters("\x83"), 1u);
    EXPECT_EQ(characters(""), 0u);
}

TEST(VisibleText, AWideCharacterThatHasNoRoomIsLeftOut) {
    EXPECT_EQ(bytesWithin("a\xE5\xB1\xB1", 2), 1u);
    EXPECT_EQ(bytesWithin("a\xE5\xB1\xB1", 3), 4u);
}

TEST(VisibleText, BytesOfCharactersNeverCutOne) {
    EXPECT_EQ(bytesWithin("M\xC3\xBC\xE2\x82\xAC", 0), 0u);
    EXPECT_EQ(bytesWithin("M\xC3\xBC\xE2\x82\xAC", 1), 1u);
    EXPECT_EQ(bytesWithin("M\xC3\xBC\xE2\x82\xAC", 2), 3u);
    EXPECT_EQ(bytesWithin("M\xC3\xBC\xE2\x82\xAC", 3), 6u);
    EXPECT_EQ(bytesWithin("M\xC3\xBC\xE2\x82\xAC", 9), 6u);
}

}  // namespace
}  // namespace kvstation
