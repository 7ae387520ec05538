// Floating point to integers, for every value.
#include <gtest/gtest.h>

#include "kvcstat/hardware/Truncation.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t kLowest = -2147483647 - 1;

TEST(TruncationTest, SignedNumbersAreTruncatedTowardsZeroAndTheLowestStandsForWhatDoesNotFit) {
    const struct {
        double from;
        std::int32_t to;
    } rows[] = {
        {0.0, 0},
        {0.999, 0},
        {-0.999, 0},
        {41.9, 41},
        {-41.9, -41},
        {2147483647.0, 2147483647},
        {2147483647.9, 2147483647},
        {2147483648.0, kLowest},
        {1e300, kLowest},
        {-2147483648.0, kLowest},
        {-2147483648.9, kLowest},
        {-2147483649.0, kLowest},
        {-1e300, kLowest},
        {kInfinity, kLowest},
        {-kInfinity, kLowest},
        {kNaN, kLowest},
    };
    for (const auto& row : rows)
        EXPECT_EQ(TruncateToInt32(row.from), row.to) << row.from;
}

TEST(TruncationTest, UnsignedNumbersKeepTheLower32BitsOfA64BitNumber) {
    const struct {
        double from;
        std::uint32_t to;
    } rows[] = {
        {0.0, 0},
        {1.999, 1},
        {4294967295.0, 4294967295},
        {4294967296.0, 0},
        {4294967298.5, 2},
        {17592186044416.5, 0},
        {-1.0, 4294967295},
        {9223372036854774784.0, 0xFFFFFC00},  // the greatest double below 2^63
        {9223372036854775808.0, 0},
        {-9223372036854775808.0, 0},
        {75557863725914323419136.0, 0},  // 2^76
        {kInfinity, 0},
        {-kInfinity, 0},
        {kNaN, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(TruncateToUInt32(row.from), row.to) << row.from;
}

}  // namespace
