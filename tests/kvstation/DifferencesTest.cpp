#include "kvstation/report/Differences.h"

#include <gtest/gtest.h>

#include "Samples.h"

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
    put(other, 51, std::string_view("jd \0", 4));
    put(other, 364, {"\xB5\x01\x00\x00", 4});
    EXPECT_EQ(differences(sampleBytes(), other),
              "szUserName\n  - \"jdoe\"\n  + \"jd \"\n"
              "dwOEMCodePage\n  - 850\n  + 437\n");
}

TEST(Differences, BytesBehindATextAreNoDifference) {
    RecordBytes other = sampleBytes();
    put(other, 40, "older text");
    put(other, 51, "jdoe");
    put(other, 358, "xx");
    EXPECT_EQ(differences(sampleBytes(), other), "");
}

TEST(Differences, ControlCharactersStayInTheirLine) {
    RecordBytes other = sampleBytes();
    put(other, 0, "PC\nLAB3");
    EXPECT_EQ(differences(sampleBytes(), other), "szStation\n  - \"PC-LAB3\"\n  + \"PC\\x0aLAB3\"\n");
}

}  // namespace
}  // namespace kvstation
