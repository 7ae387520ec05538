// The network's whole collection: the order of its steps, and what they overwrite of each other.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using kvtest::kTerminalServer;
using simwin::CompanionText;
using ::testing::HasSubstr;

class NetworkCollectionTest : public kvtest::NetworkTest {
  protected:
    NetworkCollectionTest() {
        DescribeVersion(2, 5, 2);
        station.computerName = "Srv1";
    }

    int Collect() { return Make().GetNetworkInformation(); }

    // Place in the log of the first call of that name whose arguments hold the text.
    std::size_t PlaceOf(std::string_view call, std::string_view text) const {
        const auto& log = machine->log();
        const auto found = std::find_if(log.begin(), log.end(), [&](const simwin::LoggedCall& logged) {
            return logged.name == call && logged.arguments.find(text) != std::string::npos;
        });
        EXPECT_NE(found, log.end()) << call << " " << text;
        return static_cast<std::size_t>(found - log.begin());
    }
};

TEST_F(NetworkCollectionTest, StepsRunInTheirOrder) {
    DescribeSession();
    Make();
    machine->keepLog(true);
    network->GetNetworkInformation();
    const std::size_t places[] = {
        PlaceOf("gethostname", ""),
        PlaceOf("RegOpenKeyA", "Adapters"),
        PlaceOf("LoadLibraryA", "netapi32.dll"),
        PlaceOf("RegOpenKeyA", "Settings"),
        PlaceOf("RegOpenKeyA", "NetWorkProvider"),
        PlaceOf("RegOpenKeyA", ".html"),
        PlaceOf("RegOpenKeyA", "Opera Software"),
        PlaceOf("RegOpenKeyA", "NetworkCards"),
        PlaceOf("RegOpenKeyA", "Mail"),
        PlaceOf("RegOpenKeyA", ".ica"),
        PlaceOf("GetEnvironmentVariableA", ""),
        PlaceOf("KVGetDomainName", ""),
        PlaceOf("KVGetEnv", "KVTSProtocol"),
    };
    EXPECT_THAT(places, ::testing::WhenSorted(::testing::ElementsAreArray(places)));
}

TEST_F(NetworkCollectionTest, StatusIsThatOfTheMailStep) {
    EXPECT_EQ(Collect(), -1);
    station.registry.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail");
    EXPECT_EQ(Collect(), 0);
}

TEST_F(NetworkCollectionTest, NetworkLibrarysDomainReplacesTheEnvironmentsAlsoWhenItIsEmpty) {
    DescribeVariable("USERDOMAIN", "ENVIRONMENT");
    Collect();
    EXPECT_STREQ(network->m_cDomain, "");
    station.network.domain = "LAB";
    Collect();
    EXPECT_STREQ(network->m_cDomain, "LAB");
}

TEST_F(NetworkCollectionTest, OutsideASessionThereIsNoProductAndNoSessionVariable) {
    DescribeVariable("KVTSProtocol", "ICA");
    DescribeText(kvtest::kCitrix, "ProductName", "Citrix MetaFrame XP");
    DescribeText(kTerminalServer, "ProductName", "Windows Terminal Server");
    DescribeText("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\WinLogon", "DefaultDomainName",
                 "LAB");
    station.session.clientName = CompanionText{"Wrapped", 1, true};
    Collect();
    EXPECT_STREQ(network->m_cTSProduct, "");
    EXPECT_STREQ(network->m_cTSVersion, "");
    EXPECT_STREQ(network->m_cTSProtocol, "");
    EXPECT_STREQ(network->m_cTSClientName, "");
    EXPECT_STREQ(network->m_cClientName, "SRV1");
    EXPECT_STREQ(network->m_cDefaultDomainName, "");
}

TEST_F(NetworkCollectionTest, CitrixSessionHasTheCitrixProductAlsoOnATerminalServer) {
    station.version->terminalServices = true;
    DescribeText(kTerminalServer, "ProductName", "Windows Terminal Server");
    DescribeText(kvtest::kCitrix, "ProductVersion", "1.8");
    for (const char* product : {"Citrix MetaFrame", "Citrix WinFrame"}) {
        station.environment = {{"CLIENTNAME", "Thin07"}, {"KVTSProtocol", "ICA"}};
        DescribeText(kvtest::kCitrix, "ProductName", product);
        Collect();
        EXPECT_EQ(kvtest::Str(network->m_cTSProduct), std::string(product) + " 1.8");
        EXPECT_STREQ(network->m_cTSVersion, "");
        EXPECT_STREQ(network->m_cTSProtocol, "ICA");
        EXPECT_STREQ(network->m_cClientName, "Thin07");
        EXPECT_STREQ(network->m_cTSClientName, "Thin07");
    }
}

TEST_F(NetworkCollectionTest, TerminalServerSessionHasTheMicrosoftProduct) {
    station.version->terminalServices = true;
    DescribeVariable("CLIENTNAME", "Thin07");
    DescribeVariable("KVTSProtocol", "RDP");
    DescribeText(kTerminalServer, "ProductName", "Windows Terminal Server");
    Collect();
    EXPECT_STREQ(network->m_cTSProduct, "");
    EXPECT_STREQ(network->m_cTSVersion, "Windows Terminal Server");
    EXPECT_STREQ(network->m_cTSProtocol, "RDP");
    EXPECT_STREQ(network->m_cClientName, "Thin07");
    EXPECT_STREQ(network->m_cTSClientName, "THIN07");
}

TEST_F(NetworkCollectionTest, WrappersClientNameReplacesTheOneThatWasFoundFirst) {
    DescribeSession();
    DescribeText(kvtest::kCitrix, "ProductVersion", "4.0");
    station.session.clientName = CompanionText{"Wrapped", 1, true};
    Collect();
    EXPECT_STREQ(network->m_cClientName, "Wrapped");
    EXPECT_STREQ(network->m_cTSClientName, "Wrapped");
    EXPECT_THAT(Trace(), ::testing::ElementsAre("6 1. CNetworkInformation='Thin07' 'Thin07'"));
}

TEST_F(NetworkCollectionTest, ClosesWhatItOpens) {
    DescribeSession();
    Collect();
    ExpectEverythingClosed();
}

}  // namespace
