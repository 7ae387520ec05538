#include "kvstation/report/Differences.h"

#include <gtest/gtest.h>

#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

std::string differences(const RecordBytes& left, const RecordBytes& right) {
    const Record a(left);
    const Record b(right);
    return differencesView(a, b, differingFields(a, b), false);
}

TEST(Differences, EqualRecordsHaveNone) {
    EXPECT_EQ(differences(sampleBytes(), sampleBytes()), "");
}

TEST(Differences, TextsAreQuotedAndNumbersNot) {
    RecordBytes other = sampleBytes();
    put(other, &STATIONDATA::szUserName, std::string_view("jd \0", 4));
    put(other, &STATIONDATA::dwOEMCodePage, {"\xB5\x01\x00\x00", 4});
    EXPECT_EQ(differences(sampleBytes(), other),
              "szUserName\n  - \"jdoe\"\n  + \"jd \"\n"
              "dwOEMCodePage\n  - 850\n  + 437\n");
}

TEST(Differences, BytesBehindATextAreNoDifference) {
    RecordBytes other = sampleBytes();
    put(other, kvtest::RecordPlace(&STATIONDATA::szStation).behind() - 11, "older text");
    put(other, &STATIONDATA::szUserName, "jdoe");
    put(other, &STATIONDATA::reserved358, "xx");
    EXPECT_EQ(differences(sampleBytes(), other), "");
}

TEST(Differences, ControlCharactersStayInTheirLine) {
    RecordBytes other = sampleBytes();
    put(other, &STATIONDATA::szStation, "PC\nLAB3");
    EXPECT_EQ(differences(sampleBytes(), other), "szStation\n  - \"PC-LAB3\"\n  + \"PC\\x0aLAB3\"\n");
}

}  // namespace
}  // namespace kvstation
