// The bounded copies into the record, with a pattern in every byte that must stay.
#include "kvcstat/RecordWriter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "include/kvcstat.h"

namespace {

constexpr char kPattern = '\xA5';

class RecordWriterTest : public ::testing::Test {
  protected:
    // What the record holds from `offset` on, over `count` bytes.
    std::string At(std::size_t offset, std::size_t count) const { return {bytes.data() + offset, count}; }
    static std::string Untouched(std::size_t count) { return std::string(count, kPattern); }

    std::vector<char> bytes = std::vector<char>(KVCSTAT_RECORD_SIZE + 4096, kPattern);
    RecordWriter writer{bytes.data()};
};

TEST_F(RecordWriterTest, TextIsCopiedUpToItsLimitWithoutATerminatorForEveryLengthUpToTwiceTheWidth) {
    constexpr std::size_t kOffset = 3325;
    constexpr std::size_t kWidth = 16;
    for (std::size_t length = 0; length <= 2 * kWidth; ++length) {
        std::fill(bytes.begin(), bytes.end(), kPattern);
        const std::string text(length, 'x');
        writer.PutText(kOffset, kWidth - 1, text.c_str());
        const std::size_t written = length < kWidth ? length : kWidth - 1;
        EXPECT_EQ(At(kOffset - 8, 8), Untouched(8)) << length;
        EXPECT_EQ(At(kOffset, written), std::string(written, 'x')) << length;
        EXPECT_EQ(At(kOffset + written, 32), Untouched(32)) << length;
    }
}

TEST_F(RecordWriterTest, SourceOfExactlyTheLimitFillsTheFieldUpToItsLastByteButOne) {
    std::fill(bytes.begin(), bytes.end(), '\0');
    writer.PutText(0, 50, std::string(50, 'S').c_str());
    EXPECT_EQ(At(0, 51), std::string(50, 'S') + '\0');
}

TEST_F(RecordWriterTest, SourceOneLongerThanTheLimitIsCutAndTheLastByteStaysZero) {
    std::fill(bytes.begin(), bytes.end(), '\0');
    writer.PutText(0, 50, std::string(51, 'S').c_str());
    EXPECT_EQ(At(0, 51), std::string(50, 'S') + '\0');
}

TEST_F(RecordWriterTest, EmptySourceWritesNothing) {
    writer.PutText(0, 50, "");
    EXPECT_EQ(At(0, 51), Untouched(51));
}

TEST_F(RecordWriterTest, CDRomListLongerThanTheBiosDateIsCutToTheDatesLength) {
    writer.PutTextCountedBy(775, 250, "0123456789", "01/02/03");
    EXPECT_EQ(At(775, 8), "01234567");
    EXPECT_EQ(At(783, 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListShorterThanTheBiosDateIsPaddedWithZerosToTheDatesLength) {
    writer.PutTextCountedBy(775, 250, "0123456789", "01234567890123456789");
    EXPECT_EQ(At(775, 20), "0123456789" + std::string(10, '\0'));
    EXPECT_EQ(At(795, 16), Untouched(16));
}

TEST_F(RecordWriterTest, EmptyBiosDateWritesNothingWhileTheCDRomListFits) {
    writer.PutTextCountedBy(775, 250, "0123456789", "");
    EXPECT_EQ(At(775, 251), Untouched(251));
}

TEST_F(RecordWriterTest, EmptyCDRomListIsZeroedToTheBiosDatesLength) {
    writer.PutTextCountedBy(775, 250, "", "01/02/03");
    EXPECT_EQ(At(775, 8), std::string(8, '\0'));
    EXPECT_EQ(At(783, 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListLongerThanItsLimitIsCutToTheLimitWhateverTheBiosDate) {
    writer.PutTextCountedBy(1629, 100, std::string(101, 'D').c_str(), "01/02/03");
    EXPECT_EQ(At(1629, 100), std::string(100, 'D'));
    EXPECT_EQ(At(1729, 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListOfExactlyItsLimitStillFitsAndIsCutToTheDatesLength) {
    writer.PutTextCountedBy(1629, 100, std::string(100, 'D').c_str(), "01/02/03");
    EXPECT_EQ(At(1629, 8), std::string(8, 'D'));
    EXPECT_EQ(At(1637, 100), Untouched(100));
}

TEST_F(RecordWriterTest, BiosDateLongerThanTheFieldPadsOnIntoTheFieldsBehind) {
    writer.PutTextCountedBy(1629, 100, "D:\\", std::string(150, '9').c_str());
    EXPECT_EQ(At(1629, 150), "D:\\" + std::string(147, '\0'));
    EXPECT_EQ(At(1779, 16), Untouched(16));
}

TEST_F(RecordWriterTest, PaddingEndsWithTheRecordHoweverLongTheBiosDate) {
    writer.PutTextCountedBy(775, 250, "CD", std::string(70000, '9').c_str());
    EXPECT_EQ(At(775, KVCSTAT_RECORD_SIZE - 775), "CD" + std::string(KVCSTAT_RECORD_SIZE - 777, '\0'));
    EXPECT_EQ(At(KVCSTAT_RECORD_SIZE, 4096), Untouched(4096));
}

TEST_F(RecordWriterTest, OpenTextIsCopiedWithItsTerminator) {
    writer.PutOpenText(4922, "-2147483648");
    EXPECT_EQ(At(4922, 12), std::string("-2147483648") + '\0');
    EXPECT_EQ(At(KVCSTAT_RECORD_SIZE, 64), Untouched(64));
}

TEST_F(RecordWriterTest, EmptyOpenTextWritesOneZeroByte) {
    writer.PutOpenText(4922, "");
    EXPECT_EQ(At(4922, 12), '\0' + Untouched(11));
}

TEST_F(RecordWriterTest, OpenTextNeverPassesTheEndOfTheRecord) {
    writer.PutOpenText(4922, std::string(40, '1').c_str());
    EXPECT_EQ(At(4922, 12), std::string(12, '1'));
    EXPECT_EQ(At(KVCSTAT_RECORD_SIZE, 64), Untouched(64));
}

TEST_F(RecordWriterTest, NumbersAreLittleEndian) {
    writer.PutNumber(4868, 0x01020304);
    EXPECT_EQ(At(4868, 4), "\x04\x03\x02\x01");
}

}  // namespace
