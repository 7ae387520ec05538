#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "framework/String.h"

namespace {

std::string Str(const CString& text) {
    return static_cast<const char*>(text);
}

TEST(CString, IsEmptyWhenConstructedFromNothingNullOrEmptyText) {
    EXPECT_TRUE(CString().IsEmpty());
    EXPECT_TRUE(CString(nullptr).IsEmpty());
    EXPECT_TRUE(CString("").IsEmpty());
    EXPECT_STREQ(CString(), "");
}

TEST(CString, CopySharesTheBufferUntilOneChanges) {
    CString first("station");
    CString second(first);
    EXPECT_EQ(static_cast<const char*>(first), static_cast<const char*>(second));
    second.MakeUpper();
    EXPECT_STREQ(first, "station");
    EXPECT_STREQ(second, "STATION");
}

TEST(CString, AppendingToACopyLeavesTheOriginal) {
    const CString first("a");
    CString second = first;
    second += "b";
    second += 'c';
    EXPECT_STREQ(first, "a");
    EXPECT_STREQ(second, "abc");
}

TEST(CString, AssignsAndAppendsPartsOfItself) {
    CString text("abcdef");
    text = static_cast<const char*>(text) + 2;
    EXPECT_STREQ(text, "cdef");
    text += static_cast<const char*>(text);
    EXPECT_STREQ(text, "cdefcdef");
    const CString& same = text;
    text = same;
    EXPECT_STREQ(text, "cdefcdef");
}

TEST(CString, AppendsAcrossEveryGrowthOfItsBuffer) {
    CString text;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        text += "xyz";
        expected += "xyz";
    }
    EXPECT_EQ(Str(text), expected);
    EXPECT_EQ(text.GetLength(), 6000);
}

TEST(CString, FormatsItsOwnTextIntoItself) {
    CString text("A:\\");
    text.Format("%s|%s %d", static_cast<const char*>(text), "ICA", -7);
    EXPECT_STREQ(text, "A:\\|ICA -7");
    text.Format("%s", "");
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, FormatsTextsOfAnyLength) {
    const std::string longText(70000, 'q');
    CString text;
    text.Format("<%s>", longText.c_str());
    EXPECT_EQ(Str(text), "<" + longText + ">");
}

TEST(CString, FindsCharactersAndParts) {
    const CString text("10.0.0.5;10.0.0.6");
    EXPECT_EQ(text.Find(';'), 8);
    EXPECT_EQ(text.Find('x'), -1);
    EXPECT_EQ(text.Find("0.0.6"), 12);
    EXPECT_EQ(text.Find("0.0.7"), -1);
    EXPECT_EQ(text.Find(""), 0);
    EXPECT_EQ(text.ReverseFind('.'), 15);
    EXPECT_EQ(text.ReverseFind('x'), -1);
    EXPECT_EQ(text.Find('\0'), -1);
}

TEST(CString, LeftMidAndRightCutAtTheTextsEnds) {
    const CString text("abcde");
    EXPECT_STREQ(text.Left(2), "ab");
    EXPECT_STREQ(text.Left(9), "abcde");
    EXPECT_STREQ(text.Left(-1), "");
    EXPECT_STREQ(text.Right(2), "de");
    EXPECT_STREQ(text.Right(9), "abcde");
    EXPECT_STREQ(text.Right(0), "");
    EXPECT_STREQ(text.Right(-3), "");
    EXPECT_STREQ(text.Mid(3), "de");
    EXPECT_STREQ(text.Mid(7), "");
    EXPECT_STREQ(text.Mid(-2, 2), "ab");
    EXPECT_STREQ(text.Mid(1, 3), "bcd");
    EXPECT_STREQ(text.Mid(4, 100), "e");
}

TEST(CString, ChangesCaseByTheAnsiCodePage) {
    CString text("B\xFCro \xE9t\xE9 \xDF\xFF");
    text.MakeUpper();
    EXPECT_STREQ(text, "B\xDCRO \xC9T\xC9 \xDF\x9F");
    text.MakeLower();
    EXPECT_STREQ(text, "b\xFCro \xE9t\xE9 \xDF\xFF");
    CString empty;
    empty.MakeUpper().MakeLower();
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(CString, TrimsWhiteSpaceAtBothEndsOnly) {
    EXPECT_STREQ(CString(" \t\r\n\v\f a b \n").Trim(), "a b");
    EXPECT_STREQ(CString("   ").Trim(), "");
    EXPECT_STREQ(CString("").Trim(), "");
    EXPECT_STREQ(CString("\xA0x\xA0").Trim(), "\xA0x\xA0");
}

TEST(CString, ComparesExactlyOrWithoutRegardToCase) {
    EXPECT_EQ(CString("abc").Compare("abc"), 0);
    EXPECT_LT(CString("ABC").Compare("abc"), 0);
    EXPECT_GT(CString("abd").Compare("abc"), 0);
    EXPECT_EQ(CString("NameUserPrincipal").CompareNoCase("nameuserprincipal"), 0);
    EXPECT_EQ(CString("B\xDCRO").CompareNoCase("b\xFCro"), 0);
    EXPECT_NE(CString("a").CompareNoCase("ab"), 0);
    EXPECT_TRUE(CString("x") == "x");
    EXPECT_FALSE(CString("x") == CString("X"));
    EXPECT_TRUE(CString() == nullptr);
}

TEST(CString, JoinsWithTheOperators) {
    const CString middle("b");
    EXPECT_STREQ("a" + middle, "ab");
    EXPECT_STREQ(middle + "c", "bc");
    EXPECT_STREQ(middle + middle, "bb");
}

TEST(CString, KeepsMovedText) {
    CString first("text");
    CString second(std::move(first));
    CString third;
    third = std::move(second);
    EXPECT_STREQ(third, "text");
}

}  // namespace
