#include <gtest/gtest.h>

#include "companions/zrtrc/TraceLine.h"

namespace {

TEST(TraceLevel, IsTracedUpToTheLimit) {
    EXPECT_TRUE(IsLevelTraced(1, "2"));
    EXPECT_TRUE(IsLevelTraced(2, "2"));
    EXPECT_FALSE(IsLevelTraced(3, "2"));
    EXPECT_TRUE(IsLevelTraced(10, "10"));
    EXPECT_FALSE(IsLevelTraced(11, "10"));
}

TEST(TraceLevel, IsTracedAlwaysWithoutALimit) {
    EXPECT_TRUE(IsLevelTraced(2, nullptr));
    EXPECT_TRUE(IsLevelTraced(2147483647, nullptr));
}

TEST(TraceLevel, IsTracedAlwaysWhenTheLimitIsNoNumber) {
    for (const char* limit : {"", " ", "all", "-", "x2"})
        EXPECT_TRUE(IsLevelTraced(6, limit)) << limit;
}

TEST(TraceLevel, LimitMayStandBetweenBlanks) {
    EXPECT_FALSE(IsLevelTraced(6, " 2 "));
    EXPECT_TRUE(IsLevelTraced(2, " 2 "));
}

TEST(TraceLevel, LimitsBelowZeroSilenceTheUsualLevels) {
    EXPECT_FALSE(IsLevelTraced(0, "-1"));
    EXPECT_TRUE(IsLevelTraced(-1, "-1"));
}

TEST(TraceLevel, LimitsBeyondEveryNumberAreTheLargestAndTheSmallest) {
    EXPECT_TRUE(IsLevelTraced(2147483647, "99999999999999999999"));
    EXPECT_FALSE(IsLevelTraced(0, "-99999999999999999999"));
}

}  // namespace
