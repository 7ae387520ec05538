#include "kvcstat/os/OSInformation.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

class OSDescriptionTest : public kvtest::MachineTest {
  protected:
    void Describe(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor, std::uint32_t build,
                  std::string servicePack) {
        station.version = simwin::WindowsVersion{platformId, major, minor, build, std::move(servicePack), false};
    }
};

TEST_F(OSDescriptionTest, DescribesEachPlatformInItsOwnForm) {
    const struct {
        std::uint32_t platformId, major, minor, build;
        const char* servicePack;
        const char* description;
        const char* name;
    } rows[] = {
        {0, 3, 11, 103, "", "Windows  3.11 (Build 103)", "Win3.11"},
        {0, 3, 11, 103, "SP1", "Windows  3.11 (Build 103) - SP1", "Win3.11"},
        {0, 3, 11, 103, "1", "Windows  3.11 (Build 103) - 1", "Win3.11"},
        {1, 4, 0, 67109814, "", "Windows  95", "0"},
        {1, 4, 10, 67766222, " A ", "Windows  98  A ", "10"},
        {1, 4, 90, 3000, "", "Windows  98", "90"},
        {2, 4, 0, 1381, "Service Pack 6", "Windows NT 4.0 (Build 1381) Service Pack 6", "NT4"},
        {2, 5, 1, 2600, "Service Pack 3", "Windows NT 5.1 (Build 2600) Service Pack 3", "NT5"},
        {2, 10, 0, 22631, "", "Windows NT 10.0 (Build 22631)", "NT10"},
        {2, 0xFFFFFFFF, 0, 0x80000000, "", "Windows NT -1.0 (Build -2147483648)", "NT-1"},
        {3, 1, 2, 3, "SP", "", ""},
    };
    for (const auto& row : rows) {
        Describe(row.platformId, row.major, row.minor, row.build, row.servicePack);
        Start();
        COSInformation os;
        EXPECT_EQ(os.ReadVersion(), 0);
        EXPECT_STREQ(os.m_cOSDescription, row.description);
        EXPECT_EQ(os.BuildDescription(), 0);
        EXPECT_STREQ(os.m_cOSDescription, row.description);
        EXPECT_EQ(os.PublishOSName(), 0);
        EXPECT_EQ(VariableSet("KVOS"), row.name) << row.description;
    }
}

TEST_F(OSDescriptionTest, ServicePackIsPublishedOnWindowsNTOnly) {
    Describe(2, 5, 1, 2600, "Service Pack 3");
    Start();
    COSInformation nt;
    nt.ReadVersion();
    nt.PublishOSName();
    EXPECT_EQ(VariableSet("KVOSServicePack"), "Service Pack 3");

    Describe(2, 5, 1, 2600, "3");
    Start();
    COSInformation shortest;
    shortest.ReadVersion();
    shortest.PublishOSName();
    EXPECT_EQ(VariableSet("KVOSServicePack"), "3");

    Describe(1, 4, 10, 2222, " A ");
    Start();
    COSInformation windows98;
    windows98.ReadVersion();
    windows98.PublishOSName();
    EXPECT_EQ(VariableSet("KVOSServicePack"), std::nullopt);
}

TEST_F(OSDescriptionTest, LongestServicePackIsTakenWhole) {
    Describe(2, 5, 1, 2600, std::string(127, 's'));
    Start();
    COSInformation os;
    static_assert(sizeof os.m_szCSDVersion == 128, "the room that Windows has for it");
    os.ReadVersion();
    os.PublishOSName();
    EXPECT_EQ(VariableSet("KVOSServicePack"), std::string(127, 's'));
    EXPECT_EQ(kvtest::Str(os.m_cOSDescription), "Windows NT 5.1 (Build 2600) " + std::string(127, 's'));
}

TEST_F(OSDescriptionTest, SystemWithoutServicePackLeavesTheVariableUntouched) {
    Describe(2, 5, 0, 2195, "");
    station.environment = {{"KVOSServicePack", "from outside"}};
    Start();
    COSInformation os;
    os.ReadVersion();
    os.PublishOSName();
    EXPECT_STREQ(os.m_cOSDescription, "Windows NT 5.0 (Build 2195)");
    EXPECT_EQ(VariableSet("KVOSServicePack"), std::nullopt);
}

TEST_F(OSDescriptionTest, FailingVersionKeepsEveryMemberAndPublishesAnEmptyName) {
    Start().keepLog(true);
    COSInformation os;
    EXPECT_EQ(os.ReadVersion(), -1);
    ASSERT_EQ(machine->log().size(), 2u);
    EXPECT_EQ(machine->log()[0].name, "GetVersionExA");
    EXPECT_EQ(machine->log()[1].name, "GetLastError");
    EXPECT_EQ(os.m_dwPlatformId, 0xFFFFFFFFu);
    EXPECT_EQ(os.m_dwMajorVersion, 0u);
    EXPECT_EQ(os.m_dwMinorVersion, 0u);
    EXPECT_EQ(os.m_dwBuildNumber, 0u);
    EXPECT_STREQ(os.m_szCSDVersion, "");
    EXPECT_STREQ(os.m_cOSDescription, "");
    EXPECT_EQ(os.PublishOSName(), 0);
    EXPECT_EQ(VariableSet("KVOS"), "");
}

TEST_F(OSDescriptionTest, PlatformIdIsReadLazilyAndAgainUntilItSucceeds) {
    Start();
    COSInformation os;
    EXPECT_EQ(os.GetPlatformId(), 0xFFFFFFFFu);
    Describe(2, 5, 1, 2600, "");
    Start();
    EXPECT_EQ(os.GetPlatformId(), 2u);
    EXPECT_STREQ(os.m_cOSDescription, "Windows NT 5.1 (Build 2600)");
    const auto calls = machine->calls();
    EXPECT_EQ(os.GetPlatformId(), 2u);
    EXPECT_EQ(machine->calls(), calls);
}

TEST_F(OSDescriptionTest, UnknownPlatformEmptiesTheDescription) {
    Describe(2, 5, 1, 2600, "");
    Start();
    COSInformation os;
    os.ReadVersion();
    Describe(3, 5, 1, 2600, "");
    Start();
    EXPECT_EQ(os.ReadVersion(), 0);
    EXPECT_STREQ(os.m_cOSDescription, "");
}

TEST_F(OSDescriptionTest, RefusedVariableIsAFailureOnKnownPlatformsOnly) {
    station.fails["KVSetEnv"] = 5;
    Describe(2, 5, 1, 2600, "");
    Start();
    COSInformation known;
    known.ReadVersion();
    EXPECT_EQ(known.PublishOSName(), -1);
    Describe(7, 5, 1, 2600, "");
    Start();
    COSInformation unknown;
    unknown.ReadVersion();
    EXPECT_EQ(unknown.PublishOSName(), 0);
}

}  // namespace
