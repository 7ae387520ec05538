#include "kvstation/collect/RunningSystem.h"

#include <gtest/gtest.h>

namespace kvstation {
namespace {

TEST(RunningSystem, HidesItsVersionSinceWindows81) {
    EXPECT_TRUE(hidesItsVersion({.platform = 2, .major = 6, .minor = 3, .build = 9600}));
    EXPECT_TRUE(hidesItsVersion({.platform = 2, .major = 10, .minor = 0, .build = 26100}));
    EXPECT_TRUE(hidesItsVersion({.platform = 2, .major = 10, .minor = 0, .build = 20348, .isServer = true}));
    EXPECT_FALSE(hidesItsVersion({.platform = 2, .major = 6, .minor = 2, .build = 9200}));
    EXPECT_FALSE(hidesItsVersion({.platform = 2, .major = 5, .minor = 3, .build = 1}));
    EXPECT_FALSE(hidesItsVersion({.platform = 1, .major = 4, .minor = 90, .build = 3000}));
    EXPECT_FALSE(hidesItsVersion({})) << "a version that is not known";
}

}  // namespace
}  // namespace kvstation
