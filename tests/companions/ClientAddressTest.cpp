#include "companions/kvtswrp/ClientAddress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

// An answer as Windows gives it: the family, then twenty bytes in which the address begins with the third.
Bytes Answer(unsigned char family, const Bytes& address) {
    Bytes answer(24);
    answer[0] = family;
    std::copy(address.begin(), address.end(), answer.begin() + 6);
    return answer;
}

std::string Format(const Bytes& answer) {
    char buffer[32] = "before";
    const bool filled = FormatClientAddress(answer.data(), answer.size(), buffer, sizeof buffer);
    EXPECT_EQ(filled, buffer[0] != '\0');
    return buffer;
}

TEST(ClientAddress, IsDottedAndBeginsBehindThePort) {
    EXPECT_EQ("192.168.7.20", Format(Answer(2, {192, 168, 7, 20})));
}

TEST(ClientAddress, HasRoomForTheLongest) {
    EXPECT_EQ("255.255.255.255", Format(Answer(2, {255, 255, 255, 255})));
}

TEST(ClientAddress, KeepsZeroParts) {
    EXPECT_EQ("10.0.0.5", Format(Answer(2, {10, 0, 0, 5})));
    EXPECT_EQ("0.0.0.5", Format(Answer(2, {0, 0, 0, 5})));
}

TEST(ClientAddress, IsEmptyOnTheConsole) {
    EXPECT_EQ("", Format(Answer(0, {})));
}

TEST(ClientAddress, IsEmptyForAllZeros) {
    EXPECT_EQ("", Format(Answer(2, {0, 0, 0, 0})));
}

TEST(ClientAddress, IsEmptyForOtherFamilies) {
    // 23 is IPv6 on Windows; 10 is IPv6 elsewhere.
    for (const unsigned char family : Bytes{1, 6, 10, 17, 23})
        EXPECT_EQ("", Format(Answer(family, {0xFE, 0x80, 0, 1})));
}

TEST(ClientAddress, LooksAtAllFourBytesOfTheFamily) {
    for (const std::size_t place : {1U, 2U, 3U}) {
        Bytes answer = Answer(2, {10, 0, 0, 5});
        answer[place] = 1;
        EXPECT_EQ("", Format(answer)) << place;
    }
}

TEST(ClientAddress, NeedsTheWholeAddressInTheAnswer) {
    const Bytes whole = Answer(2, {10, 0, 0, 5});
    for (std::size_t size = 0; size < 10; ++size)
        EXPECT_EQ("", Format(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    EXPECT_EQ("10.0.0.5", Format(Bytes(whole.begin(), whole.begin() + 10)));
}

TEST(ClientAddress, IsEmptyWithoutAnAnswer) {
    char buffer[] = "before";
    EXPECT_FALSE(FormatClientAddress(nullptr, 24, buffer, sizeof buffer));
    EXPECT_STREQ("", buffer);
}

TEST(ClientAddress, IsCutAtTheBuffer) {
    const Bytes answer = Answer(2, {192, 168, 7, 20});
    char buffer[8];
    EXPECT_TRUE(FormatClientAddress(answer.data(), answer.size(), buffer, sizeof buffer));
    EXPECT_STREQ("192.168", buffer);
}

TEST(ClientAddress, NeedsABuffer) {
    const Bytes answer = Answer(2, {192, 168, 7, 20});
    char buffer[] = "before";
    EXPECT_FALSE(FormatClientAddress(answer.data(), answer.size(), nullptr, 32));
    EXPECT_FALSE(FormatClientAddress(answer.data(), answer.size(), buffer, 0));
    EXPECT_STREQ("before", buffer);
}

}  // namespace
