// Which Windows this is, and which kind of session.
#include "kvcstat/common/StatGlobal.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using kvtest::kCitrix;
constexpr char kProductOptions[] = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\ProductOptions";

class PlatformTest : public kvtest::MachineTest {
  protected:
    void DescribeVersion(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor,
                         bool terminalServices = false) {
        station.version = simwin::WindowsVersion{platformId, major, minor, 1000, "", terminalServices};
    }
    void DescribeSession() { station.environment.push_back({"CLIENTNAME", "THIN07"}); }

    CStatGlobal global;
};

TEST_F(PlatformTest, PlatformIdIsWindowsOwnAndZeroWhenTheVersionCannotBeRead) {
    DescribeVersion(1, 4, 10);
    Start();
    EXPECT_EQ(global.GetPlatformId(), 1u);
    station.version.reset();
    Start();
    EXPECT_EQ(global.GetPlatformId(), 0u);
}

TEST_F(PlatformTest, WindowsNT5IsMajorVersionFiveOfNTExactly) {
    const struct {
        std::uint32_t platformId, major;
        bool isNT5;
    } rows[] = {{2, 4, false}, {2, 5, true}, {2, 6, false}, {2, 10, false}, {1, 5, false}};
    for (const auto& row : rows) {
        DescribeVersion(row.platformId, row.major, 0);
        Start();
        EXPECT_EQ(global.IsWindowsNT5(), row.isNT5) << row.platformId << " " << row.major;
    }
    station.version.reset();
    Start();
    EXPECT_FALSE(global.IsWindowsNT5());
}

TEST_F(PlatformTest, WithoutAClientNameNoTestSeesASessionWhateverTheRegistryHolds) {
    DescribeVersion(2, 5, 2, true);
    station.registry.set(kCitrix, simwin::textValue("ProductName", "WinFrame MetaFrame"));
    Start();
    EXPECT_FALSE(global.IsWinFrame());
    EXPECT_FALSE(global.IsMetaFrame());
    EXPECT_FALSE(global.IsTSClientSession());
    EXPECT_FALSE(global.IsRemoteSession());
}

TEST_F(PlatformTest, CitrixProductNameTellsMetaFrameFromWinFrameInItsLetterCase) {
    const struct {
        const char* product;
        bool metaFrame, winFrame;
    } rows[] = {
        {"Citrix MetaFrame XP", true, false}, {"Citrix metaframe XP", false, false}, {"Citrix WinFrame", false, true},
        {"winframe", false, false},           {"Presentation Server", false, false}, {"WinFrame MetaFrame", true, true},
    };
    for (const auto& row : rows) {
        station = {};
        DescribeSession();
        DescribeVersion(2, 5, 0);
        station.registry.set(kCitrix, simwin::textValue("ProductName", row.product));
        Start();
        EXPECT_EQ(global.IsMetaFrame(), row.metaFrame) << row.product;
        EXPECT_EQ(global.IsWinFrame(), row.winFrame) << row.product;
        EXPECT_EQ(global.IsRemoteSession(), row.metaFrame || row.winFrame) << row.product;
        ExpectEverythingClosed();
    }
}

TEST_F(PlatformTest, CitrixProductNameThatCannotBeReadStrictlyIsNone) {
    DescribeSession();
    DescribeVersion(2, 5, 0);
    Start();
    EXPECT_FALSE(global.IsMetaFrame());  // no key
    station.registry.set(kCitrix, simwin::binaryValue("ProductName", "MetaFrame"));
    Start();
    EXPECT_FALSE(global.IsMetaFrame());
    station.registry.set(kCitrix, simwin::textValue("ProductName", "MetaFrame" + std::string(250, ' ')));
    Start();
    EXPECT_FALSE(global.IsMetaFrame());  // 260 bytes do not fit 259
    station.registry.set(kCitrix, simwin::textValue("ProductName", "MetaFrame" + std::string(249, ' ')));
    Start();
    EXPECT_TRUE(global.IsMetaFrame());
    ExpectEverythingClosed();
}

TEST_F(PlatformTest, RemoteSessionAsksForMetaFrameFirstAndWinFrameLast) {
    DescribeSession();
    DescribeVersion(2, 5, 2, true);
    Start();
    machine->keepLog(true);
    EXPECT_TRUE(global.IsRemoteSession());
    // MetaFrame's key is asked for, Terminal Services answer, and WinFrame's key is not asked for any more.
    int citrixOpens = 0;
    for (const simwin::LoggedCall& call : machine->log())
        citrixOpens += call.name == "RegOpenKeyExA" ? 1 : 0;
    EXPECT_EQ(citrixOpens, 1);
    EXPECT_EQ(machine->log().back().name, "VerifyVersionInfoA");
}

TEST_F(PlatformTest, Windows9xIsNoTerminalServerAndTheRegistryIsNotAsked) {
    DescribeVersion(1, 4, 10, true);
    station.registry.set(kProductOptions, simwin::multiTextValue("ProductSuite", {"Terminal Server"}));
    Start();
    EXPECT_FALSE(global.IsTerminalServer());
    EXPECT_EQ(machine->calls(), 1u);
}

TEST_F(PlatformTest, WindowsNT4IsATerminalServerByAnExactProductSuiteItem) {
    const struct {
        std::vector<std::string> items;
        bool is;
    } rows[] = {
        {{"Terminal Server", "Enterprise"}, true},
        {{"Enterprise", "Terminal Server"}, true},
        {{"Terminal Server Edition"}, false},
        {{"terminal server"}, false},
        {{"Enterprise"}, false},
        {{}, false},
    };
    for (const auto& row : rows) {
        DescribeVersion(2, 4, 0, true);
        station.registry.set(kProductOptions, simwin::multiTextValue("ProductSuite", row.items));
        Start();
        EXPECT_EQ(global.IsTerminalServer(), row.is);
        ExpectEverythingClosed();
    }
}

TEST_F(PlatformTest, ProductSuiteOfAnotherTypeOrWithoutBytesOrTerminatorsIsReadSafely) {
    using simwin::RegistryType;
    const struct {
        RegistryType type;
        std::string bytes;
        bool is;
    } rows[] = {
        {RegistryType::Text, std::string("Terminal Server\0\0", 17), false},
        {RegistryType::Binary, std::string("Terminal Server\0\0", 17), false},
        {RegistryType::MultiText, "", false},
        {RegistryType::MultiText, "Terminal Server", true},
        {RegistryType::MultiText, std::string("Enterprise\0Terminal Server", 26), true},
        {RegistryType::MultiText, std::string("\0Terminal Server\0\0", 18), false},
    };
    for (const auto& row : rows) {
        DescribeVersion(2, 4, 0);
        station.registry.set(kProductOptions, {"ProductSuite", static_cast<std::uint32_t>(row.type), row.bytes});
        Start();
        EXPECT_EQ(global.IsProductSuite("Terminal Server"), row.is) << row.bytes;
        ExpectEverythingClosed();
    }
    station.registry = {};
    Start();
    EXPECT_FALSE(global.IsProductSuite("Terminal Server"));
}

TEST_F(PlatformTest, ProductSuiteThatIsNotThereOrEmptyIsNotReadASecondTime) {
    for (const bool described : {false, true}) {
        station.registry.create(kProductOptions);
        if (described)
            station.registry.set(kProductOptions,
                                 {"ProductSuite", static_cast<std::uint32_t>(simwin::RegistryType::MultiText), ""});
        Start();
        machine->keepLog(true);
        EXPECT_FALSE(global.IsProductSuite("Terminal Server"));
        EXPECT_THAT(machine->log(), ::testing::SizeIs(3)) << "open, query, close";
    }
}

TEST_F(PlatformTest, SinceWindows2000TheInstalledSuitesAnswerForTerminalServices) {
    DescribeVersion(2, 5, 0, true);
    Start();
    EXPECT_TRUE(global.IsTerminalServer());
    DescribeVersion(2, 6, 1, false);
    Start();
    EXPECT_FALSE(global.IsTerminalServer());
}

TEST_F(PlatformTest, KeysAreOpenedWithoutOptionsAndConditionsBeginWithNone) {
    DescribeVersion(2, 4, 0, true);
    Start().keepLog(true);
    global.IsTerminalServer();
    DescribeVersion(2, 5, 0, true);
    const std::string open = machine->log().back().arguments;
    EXPECT_THAT(open, ::testing::EndsWith(", 0, 131097"));  // KEY_READ
    Start().keepLog(true);
    global.IsTerminalServer();
    std::vector<std::string> conditions;
    for (const simwin::LoggedCall& call : machine->log()) {
        if (call.name == "VerSetConditionMask")
            conditions.push_back(call.arguments);
    }
    EXPECT_THAT(conditions, ::testing::ElementsAre("0, 64, 6"));  // VER_SUITENAME, VER_AND
}

TEST_F(PlatformTest, MissingVersionFunctionsMeanNoTerminalServer) {
    DescribeVersion(2, 5, 0, true);
    for (const char* missing :
         {"ntdll.dll", "ntdll.dll!VerSetConditionMask", "KERNEL32.DLL", "KERNEL32.DLL!VerifyVersionInfoA"}) {
        station.missing = {missing};
        Start();
        EXPECT_FALSE(global.IsTerminalServer()) << missing;
    }
}

TEST_F(PlatformTest, ClientSessionNeedsClientNameAndTerminalServices) {
    DescribeVersion(2, 5, 2, true);
    DescribeSession();
    Start();
    EXPECT_TRUE(global.IsTSClientSession());
    DescribeVersion(2, 5, 2, false);
    Start();
    EXPECT_FALSE(global.IsTSClientSession());
}

}  // namespace
