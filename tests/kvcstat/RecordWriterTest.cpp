// The bounded copies into the record, with a pattern in every byte that must stay.
#include "kvcstat/RecordWriter.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/kvcstat/PatternedRecord.h"

namespace {

using kvtest::RecordPlace;

const RecordPlace kAddress = &STATIONDATA::szIPAddress;
const RecordPlace kDeviceList = &STATIONDATA::szCDRomDevices;
const RecordPlace kDrives = &STATIONDATA::szCDRomDrives;
const RecordPlace kLast = &STATIONDATA::szVCDVersion;
const RecordPlace kNumber = &STATIONDATA::dwSessionId;

class RecordWriterTest : public ::testing::Test {
  protected:
    static std::string Untouched(std::size_t count) { return kvtest::PatternedRecord::Pattern(count); }

    // What a text does to an address that was cleared before.
    std::string AddressOf(const std::string& text) {
        record.Clear();
        writer.PutText(kAddress.offset, kAddress.width - 1, text.c_str());
        return record.At(kAddress);
    }

    kvtest::PatternedRecord record;
    RecordWriter writer{record.data()};
};

TEST_F(RecordWriterTest, TextIsCopiedUpToItsLimitWithoutATerminatorForEveryLengthUpToTwiceTheWidth) {
    for (std::size_t length = 0; length <= 2 * kAddress.width; ++length) {
        record = {};
        const std::string text(length, 'x');
        writer.PutText(kAddress.offset, kAddress.width - 1, text.c_str());
        const std::size_t written = length < kAddress.width ? length : kAddress.width - 1;
        EXPECT_EQ(record.At(kAddress.offset - 8, 8), Untouched(8)) << length;
        EXPECT_EQ(record.At(kAddress.offset, written), std::string(written, 'x')) << length;
        EXPECT_EQ(record.At(kAddress.offset + written, 32), Untouched(32)) << length;
    }
}

TEST_F(RecordWriterTest, SourceOfExactlyTheLimitFillsTheFieldUpToItsLastByteButOne) {
    const std::string longest(kAddress.width - 1, 'S');
    EXPECT_EQ(AddressOf(longest), longest + '\0');
}

TEST_F(RecordWriterTest, SourceOneLongerThanTheLimitIsCutAndTheLastByteStaysZero) {
    const std::string longest(kAddress.width - 1, 'S');
    EXPECT_EQ(AddressOf(longest + 'S'), longest + '\0');
}

TEST_F(RecordWriterTest, EmptySourceWritesNothing) {
    writer.PutText(kAddress.offset, kAddress.width - 1, "");
    EXPECT_TRUE(record.IsUntouched(kAddress));
}

TEST_F(RecordWriterTest, CDRomListLongerThanTheBiosDateIsCutToTheDatesLength) {
    writer.PutTextCountedBy(kDeviceList.offset, kDeviceList.width - 1, "0123456789", "01/02/03");
    EXPECT_EQ(record.At(kDeviceList.offset, 8), "01234567");
    EXPECT_EQ(record.At(kDeviceList.offset + 8, 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListShorterThanTheBiosDateIsPaddedWithZerosToTheDatesLength) {
    writer.PutTextCountedBy(kDeviceList.offset, kDeviceList.width - 1, "0123456789", "01234567890123456789");
    EXPECT_EQ(record.At(kDeviceList.offset, 20), "0123456789" + std::string(10, '\0'));
    EXPECT_EQ(record.At(kDeviceList.offset + 20, 16), Untouched(16));
}

TEST_F(RecordWriterTest, EmptyBiosDateWritesNothingWhileTheCDRomListFits) {
    writer.PutTextCountedBy(kDeviceList.offset, kDeviceList.width - 1, "0123456789", "");
    EXPECT_TRUE(record.IsUntouched(kDeviceList));
}

TEST_F(RecordWriterTest, EmptyCDRomListIsZeroedToTheBiosDatesLength) {
    writer.PutTextCountedBy(kDeviceList.offset, kDeviceList.width - 1, "", "01/02/03");
    EXPECT_EQ(record.At(kDeviceList.offset, 8), std::string(8, '\0'));
    EXPECT_EQ(record.At(kDeviceList.offset + 8, 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListLongerThanItsLimitIsCutToTheLimitWhateverTheBiosDate) {
    writer.PutTextCountedBy(kDrives.offset, kDrives.width - 1, std::string(kDrives.width, 'D').c_str(), "01/02/03");
    EXPECT_EQ(record.At(kDrives), std::string(kDrives.width - 1, 'D') + Untouched(1));
    EXPECT_EQ(record.At(kDrives.behind(), 16), Untouched(16));
}

TEST_F(RecordWriterTest, CDRomListOfExactlyItsLimitStillFitsAndIsCutToTheDatesLength) {
    writer.PutTextCountedBy(kDrives.offset, kDrives.width - 1, std::string(kDrives.width - 1, 'D').c_str(), "01/02/03");
    EXPECT_EQ(record.At(kDrives.offset, 8), std::string(8, 'D'));
    EXPECT_EQ(record.At(kDrives.offset + 8, kDrives.width), Untouched(kDrives.width));
}

TEST_F(RecordWriterTest, BiosDateLongerThanTheFieldPadsOnIntoTheFieldsBehind) {
    const std::size_t date = kDrives.width + 50;
    writer.PutTextCountedBy(kDrives.offset, kDrives.width - 1, "D:\\", std::string(date, '9').c_str());
    EXPECT_EQ(record.At(kDrives.offset, date), "D:\\" + std::string(date - 3, '\0'));
    EXPECT_EQ(record.At(kDrives.offset + date, 16), Untouched(16));
}

TEST_F(RecordWriterTest, PaddingEndsWithTheRecordHoweverLongTheBiosDate) {
    writer.PutTextCountedBy(kDeviceList.offset, kDeviceList.width - 1, "CD", std::string(70000, '9').c_str());
    const std::size_t left = KVCSTAT_RECORD_SIZE - kDeviceList.offset;
    EXPECT_EQ(record.At(kDeviceList.offset, left), "CD" + std::string(left - 2, '\0'));
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(RecordWriterTest, OpenTextIsCopiedWithItsTerminator) {
    writer.PutOpenText(kLast.offset, "-2147483648");
    EXPECT_EQ(record.At(kLast), std::string("-2147483648") + '\0');
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(RecordWriterTest, EmptyOpenTextWritesOneZeroByte) {
    writer.PutOpenText(kLast.offset, "");
    EXPECT_EQ(record.At(kLast), '\0' + Untouched(kLast.width - 1));
}

TEST_F(RecordWriterTest, OpenTextNeverPassesTheEndOfTheRecord) {
    writer.PutOpenText(kLast.offset, std::string(40, '1').c_str());
    EXPECT_EQ(record.At(kLast), std::string(kLast.width, '1'));
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(RecordWriterTest, NumbersAreLittleEndian) {
    writer.PutNumber(kNumber.offset, 0x01020304);
    EXPECT_EQ(record.At(kNumber), "\x04\x03\x02\x01");
}

}  // namespace
