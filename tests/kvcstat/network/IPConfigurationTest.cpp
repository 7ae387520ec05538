// The station's addresses and names, its masks and gateways, and what of them the environment gets.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using namespace std::string_literals;
using simwin::CompanionText;

constexpr char kInterfaces[] =
    "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Interfaces\\";
constexpr char kAdapters[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Adapters\\";
constexpr char kNetBTAdapters[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\NetBT\\Adapters\\";
constexpr char kNetTrans[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\";

// A station whose name resolves to 10.0.0.5, and which knows everybody's MAC address.
class IPConfigurationTest : public kvtest::NetworkTest {
  protected:
    IPConfigurationTest() {
        DescribeVersion(2, 5, 1);
        station.computerName = "Srv1";
        station.network.hostName = "srv1";
        simwin::Host host;
        host.hostName = "srv1";
        host.name = "srv1.lab.example";
        host.addresses = {"\x0A\x00\x00\x05"s};
        station.network.hosts = {host};
        station.network.addresses = {{"10.0.0.5", "srv1.reverse.example"}, {"192.168.7.20", "thin07.reverse.example"}};
        station.network.arp = {{"10.0.0.5", "\x02\x00\x00\x00\x00\x05"s},
                               {"192.168.7.20", "\x02\x00\x00\x00\x00\x20"s}};
        station.network.netbios = {{0, "\x02\x00\x00\x00\x00\x99"s}};
    }

    void DescribeClient(std::string addresses, int result = 1) {
        DescribeSession();
        station.session.clientAddress = CompanionText{std::move(addresses), result, true};
        station.session.id = 3;
    }
    // Adapter values where Windows 2000, XP and Server 2003 keep them.
    void DescribeInterface(const std::string& name, std::string_view mask, std::string_view gateway) {
        station.registry.create(kAdapters + name);
        DescribeText(kInterfaces + name, "IPAddress", "10.9.9.9");
        DescribeText(kInterfaces + name, "SubNetMask", mask);
        DescribeText(kInterfaces + name, "DefaultGateway", gateway);
    }
    // The same where NT 4 and all versions behind 5.x are read.
    void DescribeBoundAdapter(const std::string& name, std::string_view mask, std::string_view gateway) {
        station.registry.create(kNetBTAdapters + name);
        const std::string parameters = kvtest::kServicesKey + name + "\\Parameters\\Tcpip";
        DescribeText(parameters, "SubNetMask", mask);
        DescribeText(parameters, "DefaultGateway", gateway);
    }
    void DescribeTransport(const std::string& number, std::string_view description) {
        DescribeText(kNetTrans + number, "DriverDesc", description);
    }

    int Collect() {
        ::testing::internal::CaptureStdout();
        const int status = Make().GetIPConfiguration();
        ::testing::internal::GetCapturedStdout();
        ExpectEverythingClosed();
        return status;
    }
    void ExpectMasksAndGateways(const char* masks, const char* gateways) {
        Collect();
        EXPECT_STREQ(network->m_cSubnetMask, masks);
        EXPECT_STREQ(network->m_cDefaultGateway, gateways);
    }
};

TEST_F(IPConfigurationTest, ConsoleStationHasItsResolvedAddressItsReverseNameAndItsMAC) {
    DescribeVariable("USERDOMAIN", "LAB");
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "10.0.0.5");
    EXPECT_STREQ(network->m_cDnsName, "srv1.reverse.example");
    EXPECT_STREQ(network->m_cMACAddress, "020000000005");
    EXPECT_STREQ(network->m_cDomain, "LAB");
    EXPECT_STREQ(network->m_cServerIPAddress, "");
    EXPECT_STREQ(network->m_cServerName, "");
    EXPECT_STREQ(network->m_cServerMACAddress, "");
    EXPECT_EQ(network->m_nSessionID, -1);
}

TEST_F(IPConfigurationTest, OverriddenAddressStaysAndGivesNameAndMAC) {
    DescribeVariable("KVIP", "10.1.2.3");
    station.network.addresses.push_back({"10.1.2.3", "front-desk.lab.example"});
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "10.1.2.3");
    EXPECT_STREQ(network->m_cDnsName, "front-desk.lab.example");
    EXPECT_STREQ(network->m_cMACAddress, "unknown");
}

TEST_F(IPConfigurationTest, OldSocketLibraryReplacesTheOverriddenAddress) {
    DescribeVariable("KVIP", "10.1.2.3");
    station.missing = {"ws2_32.dll"};
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "10.0.0.5");
    EXPECT_STREQ(network->m_cDnsName, "srv1.reverse.example");
}

TEST_F(IPConfigurationTest, StationWithoutAnAddressTakesItsMACFromNetbiosAndKeepsItsHostName) {
    station.network.hosts.clear();
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "");
    EXPECT_STREQ(network->m_cDnsName, "srv1");
    EXPECT_STREQ(network->m_cMACAddress, "020000000099");
}

TEST_F(IPConfigurationTest, WithAClientNameTheMACIsWantedOnlyWhenItsVariableIsExactlyOne) {
    DescribeVariable("CLIENTNAME", "Thin07");  // without a terminal server this is no remote session
    Collect();
    EXPECT_STREQ(network->m_cMACAddress, "unknown");
    for (const char* off : {"0", "", "1 ", "01", "yes"}) {
        station.environment = {{"CLIENTNAME", "Thin07"}, {"KVGetClientMACAddress", off}};
        Collect();
        EXPECT_STREQ(network->m_cMACAddress, "unknown") << off;
    }
    station.environment = {{"CLIENTNAME", "Thin07"}, {"KVGetClientMACAddress", "1"}};
    Collect();
    EXPECT_STREQ(network->m_cMACAddress, "020000000005");
}

TEST_F(IPConfigurationTest, WithoutAClientNameTheMACIsWantedWhateverItsVariableSays) {
    DescribeVariable("KVGetClientMACAddress", "0");
    Collect();
    EXPECT_STREQ(network->m_cMACAddress, "020000000005");
}

TEST_F(IPConfigurationTest, StationWithoutAnAddressIsUnknownWhenItsMACIsNotWanted) {
    station.network.hosts.clear();
    DescribeVariable("CLIENTNAME", "Thin07");
    Collect();
    EXPECT_STREQ(network->m_cMACAddress, "unknown");
}

TEST_F(IPConfigurationTest, RemoteSessionHasTheClientsAddressAndKeepsTheServersApart) {
    DescribeClient("192.168.7.20");
    DescribeVariable("KVGetClientMACAddress", "1");
    DescribeVariable("KVIP", "10.1.2.3");
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "192.168.7.20");
    EXPECT_STREQ(network->m_cDnsName, "thin07.reverse.example");
    EXPECT_STREQ(network->m_cMACAddress, "020000000020");
    EXPECT_STREQ(network->m_cServerIPAddress, "10.0.0.5");
    EXPECT_STREQ(network->m_cServerName, "SRV1");
    EXPECT_STREQ(network->m_cServerMACAddress, "020000000005");
    EXPECT_EQ(network->m_nSessionID, 3);
}

TEST_F(IPConfigurationTest, RemoteSessionWithoutTheSwitchHasAnUnknownMACAndStillTheServers) {
    DescribeClient("192.168.7.20");
    Collect();
    EXPECT_STREQ(network->m_cMACAddress, "unknown");
    EXPECT_STREQ(network->m_cServerMACAddress, "020000000005");
}

TEST_F(IPConfigurationTest, RemoteSessionOfAnUnknownClientTakesTheServersMACFromNetbiosWithTheSwitchOff) {
    DescribeSession();
    DescribeVariable("KVGetClientMACAddress", "0");
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "");
    EXPECT_STREQ(network->m_cServerMACAddress, "020000000099");
    EXPECT_STREQ(network->m_cMACAddress, "");
    EXPECT_STREQ(network->m_cDnsName, "");
    EXPECT_STREQ(network->m_cServerIPAddress, "10.0.0.5");
}

TEST_F(IPConfigurationTest, ClientsAddressIsTakenWhateverTheWrappersResultIs) {
    DescribeClient("192.168.7.20", 0);
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "192.168.7.20");
}

TEST_F(IPConfigurationTest, SeveralClientAddressesStayWholeAndTheFirstIsAskedForItsName) {
    DescribeClient("192.168.7.20;192.168.7.21");
    DescribeVariable("KVGetClientMACAddress", "1");
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, "192.168.7.20;192.168.7.21");
    EXPECT_STREQ(network->m_cDnsName, "thin07.reverse.example");
    EXPECT_STREQ(network->m_cMACAddress, "unknown");  // the whole text is no address for ARP
}

TEST_F(IPConfigurationTest, SeparatorInFrontOfTheClientAddressesCutsNothing) {
    DescribeClient(";192.168.7.20");
    Collect();
    EXPECT_STREQ(network->m_cIPAddress, ";192.168.7.20");
    EXPECT_STREQ(network->m_cDnsName, "255.255.255.255");
}

TEST_F(IPConfigurationTest, WrapperThatFillsItsWholeBufferIsCutTo199Characters) {
    DescribeSession();
    station.session.clientAddress = CompanionText{std::string(300, '1'), 1, false};
    EXPECT_EQ(kvtest::Str(Make().GetClientIPAddress(2)), std::string(199, '1'));
}

TEST_F(IPConfigurationTest, OutsideARemoteSessionThereIsNoClientAddressAndNoSession) {
    station.session.clientAddress = CompanionText{"192.168.7.20", 1, true};
    station.session.id = 3;
    EXPECT_STREQ(Make().GetClientIPAddress(2), "");
    EXPECT_EQ(network->GetSessionID(), -1);
    DescribeSession();
    EXPECT_EQ(Make().GetSessionID(), 3);
}

TEST_F(IPConfigurationTest, AdaptersOfVersion5AreReadFromTheInterfaces) {
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    DescribeInterface("{B}", "255.255.0.0", "10.0.0.1");
    DescribeBoundAdapter("NIC1", "255.0.0.0", "1.1.1.1");
    for (const std::uint32_t minor : {0u, 1u, 2u}) {
        DescribeVersion(2, 5, minor);
        ExpectMasksAndGateways("255.255.255.0;255.255.0.0", "192.168.1.1;10.0.0.1");
    }
}

TEST_F(IPConfigurationTest, AdaptersOfAllOtherNTVersionsAreReadByNetBT) {
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    DescribeBoundAdapter("NIC1", "255.0.0.0", "1.1.1.1");
    for (const std::uint32_t major : {3u, 4u, 6u, 10u}) {
        DescribeVersion(2, major, 1);
        ExpectMasksAndGateways("255.0.0.0", "1.1.1.1");
    }
}

TEST_F(IPConfigurationTest, OtherPlatformsHaveNoAdapterWalk) {
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    DescribeBoundAdapter("NIC1", "255.0.0.0", "1.1.1.1");
    DescribeVersion(0, 3, 10);
    ExpectMasksAndGateways("", "");
    EXPECT_EQ(Collect(), -1);
    station.version.reset();
    ExpectMasksAndGateways("", "");
    EXPECT_EQ(Collect(), -1);
}

TEST_F(IPConfigurationTest, UnconfiguredValuesAreLeftOutAndSoIsEveryValueThatHoldsTheirText) {
    const struct {
        const char* value;
        const char* list;
    } rows[] = {{"0.0.0.0", ""}, {"10.0.0.0", ""}, {"100.0.0.0", ""}, {"10.0.0.0.1", ""}, {"10.0.0.1", "10.0.0.1"}};
    for (const auto& row : rows) {
        DescribeInterface("{A}", row.value, row.value);
        ExpectMasksAndGateways(row.list, row.list);
    }
}

TEST_F(IPConfigurationTest, OneUnconfiguredEntryAmongSeveralExcludesTheWholeValue) {
    DescribeInterface("{A}", "", "");
    const std::string interface = std::string(kInterfaces) + "{A}";
    station.registry.set(interface, simwin::multiTextValue("SubNetMask", {"255.255.255.0", "0.0.0.0"}));
    station.registry.set(interface, simwin::multiTextValue("DefaultGateway", {"10.0.0.1", "10.0.0.2"}));
    ExpectMasksAndGateways("", "10.0.0.1//10.0.0.2");
}

TEST_F(IPConfigurationTest, EmptyGatewayCountsWhenItFollowsAnother) {
    DescribeInterface("{A}", "", "");
    DescribeInterface("{B}", "", "192.168.1.1");
    ExpectMasksAndGateways("", "192.168.1.1");

    station.registry = {};
    DescribeInterface("{A}", "", "192.168.1.1");
    DescribeInterface("{B}", "", "");
    ExpectMasksAndGateways("", "192.168.1.1;");
}

TEST_F(IPConfigurationTest, AdaptersAddressNeverStandsInForAMissingMask) {
    station.registry.create(kAdapters + "{A}"s);
    DescribeText(kInterfaces + "{A}"s, "IPAddress", "10.9.9.9");
    EXPECT_EQ(Collect(), -1);
    EXPECT_STREQ(network->m_cSubnetMask, "");
    EXPECT_STREQ(network->m_cDefaultGateway, "");
    EXPECT_STREQ(network->m_cIPAddress, "10.0.0.5");
}

TEST_F(IPConfigurationTest, GatewayIsReadWhateverTheMaskDid) {
    station.registry.create(kAdapters + "{A}"s);
    DescribeText(kInterfaces + "{A}"s, "DefaultGateway", "10.0.0.1");
    EXPECT_EQ(Collect(), 0);
    EXPECT_STREQ(network->m_cSubnetMask, "");
    EXPECT_STREQ(network->m_cDefaultGateway, "10.0.0.1");
}

TEST_F(IPConfigurationTest, StatusIsThatOfTheLastRead) {
    EXPECT_EQ(Collect(), -1);
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    EXPECT_EQ(Collect(), 0);
    station.registry.create(kAdapters + "{B}"s);
    EXPECT_EQ(Collect(), -1);
    EXPECT_STREQ(network->m_cDefaultGateway, "192.168.1.1");
}

TEST_F(IPConfigurationTest, AddressIsReadBeforeTheMaskAndTheMaskBeforeTheGateway) {
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    ::testing::internal::CaptureStdout();
    Make();
    machine->keepLog(true);
    network->GetIPConfiguration();
    ::testing::internal::GetCapturedStdout();
    std::vector<std::string> values;
    for (const std::string& asked : Asked("RegQueryValueExA")) {
        for (const char* name : {"IPAddress", "SubNetMask", "DefaultGateway"}) {
            if (asked.find(name) != std::string::npos && (values.empty() || values.back() != name))
                values.emplace_back(name);
        }
    }
    EXPECT_THAT(values, ::testing::ElementsAre("IPAddress", "SubNetMask", "DefaultGateway"));
}

TEST_F(IPConfigurationTest, CallingTwiceOnOneCollectorDoublesTheLists) {
    DescribeInterface("{A}", "255.255.255.0", "192.168.1.1");
    Collect();
    ::testing::internal::CaptureStdout();
    network->GetIPConfiguration();
    ::testing::internal::GetCapturedStdout();
    EXPECT_STREQ(network->m_cSubnetMask, "255.255.255.0;255.255.255.0");
    EXPECT_STREQ(network->m_cDefaultGateway, "192.168.1.1;192.168.1.1");
}

TEST_F(IPConfigurationTest, TransportsOfWindows9xAreProtocolsAndTCPIPHasMaskAndGateway) {
    DescribeVersion(1, 4, 10);
    DescribeTransport("0000", "NetBEUI");
    DescribeTransport("0001", "tcp/ip");
    DescribeText(kNetTrans + "0001"s, "IPAddress", "10.0.0.5");
    DescribeText(kNetTrans + "0001"s, "IPMask", "255.255.255.0");
    DescribeText(kNetTrans + "0001"s, "DefaultGateway", "10.0.0.1");
    DescribeTransport("0002", "IPX/SPX-compatible Protocol");
    DescribeText(kNetTrans + "0002"s, "IPAddress", "10.0.0.6");
    DescribeText(kNetTrans + "0002"s, "IPMask", "255.0.0.0");
    EXPECT_EQ(Collect(), 0);
    EXPECT_STREQ(network->m_cProtocols, "NetBEUI;tcp/ip;IPX/SPX-compatible Protocol");
    EXPECT_STREQ(network->m_cSubnetMask, "255.255.255.0");
    EXPECT_STREQ(network->m_cDefaultGateway, "10.0.0.1");
}

TEST_F(IPConfigurationTest, TransportOfWindows9xWithoutAnAddressHasNeitherMaskNorGateway) {
    DescribeVersion(1, 4, 10);
    DescribeTransport("0000", "TCP/IP");
    DescribeText(kNetTrans + "0000"s, "IPMask", "255.255.255.0");
    DescribeText(kNetTrans + "0000"s, "DefaultGateway", "10.0.0.1");
    EXPECT_EQ(Collect(), 0);
    EXPECT_STREQ(network->m_cSubnetMask, "");
    EXPECT_STREQ(network->m_cDefaultGateway, "");
    EXPECT_STREQ(network->m_cProtocols, "TCP/IP");
}

TEST_F(IPConfigurationTest, UnconfiguredTransportOfWindows9xIsLeftOut) {
    DescribeVersion(1, 4, 10);
    DescribeTransport("0000", "TCP/IP");
    DescribeText(kNetTrans + "0000"s, "IPAddress", "0.0.0.0");
    DescribeText(kNetTrans + "0000"s, "IPMask", "0.0.0.0");
    DescribeText(kNetTrans + "0000"s, "DefaultGateway", "10.0.0.1");
    Collect();
    EXPECT_STREQ(network->m_cSubnetMask, "");
    EXPECT_STREQ(network->m_cDefaultGateway, "10.0.0.1");
}

TEST_F(IPConfigurationTest, TransportsOfWindows9xWithoutADescriptionAreSkipped) {
    DescribeVersion(1, 4, 10);
    station.registry.create(kNetTrans + "0000"s);
    EXPECT_EQ(Collect(), -1);
    DescribeTransport("0001", "NetBEUI");
    station.registry.create(kNetTrans + "0002"s);
    EXPECT_EQ(Collect(), 0);
    EXPECT_STREQ(network->m_cProtocols, "NetBEUI");
}

TEST_F(IPConfigurationTest, TransportsStatusIsThatOfItsLastRead) {
    DescribeVersion(1, 4, 10);
    DescribeText(kNetTrans + "0001"s, "IPAddress", "10.0.0.5");
    Make();
    HKEY netTrans = nullptr;
    ASSERT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans", &netTrans), 0);
    EXPECT_EQ(network->GetNetTransTcpip(netTrans, "0001", "NetBEUI"), -1);
    EXPECT_EQ(network->GetNetTransTcpip(netTrans, "0001", "TCP/IP"), -1);
    EXPECT_EQ(network->GetNetTransTcpip(netTrans, "0009", "TCP/IP"), -1);
    RegCloseKey(netTrans);

    DescribeText(kNetTrans + "0001"s, "DefaultGateway", "10.0.0.1");
    Make();
    ASSERT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans", &netTrans), 0);
    EXPECT_EQ(network->GetNetTransTcpip(netTrans, "0001", "TCP/IP"), 0);
    RegCloseKey(netTrans);
}

TEST_F(IPConfigurationTest, StepEndsWithTheWorkgroup) {
    station.network.lanGroup = "WORKGROUP";
    Collect();
    EXPECT_STREQ(network->m_cWorkgroup, "WORKGROUP");
}

TEST_F(IPConfigurationTest, FirstAddressAndNameArePublished) {
    const struct {
        const char* addresses;
        const char* published;
    } rows[] = {{"10.0.0.5", "10.0.0.5"}, {"10.0.0.5;10.0.0.6", "10.0.0.5"}, {";10.0.0.6", ";10.0.0.6"}};
    for (const auto& row : rows) {
        Make().m_cIPAddress = row.addresses;
        network->m_cDnsName = "pc-lab3.lab.example";
        EXPECT_EQ(network->ExportNetworkEnvironment(), 0);
        EXPECT_EQ(VariableSet("KVIP"), row.published);
        EXPECT_EQ(VariableSet("KVDnsName"), "pc-lab3.lab.example");
        EXPECT_STREQ(network->m_cIPAddress, row.addresses);
    }
}

TEST_F(IPConfigurationTest, EmptyAddressAndNameAreNotPublished) {
    EXPECT_EQ(Make().ExportNetworkEnvironment(), 0);
    EXPECT_EQ(VariableSet("KVIP"), std::nullopt);
    EXPECT_EQ(VariableSet("KVDnsName"), std::nullopt);
}

TEST_F(IPConfigurationTest, NothingIsTraced) {
    DescribeClient("192.168.7.20");
    Collect();
    EXPECT_THAT(Trace(), ::testing::IsEmpty());
}

}  // namespace
