// Whom Windows is registered to, and who uses the station.
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::LongText;
using kvtest::Str;

constexpr char kWindows[] = "Software\\Microsoft\\Windows\\CurrentVersion";
constexpr char kWindowsNT[] = "Software\\Microsoft\\Windows NT\\CurrentVersion";

class OwnerTest : public kvtest::HardwareTest {
  protected:
    void DescribeOwner(const char* key, const std::string& owner, const std::string& organization,
                       const std::string& product) {
        SetText(key, "RegisteredOwner", owner);
        SetText(key, "RegisteredOrganization", organization);
        SetText(key, "ProductId", product);
    }
};

TEST_F(OwnerTest, EachFamilyKeepsItsOwnerUnderItsOwnName) {
    DescribeOwner(kWindows, "Jane", "Laboratory", "23498-OEM-0011903-12345");
    DescribeOwner(kWindowsNT, "John", "Office", "50370-OEM-0011903-00101");
    const struct {
        std::uint32_t platformId;
        const char *owner, *organization, *product;
    } rows[] = {{1, "Jane", "Laboratory", "23498-OEM-0011903-12345"}, {2, "John", "Office", "50370-OEM-0011903-00101"}};
    for (const auto& row : rows) {
        DescribePlatform(row.platformId);
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetOwner(), 0);
        EXPECT_STREQ(hardware->m_cRegisteredOwner, row.owner);
        EXPECT_STREQ(hardware->m_cRegisteredOrganization, row.organization);
        EXPECT_STREQ(hardware->m_cProductId, row.product);
    }
}

TEST_F(OwnerTest, StatusIsThatOfTheProductsRead) {
    DescribeWindowsNT();
    SetText(kWindowsNT, "RegisteredOwner", "John");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetOwner(), -1);
    EXPECT_STREQ(hardware->m_cRegisteredOwner, "John");
    EXPECT_STREQ(hardware->m_cRegisteredOrganization, "");
}

TEST_F(OwnerTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindowsNT();
    DescribeOwner(kWindowsNT, LongText(), LongText(), LongText());
    Start();
    Hardware hardware;
    hardware->GetOwner();
    EXPECT_EQ(Str(hardware->m_cRegisteredOwner), LongText());
    EXPECT_EQ(Str(hardware->m_cRegisteredOrganization), LongText());
    EXPECT_EQ(Str(hardware->m_cProductId), LongText());
}

TEST_F(OwnerTest, OutsideASessionTheUserIsTheOneWhoIsLoggedOn) {
    DescribeWindowsNT();
    station.user.name = "jdoe";
    Start();
    Hardware hardware;
    hardware->m_cUserName = "USER1";
    hardware->GetOwner();
    EXPECT_STREQ(hardware->m_cCurrentUser, "jdoe");
}

TEST_F(OwnerTest, UserWhoseNameCannotBeReadIsUnknown) {
    DescribeWindowsNT();
    Start();
    Hardware hardware;
    hardware->GetOwner();
    EXPECT_STREQ(hardware->m_cCurrentUser, "unknown");
}

TEST_F(OwnerTest, NameOfUpTo254CharactersFitsAndALongerOneIsUnknown) {
    DescribeWindowsNT();
    station.user.name = std::string(254, 'u');
    Start();
    {
        Hardware hardware;
        hardware->GetOwner();
        EXPECT_EQ(Str(hardware->m_cCurrentUser), std::string(254, 'u'));
    }
    station.user.name = std::string(255, 'u');
    Start();
    Hardware hardware;
    hardware->GetOwner();
    EXPECT_STREQ(hardware->m_cCurrentUser, "unknown");
}

TEST_F(OwnerTest, InASessionTheUserIsTheRunsAndWindowsIsNotAsked) {
    DescribeMetaFrameSession();
    station.user.name = "jdoe";
    for (const std::uint32_t platformId : {1u, 2u}) {
        DescribePlatform(platformId);
        Start().keepLog(true);
        Hardware hardware;
        hardware->m_cUserName = "USER1";
        hardware->GetOwner();
        EXPECT_STREQ(hardware->m_cCurrentUser, "Terminal server session (USER1)");
        EXPECT_EQ(CountCalls("GetUserNameA"), 0u);
    }
}

TEST_F(OwnerTest, SessionWithoutAUserKeepsTheEmptyParentheses) {
    DescribeWindowsNT();
    DescribeMetaFrameSession();
    Start();
    Hardware hardware;
    hardware->GetOwner();
    EXPECT_STREQ(hardware->m_cCurrentUser, "Terminal server session ()");
}

TEST_F(OwnerTest, OtherPlatformsReadNothingAndHaveNoUser) {
    DescribePlatform(3);
    DescribeOwner(kWindows, "Jane", "Laboratory", "1");
    DescribeOwner(kWindowsNT, "John", "Office", "2");
    station.user.name = "jdoe";
    Start().keepLog(true);
    Hardware hardware;
    EXPECT_EQ(hardware->GetOwner(), 0);
    EXPECT_STREQ(hardware->m_cRegisteredOwner, "");
    EXPECT_STREQ(hardware->m_cCurrentUser, "");
    EXPECT_EQ(CountCalls("GetUserNameA"), 0u);
}

}  // namespace
