#include "kvstation/record/Record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

TEST(Record, TextsEndAtTheirFirstZero) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szStation, std::string_view("PC\0LAB", 6));
    EXPECT_EQ(Record(bytes).at("szStation").text, "PC");
}

TEST(Record, TextWithoutZeroEndsWithItsField) {
    RecordBytes bytes;
    bytes.fill('x');
    const Record record(bytes);
    EXPECT_EQ(record.at("szStation").text, std::string(51, 'x'));
    EXPECT_EQ(record.at("szVCDVersion").text, std::string(12, 'x'));
}

TEST(Record, NumbersAreLittleEndianAndSigned) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::dwKeyboardType, {"\x04\x03\x02\x01", 4});
    put(bytes, &STATIONDATA::dwTotalMemoryMB, {"\xFF\xFF\xFF\xFF", 4});
    const Record record(bytes);
    EXPECT_EQ(record.at("dwKeyboardType").number, 0x01020304);
    EXPECT_EQ(record.at("dwTotalMemoryMB").number, -1);
}

TEST(Record, SessionIdIsUnsigned) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::dwSessionId, {"\xFF\xFF\xFF\xFF", 4});
    EXPECT_EQ(Record(bytes).at("dwSessionId").number, 4294967295);
}

TEST(Record, ZeroIsEmptyExceptForTheSession) {
    const Record record{RecordBytes{}};
    for (std::size_t i = 0; i < fields().size(); ++i)
        EXPECT_EQ(record.isEmpty(i), fields()[i].name != "dwSessionId") << fields()[i].name;
}

TEST(Record, FieldsDifferByAnyOfTheirBytes) {
    const RecordBytes before = sampleBytes();
    EXPECT_THAT(differingFields(before, before), testing::IsEmpty());
    RecordBytes other = before;
    put(other, &STATIONDATA::reserved1983, "x");
    EXPECT_THAT(differingFields(before, other), testing::IsEmpty());
    other[kvtest::RecordPlace(&STATIONDATA::szStation).behind() - 1] = 'x';
    put(other, &STATIONDATA::dwOEMCodePage, "x");
    other[KVCSTAT_RECORD_SIZE - 1] = 'x';
    EXPECT_THAT(differingFields(before, other),
                testing::ElementsAre(findField("szStation"), findField("dwOEMCodePage"), findField("szVCDVersion")));
}

}  // namespace
}  // namespace kvstation
