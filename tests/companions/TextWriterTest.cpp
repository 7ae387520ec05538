#include "companions/common/TextWriter.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(TextWriter, JoinsPiecesUpToTheLastByteButOne) {
    char buffer[6];
    TextWriter writer(buffer, sizeof buffer);
    writer.Append("ab");
    writer.Append("cde");
    EXPECT_STREQ("abcde", buffer);
    EXPECT_EQ(5U, writer.Length());
    EXPECT_FALSE(writer.WasCut());
}

TEST(TextWriter, CutsThePieceThatDoesNotFitAndRemembersIt) {
    char buffer[6];
    TextWriter writer(buffer, sizeof buffer);
    writer.Append("abc");
    writer.Append("def");
    writer.Append("g");
    EXPECT_STREQ("abcde", buffer);
    EXPECT_EQ(5U, writer.Length());
    EXPECT_TRUE(writer.WasCut());
}

TEST(TextWriter, BeginsWithAnEmptyText) {
    char buffer[] = "before";
    const TextWriter writer(buffer, sizeof buffer);
    EXPECT_STREQ("", buffer);
    EXPECT_EQ(0U, writer.Length());
}

TEST(TextWriter, WritesNumbersWithLeadingZeros) {
    const struct {
        long long number;
        std::size_t digits;
        const char* expected;
    } cases[] = {
        {0, 1, "0"},       {7, 2, "07"},  {42, 3, "042"},
        {1234, 2, "1234"}, {-5, 1, "-5"}, {std::numeric_limits<long long>::min(), 1, "-9223372036854775808"},
    };
    for (const auto& [number, digits, expected] : cases) {
        char buffer[32];
        TextWriter writer(buffer, sizeof buffer);
        writer.AppendNumber(number, digits);
        EXPECT_STREQ(expected, buffer);
    }
}

}  // namespace
