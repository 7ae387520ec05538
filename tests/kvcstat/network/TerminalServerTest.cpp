// The terminal-server product that serves the session.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using kvtest::kTerminalServer;
using simwin::CompanionText;
using simwin::RegistryType;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::StartsWith;
using namespace std::string_literals;

class TerminalServerTest : public kvtest::NetworkTest {
  protected:
    TerminalServerTest() {
        DescribeVersion(2, 5, 2);
        DescribeVariable("CLIENTNAME", "Thin07");
    }

    void DescribeCitrix(std::string_view name, std::string_view version) {
        DescribeText(kvtest::kCitrix, "ProductName", name);
        DescribeText(kvtest::kCitrix, "ProductVersion", version);
    }
    void DescribeWrapper() { station.session.clientName = CompanionText{"Wrapped", 1, true}; }
    void ExpectTSVersion(const std::string& version) {
        EXPECT_EQ(Make().GetTSProduct(), -1);
        EXPECT_EQ(kvtest::Str(network->m_cTSVersion), version);
        EXPECT_STREQ(network->m_cTSProduct, "");
        ExpectEverythingClosed();
    }
};

TEST_F(TerminalServerTest, CitrixProductIsItsNameABlankAndItsVersion) {
    DescribeCitrix("Citrix Presentation Server", "4.0");
    EXPECT_EQ(Make().GetCitrixProduct(), -1);
    EXPECT_STREQ(network->m_cTSProduct, "Citrix Presentation Server 4.0");
    EXPECT_STREQ(network->m_cTSVersion, "");
    ExpectEverythingClosed();
}

TEST_F(TerminalServerTest, CitrixProductWithoutANameIsItsVersionAndWithoutAVersionEndsInABlank) {
    DescribeText(kvtest::kCitrix, "ProductVersion", "1.90");
    Make().GetCitrixProduct();
    EXPECT_STREQ(network->m_cTSProduct, "1.90");

    station.registry = {};
    DescribeText(kvtest::kCitrix, "ProductName", "Citrix");
    Make().GetCitrixProduct();
    EXPECT_STREQ(network->m_cTSProduct, "Citrix ");

    station.registry = {};
    Make().GetCitrixProduct();
    EXPECT_STREQ(network->m_cTSProduct, "");
}

TEST_F(TerminalServerTest, CitrixServerOfVersion1Dot70OrLaterIsAskedForItsClient) {
    const struct {
        const char* version;
        bool asked;
    } rows[] = {
        {"4.0", true},
        {"1.8", false},
        {"1.90", true},
        {"1.70", true},
        {"1.69", false},
        {"1.7", false},
        {"2", true},
        {"2.0", true},
        {"1", false},
        {"1.", false},
        {"0.99", false},
        {"", false},
        {"abc", false},
        {"v4.0", false},
        {"4.0a", true},
        {" 1.70", true},
        {"1 .70", false},
        {"1.+70", true},
        {"-4.0", false},
        {"1.-70", false},
        {".70", false},
        {"1,70", false},
        {"1.070", true},
        {"1..70", false},
        {"99999999999999999999.0", true},
        {"1.99999999999999999999", true},
    };
    DescribeWrapper();
    for (const auto& row : rows) {
        DescribeCitrix("Citrix", row.version);
        Make().GetCitrixProduct();
        EXPECT_STREQ(network->m_cTSClientName, row.asked ? "Wrapped" : "Thin07") << row.version;
        EXPECT_STREQ(network->m_cClientName, row.asked ? "Wrapped" : "") << row.version;
    }
}

TEST_F(TerminalServerTest, CitrixKeepsTheLetterCaseOfTheClientNameAndTheMicrosoftWayUpperCasesIt) {
    DescribeCitrix("Citrix WinFrame", "1.6");
    Make().GetCitrixProduct();
    EXPECT_STREQ(network->m_cTSClientName, "Thin07");
    Make().GetTSProduct();
    EXPECT_STREQ(network->m_cTSClientName, "THIN07");
}

TEST_F(TerminalServerTest, MicrosoftProductReadsTheClientNameBeforeTheKeyAndBehindIt) {
    Make();
    machine->keepLog(true);
    network->GetTSProduct();
    std::vector<std::string> calls;
    for (const simwin::LoggedCall& call : machine->log()) {
        if (call.name == "KVGetEnv" || call.name == "_mbsupr" || call.name == "RegOpenKeyExA")
            calls.push_back(call.name + " " + call.arguments);
    }
    const char* read = R"(KVGetEnv "CLIENTNAME", 512)";
    const char* raise = R"(_mbsupr "Thin07")";
    // No options, and KEY_READ.
    const auto open =
        AllOf(StartsWith("RegOpenKeyExA HKEY_LOCAL_MACHINE "), EndsWith(R"(\\Terminal Server", 0, 131097)"));
    EXPECT_THAT(calls, ElementsAre(read, raise, open, read, raise));
}

TEST_F(TerminalServerTest, MicrosoftProductAsksTheWrapperWhetherOrNotItsKeyOpened) {
    DescribeWrapper();
    Make().GetTSProduct();
    EXPECT_STREQ(network->m_cTSClientName, "Wrapped");
    EXPECT_STREQ(network->m_cClientName, "Wrapped");
    station.registry.create(kTerminalServer);
    Make().GetTSProduct();
    EXPECT_STREQ(network->m_cTSClientName, "Wrapped");
}

TEST_F(TerminalServerTest, MicrosoftProductIsEmptyWithoutItsKeyAndHasADefaultWithoutAName) {
    ExpectTSVersion("");
    station.registry.create(kTerminalServer);
    ExpectTSVersion("Microsoft Terminal Server");
    DescribeText(kTerminalServer, "ProductVersion", "5.2");
    ExpectTSVersion("Microsoft Terminal Server");
    station.deniedKeys = {kTerminalServer};
    ExpectTSVersion("");
}

TEST_F(TerminalServerTest, MicrosoftProductIsItsNameAndVersion) {
    DescribeText(kTerminalServer, "ProductName", "Windows Terminal Server");
    ExpectTSVersion("Windows Terminal Server");
    DescribeText(kTerminalServer, "ProductVersion", "5.2");
    ExpectTSVersion("Windows Terminal Server 5.2");
}

TEST_F(TerminalServerTest, MicrosoftProductIsReadByTheStrictRule) {
    const struct {
        RegistryType type;
        std::string bytes;
        std::string version;
    } rows[] = {
        {RegistryType::ExpandText, "%TS%\0"s, "%TS%"},
        {RegistryType::MultiText, "First\0Second\0\0"s, "First"},
        {RegistryType::MultiText, "\0\0"s, ""},
        {RegistryType::MultiText, "First\0."s, "Microsoft Terminal Server"},
        {RegistryType::Binary, "Server\0"s, "Microsoft Terminal Server"},
        {RegistryType::DWord, "\1\0\0\0"s, "Microsoft Terminal Server"},
        {RegistryType::MultiText, "First\0Second\0"s, "Microsoft Terminal Server"},
        {RegistryType::Text, std::string(259, 'p') + '\0', std::string(259, 'p')},
        {RegistryType::Text, std::string(260, 'p') + '\0', "Microsoft Terminal Server"},
        {RegistryType::Text, std::string(260, 'p'), "Microsoft Terminal Server"},
        {RegistryType::Text, ""s, ""},
    };
    for (const auto& row : rows) {
        station.registry.set(kTerminalServer, {"ProductName", static_cast<std::uint32_t>(row.type), row.bytes});
        ExpectTSVersion(row.version);
    }
}

TEST_F(TerminalServerTest, VersionThatCannotBeReadStrictlyLeavesTheNameAlone) {
    DescribeText(kTerminalServer, "ProductName", "Windows Terminal Server");
    station.registry.set(kTerminalServer, simwin::dwordValue("ProductVersion", 5));
    ExpectTSVersion("Windows Terminal Server");
    DescribeText(kTerminalServer, "ProductVersion", std::string(300, '5'));
    ExpectTSVersion("Windows Terminal Server");
}

TEST_F(TerminalServerTest, SessionsVariablesAreTakenOver) {
    Make().GetTSVariables();
    EXPECT_STREQ(network->m_cTSProtocol, "");
    EXPECT_STREQ(network->m_cTSBuildNo, "");
    EXPECT_STREQ(network->m_cTSProductID, "");
    DescribeVariable("KVTSProtocol", "ICA");
    DescribeVariable("KVTSBuildNo", "2600");
    DescribeVariable("KVTSProductID", "1");
    Make().GetTSVariables();
    EXPECT_STREQ(network->m_cTSProtocol, "ICA");
    EXPECT_STREQ(network->m_cTSBuildNo, "2600");
    EXPECT_STREQ(network->m_cTSProductID, "1");
}

}  // namespace
