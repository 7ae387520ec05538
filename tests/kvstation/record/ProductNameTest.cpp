#include "kvstation/record/ProductName.h"

#include <gtest/gtest.h>

namespace kvstation {
namespace {

std::string workstation(std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
    return productName({.platform = 2, .major = major, .minor = minor, .build = build, .isServer = false});
}

std::string server(std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
    return productName({.platform = 2, .major = major, .minor = minor, .build = build, .isServer = true});
}

TEST(ProductName, BuildsFrom22000OnAreWindows11) {
    EXPECT_EQ(workstation(10, 0, 21999), "Windows Server 2022");
    EXPECT_EQ(workstation(10, 0, 22000), "Windows 11");
    EXPECT_EQ(workstation(10, 0, 26200), "Windows 11");
}

TEST(ProductName, Windows10GoesUpToBuild19045) {
    EXPECT_EQ(workstation(10, 0, 10240), "Windows 10");
    EXPECT_EQ(workstation(10, 0, 19045), "Windows 10");
}

TEST(ProductName, ServersHaveNamesOfTheirOwn) {
    EXPECT_EQ(server(10, 0, 26100), "Windows Server 2025");
    EXPECT_EQ(server(10, 0, 20348), "Windows Server 2022");
    EXPECT_EQ(server(10, 0, 17763), "Windows Server 2019");
    EXPECT_EQ(server(10, 0, 14393), "Windows Server 2016");
    EXPECT_EQ(server(6, 3, 9600), "Windows Server 2012 R2");
    EXPECT_EQ(server(6, 1, 7601), "Windows Server 2008 R2");
}

TEST(ProductName, OlderVersionsGoByMajorAndMinor) {
    EXPECT_EQ(workstation(6, 3, 9600), "Windows 8.1");
    EXPECT_EQ(workstation(6, 1, 7601), "Windows 7");
    EXPECT_EQ(workstation(5, 1, 2600), "Windows XP");
    EXPECT_EQ(workstation(5, 0, 2195), "Windows 2000");
    EXPECT_EQ(workstation(4, 0, 1381), "Windows NT 4.0");
}

TEST(ProductName, Windows9xGoesByMinor) {
    EXPECT_EQ(productName({.platform = 1, .major = 4, .minor = 0}), "Windows 95");
    EXPECT_EQ(productName({.platform = 1, .major = 4, .minor = 10}), "Windows 98");
    EXPECT_EQ(productName({.platform = 1, .major = 4, .minor = 90}), "Windows Me");
}

TEST(ProductName, UnknownVersionsHaveNone) {
    EXPECT_EQ(workstation(11, 0, 0), "");
    EXPECT_EQ(productName({}), "");
}

TEST(ProductName, ThatOfWindows8MayHaveBeenToldByALaterOne) {
    EXPECT_EQ(productNameOfTold({.platform = 2, .major = 6, .minor = 2, .build = 9200}), "Windows 8 or later");
    EXPECT_EQ(productNameOfTold({.platform = 2, .major = 6, .minor = 2, .build = 9199}), "Windows 8");
    EXPECT_EQ(productNameOfTold({.platform = 2, .major = 6, .minor = 3, .build = 9600}), "Windows 8.1");
    EXPECT_EQ(workstation(6, 2, 9200), "Windows 8");
}

TEST(ProductName, TheRecordsTextTellsTheVersion) {
    const auto version = versionFromDescription("Windows NT 5.1 (Build 2600) Service Pack 3");
    ASSERT_TRUE(version.has_value());
    EXPECT_EQ(version->major, 5u);
    EXPECT_EQ(version->minor, 1u);
    EXPECT_EQ(version->build, 2600u);
}

TEST(ProductName, OtherTextsTellNoVersion) {
    EXPECT_FALSE(versionFromDescription("Windows  98").has_value());
    EXPECT_FALSE(versionFromDescription("").has_value());
    EXPECT_FALSE(versionFromDescription("Windows NT (Build 5)").has_value());
}

}  // namespace
}  // namespace kvstation
