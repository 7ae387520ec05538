#include "simwin/text/Utf16.h"

#include <gtest/gtest.h>

namespace simwin {
namespace {

using namespace std::string_literals;

TEST(Utf16, BytesAreUnitsInEitherOrderWithoutAHalfOneAtTheEnd) {
    EXPECT_EQ(utf16FromBytes("A\0\xAC\x20z"s), u"A\u20AC");
    EXPECT_EQ(utf16FromBytes("\0A\x20\xACz"s, std::endian::big), u"A\u20AC");
    EXPECT_EQ(utf16FromBytes(""), u"");
    EXPECT_EQ(bytesOfUtf16(u"A\u20AC\xD800"), "A\0\xAC\x20\0\xD8"s);
}

struct Spelling {
    const char* utf8;
    std::u16string_view units;
};

TEST(Utf16, EachScalarValueGoesToUtf8AndBack) {
    const Spelling rows[] = {{"", u""},
                             {"a\x7F", u"a\x7F"},
                             {"\u0080\u07FF\u0800\uFFFF", u"\u0080\u07FF\u0800\uFFFF"},
                             {"\uD7FF\uE000", u"\uD7FF\uE000"},
                             {"\U00010000\U0010FFFFx", u"\xD800\xDC00\xDBFF\xDFFFx"}};
    for (const Spelling& row : rows) {
        EXPECT_EQ(utf8FromUtf16(row.units), row.utf8);
        EXPECT_EQ(utf16FromUtf8(row.utf8), row.units);
    }
    EXPECT_EQ(utf16FromUtf8("a\0b"s), u"a\0b"s);
}

TEST(Utf16, HalfAPairIsTheReplacementCharacter) {
    for (const std::u16string_view units : {u"\xD83D", u"\xDDA5"})
        EXPECT_EQ(utf8FromUtf16(units), "\uFFFD");
    EXPECT_EQ(utf8FromUtf16(u"\xDDA5\xD83Dx"), "\uFFFD\uFFFDx");
    EXPECT_EQ(utf8FromUtf16(u"\xD83D\xD83D\xDDA5"), "\uFFFD\U0001F5A5");
}

TEST(Utf16, WhatIsNoUtf8IsReplaced) {
    EXPECT_EQ(utf16FromUtf8("a\xE4z"), u"a\uFFFDz");
    EXPECT_EQ(utf16FromUtf8("\xE2\x82"), u"\uFFFD") << "the beginning of a character";
    EXPECT_EQ(utf16FromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD") << "a surrogate";
}

TEST(Utf16, ATextIsAsLongAsToItsZero) {
    EXPECT_EQ(utf16Length(u""), 0u);
    EXPECT_EQ(utf16Length(u"ab\0c"), 2u);
}

}  // namespace
}  // namespace simwin
