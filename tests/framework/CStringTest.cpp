#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "framework/String.h"
#include "framework/StringData.h"
#include "simwin/machine/Machine.h"
#include "simwin/text/CodePage.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using kvtest::Str;

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

TEST(CString, AssigningWhereThereIsRoomMovesNothingUnlessTheTextIsShared) {
    CString text("abc");
    const char* place = text;
    text = "xyz";
    EXPECT_EQ(static_cast<const char*>(text), place);
    EXPECT_STREQ(text, "xyz");

    CString copy(text);
    copy = "ab";
    EXPECT_STREQ(text, "xyz");
    EXPECT_STREQ(copy, "ab");
}

TEST(CString, AppendingWhereThereIsRoomMovesNothingUnlessTheTextIsShared) {
    CString text("ab");
    text += "cd";  // makes room for half as much again: six characters
    const char* place = text;
    text += "ef";
    EXPECT_EQ(static_cast<const char*>(text), place);
    EXPECT_STREQ(text, "abcdef");

    CString first("ab");
    first += "cd";
    CString copy(first);
    copy += "e";
    EXPECT_STREQ(first, "abcd");
    EXPECT_STREQ(copy, "abcde");
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

TEST(CString, FormatsTextsOfTheLengthsAroundThoseOfItsFirstRoom) {
    for (const std::size_t length : {254u, 255u, 256u, 257u}) {
        const std::string longText(length, 'q');
        CString text;
        text.Format("%s", longText.c_str());
        EXPECT_EQ(Str(text), longText);
        EXPECT_EQ(text.GetLength(), static_cast<int>(length));
    }
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
    EXPECT_EQ(text.ReverseFind('\0'), -1);
}

TEST(CString, LeftMidAndRightCutAtTheTextsEnds) {
    const CString text("abcde");
    EXPECT_STREQ(text.Left(2), "ab");
    EXPECT_STREQ(text.Left(9), "abcde");
    EXPECT_STREQ(text.Left(-1), "");
    EXPECT_STREQ(text.Right(1), "e");
    EXPECT_STREQ(text.Right(2), "de");
    EXPECT_STREQ(text.Right(5), "abcde");
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
    const char* place = text;
    EXPECT_EQ(static_cast<const char*>(text.MakeUpper()), place) << "a text that is not shared stays where it is";
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
    EXPECT_STREQ(middle + "", "b");
    EXPECT_STREQ("" + middle, "b");
    EXPECT_STREQ(CString() + "", "");
}

TEST(CString, KeepsMovedText) {
    CString first("text");
    CString second(std::move(first));
    CString third;
    third = std::move(second);
    EXPECT_STREQ(third, "text");
}

// What a library does that was built with the product's own framework and knows a string by its data alone.
class ForeignString {
  public:
    explicit ForeignString(CString& string) : m_text(reinterpret_cast<char**>(&string)) {}

    void Fill(const char* text) {
        StringData* before = StringData::Of(*m_text);
        const int length = static_cast<int>(std::strlen(text));
        StringData* data = before->manager->Clone()->Allocate(length, sizeof(char));
        std::strcpy(data->Text(), text);
        data->length = length;
        *m_text = data->Text();
        if (--before->references <= 0)
            before->manager->Free(before);
    }
    void FillInPlace(const char* text) {
        StringData* data = StringData::Of(*m_text);
        const int length = static_cast<int>(std::strlen(text));
        if (data->capacity < length)
            data = data->manager->Reallocate(data, length, sizeof(char));
        std::strcpy(data->Text(), text);
        data->length = length;
        *m_text = data->Text();
    }
    void Empty() {
        StringData* before = StringData::Of(*m_text);
        *m_text = before->manager->GetNilString()->Text();
        if (--before->references <= 0)
            before->manager->Free(before);
    }

  private:
    char** m_text;
};

TEST(CString, HasTheLayoutThatTheProductsOwnFrameworkGivesIt) {
    static_assert(sizeof(CString) == sizeof(char*));
    static_assert(sizeof(StringData) == 24 && offsetof(StringData, length) == 8 &&
                  offsetof(StringData, capacity) == 12 && offsetof(StringData, references) == 16);
    const CString text("LAB");
    const auto* data = reinterpret_cast<const StringData*>(static_cast<const char*>(text)) - 1;
    EXPECT_EQ(data->length, 3);
    EXPECT_GE(data->capacity, 3);
    EXPECT_EQ(data->references, 1);
}

TEST(CString, CanBeFilledAndEmptiedByALibraryThatKnowsItsDataAlone) {
    for (int times = 0; times < 3; ++times) {
        CString name;
        ForeignString(name).Fill("JDOE");
        EXPECT_STREQ(name, "JDOE");
        EXPECT_EQ(name.GetLength(), 4);
        ForeignString(name).FillInPlace("a longer name than the one before");
        EXPECT_STREQ(name, "a longer name than the one before");
        CString copy = name;
        ForeignString(name).Fill("B");
        EXPECT_STREQ(name, "B");
        EXPECT_STREQ(copy, "a longer name than the one before");
        ForeignString(copy).Empty();
        EXPECT_TRUE(copy.IsEmpty());
        copy = "again";
        EXPECT_STREQ(copy, "again");
        EXPECT_TRUE(CString().IsEmpty());
    }
}

TEST(StringManager, AnswersNullToSizesThatAreNone) {
    EXPECT_EQ(GetStringManager().Allocate(-1, 1), nullptr);
    EXPECT_EQ(GetStringManager().Allocate(1, 0), nullptr);
}

TEST(StringManager, GivesABlockForNoCharacters) {
    StringData* data = GetStringManager().Allocate(0, 1);
    ASSERT_NE(data, nullptr);
    EXPECT_STREQ(data->Text(), "");
    GetStringManager().Free(data);
}

TEST(StringManager, GivesABlockWithoutCharactersForCharactersOfEitherSize) {
    for (const int size : {1, 2}) {
        StringData* data = GetStringManager().Allocate(8, size);
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(data->manager, &GetStringManager());
        EXPECT_EQ(data->length, 0);
        EXPECT_EQ(data->capacity, 8);
        EXPECT_EQ(data->references, 1);
        EXPECT_EQ(std::string(data->Text(), static_cast<std::size_t>(size)),
                  std::string(static_cast<std::size_t>(size), '\0'));
        GetStringManager().Free(data);
    }
}

TEST(StringManager, KeepsTheTextInABlockOfAnotherCapacity) {
    simwin::Machine machine{simwin::Station()};
    const simwin::Machine::Scope scope(machine);
    struct {
        int size;
        int capacity;
        int length;
        std::string bytes;  // with the terminator, where there is room for it
    } const rows[] = {
        {1, 300, 3, std::string("LAB", 4)},
        {1, 3, 3, std::string("LAB", 4)},
        {1, 2, 2, "LA"},
        {2, 300, 3, std::string("L\0A\0B\0\0", 8)},
    };
    for (const auto& row : rows) {
        StringData* data = GetStringManager().Allocate(3, row.size);
        ASSERT_NE(data, nullptr);
        const std::string text = row.size == 1 ? std::string("LAB", 4) : std::string("L\0A\0B\0\0", 8);
        text.copy(data->Text(), text.size());
        data->length = 3;
        data = GetStringManager().Reallocate(data, row.capacity, row.size);
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(data->capacity, row.capacity);
        EXPECT_EQ(data->length, row.length);
        EXPECT_EQ(data->references, 1);
        EXPECT_EQ(std::string(data->Text(), row.bytes.size()), row.bytes);
        EXPECT_EQ(machine.openHeapBlocks(), 1u) << "the old block is gone";
        // The whole room that was asked for is there.
        std::memset(data->Text(), 'x', static_cast<std::size_t>((row.capacity + 1) * row.size));
        GetStringManager().Free(data);
    }
    EXPECT_EQ(machine.openHeapBlocks(), 0u);
}

TEST(StringManager, KeepsTheSharedEmptyTextWhenItIsReleased) {
    GetStringManager().Free(GetStringManager().GetNilString());
    EXPECT_TRUE(CString().IsEmpty());
    EXPECT_EQ(GetStringManager().GetNilString()->capacity, 0);
}

TEST(StringManager, KeepsTheOldBlockWhenThereIsNoMemoryForAnother) {
    simwin::Machine machine{simwin::Station()};
    const simwin::Machine::Scope scope(machine);
    StringData* data = GetStringManager().Allocate(3, 1);
    ASSERT_NE(data, nullptr);
    std::strcpy(data->Text(), "LAB");
    machine.failAllocation(machine.allocations() + 1);
    EXPECT_EQ(GetStringManager().Reallocate(data, 300, 1), nullptr);
    EXPECT_STREQ(data->Text(), "LAB");
    GetStringManager().Free(data);
    EXPECT_EQ(machine.openHeapBlocks(), 0u);
}

TEST(CString, ThrowsWhenATextIsLongerThanALengthCanSay) {
    simwin::Machine machine{simwin::Station()};
    const simwin::Machine::Scope scope(machine);
    CString text("LAB");
    // With its data of 24 bytes and its terminator the first takes 0x7FFFFFFF bytes, for which the heap is asked.
    const struct {
        int length;
        std::uint64_t allocations;
    } rows[] = {{0x7FFFFFE6, 1}, {0x7FFFFFE7, 0}, {0x7FFFFFFF, 0}};
    for (const auto& row : rows) {
        const std::uint64_t before = machine.allocations();
        machine.failAllocation(before + 1);
        // Whoever needs room asks in one place. A formatted text of this length would be written character by
        // character.
        EXPECT_THROW(text = CString("LAB", row.length), std::bad_alloc);
        EXPECT_EQ(machine.allocations() - before, row.allocations) << row.length;
        EXPECT_STREQ(text, "LAB");
    }
}

// A Windows whose characters have one byte or two, of which the second can be a backslash, a bar or a bracket.
class JapaneseCString : public testing::Test {
  private:
    simwin::CodePageScope m_scope{932};
};

TEST_F(JapaneseCString, FindsNoCharacterInTheSecondByteOfAnother) {
    const CString path("C:\\\x83\x5C\x83\x74\x83\x67\\\x83\x5C");  // two folders, of which both begin with 83 5C
    EXPECT_EQ(path.Find('\\'), 2);
    EXPECT_EQ(path.ReverseFind('\\'), 9);
    EXPECT_EQ(CString("\x83\x5C\x83\x7C\x81\x5B").Find('\\'), -1);
    EXPECT_EQ(CString("\x83\x5C\x83\x7C\x81\x5B").Find('|'), -1);
    EXPECT_EQ(CString("\x83\x5C\x83\x7C\x81\x5B").ReverseFind('['), -1);
}

TEST_F(JapaneseCString, FindsNoPartThatBeginsWithinACharacter) {
    EXPECT_EQ(CString("\x83\x5C"
                      "b\\b")
                  .Find("\\b"),
              3);
    EXPECT_EQ(CString("a\x83\x5C").Find("\x83\x5C"), 1);
}

TEST_F(JapaneseCString, ChangesLettersAndNoSecondBytes) {
    CString text("ab\x83\x61\x82\x81");  // the last is a wide "a"
    EXPECT_EQ(Str(text.MakeUpper()), "AB\x83\x61\x82\x60");
    EXPECT_EQ(Str(text.MakeLower()), "ab\x83\x61\x82\x81");
}

TEST_F(JapaneseCString, ComparesCharacters) {
    EXPECT_GT(CString("\x83\x41").Compare("\xB1"), 0);  // as bytes it would stand before
    EXPECT_EQ(CString("\x83\x41").CompareNoCase("\x83\x61") == 0, false);
    EXPECT_EQ(CString("\x82\x60").CompareNoCase("\x82\x81"), 0);
    EXPECT_TRUE(CString("\x83\x5C") == "\x83\x5C");
}

TEST_F(JapaneseCString, TrimsWholeCharactersAlone) {
    EXPECT_EQ(Str(CString(" \x83\x5C\t ").Trim()), "\x83\x5C");
    // A lead byte takes the blank behind it for its second byte.
    EXPECT_EQ(Str(CString("a\x83  ").Trim()), "a\x83 ");
    EXPECT_EQ(Str(CString("a\x83 ").Trim()), "a\x83 ");
    EXPECT_EQ(Str(CString("\x83 ").Trim()), "\x83 ");
}

TEST_F(JapaneseCString, IsCutByBytes) {
    EXPECT_EQ(Str(CString("a\x83\x5C").Left(2)), "a\x83");
    EXPECT_EQ(CString("a\x83\x5C").GetLength(), 3);
}

TEST(CString, InUtf8ChangesLettersOfAsciiAlone) {
    const simwin::CodePageScope scope(65001);
    CString text("a\xC3\xA4");
    EXPECT_EQ(Str(text.MakeUpper()), "A\xC3\xA4");
    EXPECT_EQ(text.Find("\xC3\xA4"), 1);
    EXPECT_EQ(CString("\xD0\x9F:\xD0\x9F").ReverseFind(':'), 2);
}

TEST(CString, InRussianChangesItsLetters) {
    const simwin::CodePageScope scope(1251);
    CString text("\xEB\xE0\xB8");
    EXPECT_EQ(Str(text.MakeUpper()), "\xCB\xC0\xA8");
}

}  // namespace
