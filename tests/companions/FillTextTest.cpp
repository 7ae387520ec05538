#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "companions/common/TextWriter.h"

namespace {

constexpr int kWidth = 16;
constexpr char kGuard = '\xA5';

TEST(FillText, CutsEveryLengthAtTheBufferAndWritesNothingBehindIt) {
    for (std::size_t length = 0; length <= 2 * kWidth; ++length) {
        std::array<char, 3 * kWidth> memory;
        memory.fill(kGuard);
        char* buffer = memory.data() + kWidth;
        const std::string text(length, 'x');

        EXPECT_EQ(length > 0, FillText(buffer, kWidth, text)) << length;

        const std::size_t kept = length < kWidth ? length : kWidth - 1;
        EXPECT_EQ(std::string(kept, 'x'), buffer) << length;
        const std::string guard(kWidth, kGuard);
        EXPECT_EQ(guard, std::string(memory.data(), kWidth)) << length;
        EXPECT_EQ(guard, std::string(buffer + kWidth, kWidth)) << length;
    }
}

TEST(FillText, EmptiesABufferOfOneByteAndReportsNoText) {
    char buffer[] = {'?', kGuard};
    EXPECT_FALSE(FillText(buffer, 1, "abc"));
    EXPECT_EQ('\0', buffer[0]);
    EXPECT_EQ(kGuard, buffer[1]);
}

TEST(FillText, WritesNothingForASizeBelowOne) {
    char buffer[] = {kGuard};
    EXPECT_FALSE(FillText(buffer, 0, "abc"));
    EXPECT_FALSE(FillText(buffer, -1, "abc"));
    EXPECT_EQ(kGuard, buffer[0]);
}

TEST(FillText, TakesANullBufferForNoBuffer) {
    EXPECT_FALSE(FillText(nullptr, 16, "abc"));
}

TEST(FillText, EmptiesTheBufferForAnEmptyText) {
    char buffer[] = "before";
    EXPECT_FALSE(FillText(buffer, sizeof buffer, {}));
    EXPECT_STREQ("", buffer);
}

}  // namespace
