// Under which name the station registers, and what its session is.
#include "kvcstat/network/NetworkInformation.h"
#include "kvcstat/user/StatInformation.h"
#include "simwin/text/ReadFile.h"
#include "tests/kvcstat/MachineTest.h"
#include "tests/stations/StationTypes.h"

namespace {

using kvtest::kCitrix;
using kvtest::StationName;

// What the network collector has found.
struct Values {
    const char* clientName = "Client";
    const char* dnsName = "Dns.Lab";
    const char* ipAddress = "10.0.0.5";
    const char* macAddress = "00ab";
};

class StationTypeTest : public kvtest::MachineTest {
  protected:
    // A network collector that has found these values, and a new station-type collector.
    CStatInformation& Make(const Values& values) {
        stat.reset();
        network.reset();
        Start();
        stat = std::make_unique<CStatInformation>();
        network = std::make_unique<CNetworkInformation>();
        network->m_cClientName = values.clientName;
        network->m_cDnsName = values.dnsName;
        network->m_cIPAddress = values.ipAddress;
        network->m_cMACAddress = values.macAddress;
        return *stat;
    }
    void DescribeMetaFrameSession() {
        station.version = simwin::WindowsVersion{2, 5, 0, 2195, "", false};
        station.environment.push_back({"CLIENTNAME", "THIN07"});
        station.registry.set(kCitrix, simwin::textValue("ProductName", "Citrix MetaFrame XP"));
    }

    std::unique_ptr<CNetworkInformation> network;
    std::unique_ptr<CStatInformation> stat;
};

struct Outcome {
    std::string station;
    int type;
};

// Where the collector has each name, what the station is called after it, and what the document calls it.
struct Source {
    const char* Values::*value;
    const char* station;
    const char* told;
};

Source SourceOf(StationName name) {
    switch (name) {
        case StationName::Client:
            return {&Values::clientName, "CLIENT", "client name"};
        case StationName::Dns:
            return {&Values::dnsName, "DNS.LAB", "DNS name"};
        case StationName::IPAddress:
            return {&Values::ipAddress, "10.0.0.5", "first IP address"};
        case StationName::MACAddress:
            return {&Values::macAddress, "00AB", "MAC address"};
    }
    return {};
}

Outcome ExpectedOutcome(int type, const Values& values) {
    for (const StationName name : kvtest::namesTried(type)) {
        const Source source = SourceOf(name);
        if (*(values.*source.value) != '\0')
            return {source.station, static_cast<int>(name)};
    }
    return {"UNKNOWN", -1};
}

TEST_F(StationTypeTest, EveryTypeFallsBackInItsOrderWhicheverValuesAreMissing) {
    std::vector<std::string> types = {"", "-1", "abc", "100"};
    for (std::size_t type = 0; type <= kvtest::kStationTypes.size(); ++type)
        types.push_back(std::to_string(type));
    for (const std::string& type : types) {
        station.environment = {{"KVStationType", type}};
        for (unsigned mask = 0; mask < 16; ++mask) {
            Values values;
            values.clientName = (mask & 1) != 0 ? values.clientName : "";
            values.dnsName = (mask & 2) != 0 ? values.dnsName : "";
            values.ipAddress = (mask & 4) != 0 ? values.ipAddress : "";
            values.macAddress = (mask & 8) != 0 ? values.macAddress : "";
            EXPECT_EQ(Make(values).Collect(*network), 0);
            const Outcome expected = ExpectedOutcome(std::atoi(type.c_str()), values);
            EXPECT_STREQ(stat->m_cStation, expected.station.c_str()) << type << " of " << mask;
            EXPECT_EQ(network->m_nStationType, expected.type) << type << " of " << mask;
        }
    }
}

// "`0` client name, `1` DNS name, ...".
std::string ToldTypes() {
    std::string told;
    for (std::size_t type = 0; type < kvtest::kStationTypes.size(); ++type)
        told += (type == 0 ? "`" : ", `") + std::to_string(type) + "` " + SourceOf(static_cast<StationName>(type)).told;
    return told;
}

// "1 to 2, 3, 0; ...": what is tried for each type behind itself.
std::string ToldFallbacks() {
    std::string told;
    for (std::size_t type = 1; type < kvtest::kStationTypes.size(); ++type) {
        const std::vector<StationName>& names = kvtest::kStationTypes[type];
        told += (type == 1 ? "" : "; ") + std::to_string(type) + " to ";
        for (std::size_t i = 1; i < names.size(); ++i)
            told += (i == 1 ? "" : ", ") + std::to_string(static_cast<int>(names[i]));
    }
    return told;
}

TEST_F(StationTypeTest, TypesAndFallbacksAreThoseOfTheDocument) {
    EXPECT_THAT(simwin::readFile(KV_ADMINISTRATION_DOCUMENT, KV_ADMINISTRATION_DOCUMENT, 1024 * 1024),
                testing::HasSubstr("| `KVStationType` | station | Under which name the station registers: " +
                                   ToldTypes() + ". A missing value falls back: " + ToldFallbacks() +
                                   ". Other numbers count as 0. Without a client name either it is \"UNKNOWN\"."));
}

TEST_F(StationTypeTest, WithoutAVariableTheClientNameIsTheStationInUpperCase) {
    Make({"Pc-Lab3"}).Collect(*network);
    EXPECT_STREQ(stat->m_cStation, "PC-LAB3");
    EXPECT_EQ(network->m_nStationType, 0);
    EXPECT_STREQ(network->m_cClientName, "Pc-Lab3");
}

TEST_F(StationTypeTest, TypeIsTheLeadingNumberOfItsVariable) {
    station.environment = {{"KVStationType", " 2nd"}};
    Make({}).Collect(*network);
    EXPECT_STREQ(stat->m_cStation, "10.0.0.5");
    EXPECT_EQ(network->m_nStationType, 2);
}

TEST_F(StationTypeTest, FirstOfSeveralAddressesIsTheStation) {
    const struct {
        const char* addresses;
        const char* station;
    } rows[] = {{"10.0.0.5;10.0.0.6", "10.0.0.5"},
                {";10.0.0.6", ";10.0.0.6"},
                {"1;10.0.0.6", "1"},
                {"10.0.0.5;", "10.0.0.5"},
                {";", ";"}};
    station.environment = {{"KVStationType", "2"}};
    for (const auto& row : rows) {
        Make({"c", "", row.addresses}).Collect(*network);
        EXPECT_STREQ(stat->m_cStation, row.station);
        EXPECT_EQ(network->m_nStationType, 2);
        EXPECT_STREQ(network->m_cIPAddress, row.addresses);
    }
}

TEST_F(StationTypeTest, ClientOverridesStayInTheNetworkCollector) {
    station.environment = {{"KVRDPClientName", "Thin07"}, {"KVRDPClientIP", "192.168.7.20;192.168.7.21"}};
    Make({}).Collect(*network);
    EXPECT_STREQ(stat->m_cStation, "THIN07");
    EXPECT_STREQ(network->m_cClientName, "Thin07");
    EXPECT_STREQ(network->m_cIPAddress, "192.168.7.20;192.168.7.21");

    station.environment.push_back({"KVStationType", "2"});
    Make({}).Collect(*network);
    EXPECT_STREQ(stat->m_cStation, "192.168.7.20");
}

TEST_F(StationTypeTest, EmptyClientOverridesChangeNothing) {
    station.environment = {{"KVRDPClientName", ""}, {"KVRDPClientIP", ""}};
    Make({}).Collect(*network);
    EXPECT_STREQ(network->m_cClientName, "Client");
    EXPECT_STREQ(network->m_cIPAddress, "10.0.0.5");
}

TEST_F(StationTypeTest, SessionFlagsSayWhatThePlatformTestsSay) {
    Make({}).Collect(*network);
    EXPECT_EQ(stat->m_bWinFrame, 0);
    EXPECT_EQ(stat->m_bMetaFrame, 0);
    EXPECT_EQ(stat->m_bTSClientSession, 0);

    DescribeMetaFrameSession();
    Make({}).Collect(*network);
    EXPECT_EQ(stat->m_bWinFrame, 0);
    EXPECT_EQ(stat->m_bMetaFrame, 1);
    EXPECT_EQ(stat->m_bTSClientSession, 0);

    station.registry.set(kCitrix, simwin::textValue("ProductName", "Citrix WinFrame"));
    station.version->terminalServices = true;
    Make({}).SetSessionFlags();
    EXPECT_EQ(stat->m_bWinFrame, 1);
    EXPECT_EQ(stat->m_bMetaFrame, 0);
    EXPECT_EQ(stat->m_bTSClientSession, 1);
}

TEST_F(StationTypeTest, SessionFlagsAreZeroBeforeAnybodyAsks) {
    const CStatInformation fresh;
    EXPECT_EQ(fresh.m_bWinFrame, 0);
    EXPECT_EQ(fresh.m_bMetaFrame, 0);
    EXPECT_EQ(fresh.m_bTSClientSession, 0);
}

TEST_F(StationTypeTest, NumberedRemoteSessionIsMarkedWithOneWhateverItsNumberIs) {
    DescribeMetaFrameSession();
    for (const int session : {1, 3, 65536, -1}) {
        Make({"ws12"}).Collect(*network);
        network->m_nSessionID = session;
        EXPECT_EQ(stat->MarkSession(*network), 0);
        EXPECT_STREQ(stat->m_cStation, "WS12#1") << session;
        EXPECT_EQ(stat->Publish(), 0);
        EXPECT_EQ(VariableSet("KVStation"), "WS12");
        EXPECT_EQ(VariableSet("KVTSSessionNumber"), "1");
    }
}

TEST_F(StationTypeTest, RemoteSessionZeroIsNotMarked) {
    DescribeMetaFrameSession();
    Make({"ws12"}).Collect(*network);
    network->m_nSessionID = 0;
    stat->MarkSession(*network);
    EXPECT_STREQ(stat->m_cStation, "WS12");
    stat->Publish();
    EXPECT_EQ(VariableSet("KVStation"), "WS12");
    EXPECT_EQ(VariableSet("KVTSSessionNumber"), std::nullopt);
}

TEST_F(StationTypeTest, OutsideARemoteSessionNothingIsMarked) {
    Make({"ws12"}).Collect(*network);
    network->m_nSessionID = 3;
    stat->MarkSession(*network);
    EXPECT_STREQ(stat->m_cStation, "WS12");
}

TEST_F(StationTypeTest, MarkingUpperCasesTheNameInEveryCase) {
    Make({});
    stat->m_cStation = "ws12";
    stat->MarkSession(*network);
    EXPECT_STREQ(stat->m_cStation, "WS12");
}

TEST_F(StationTypeTest, RemoteNameIsPublishedSplitAtItsFirstHashSign) {
    DescribeMetaFrameSession();
    const struct {
        const char* name;
        int session;
        const char* station;
        const char* number;
    } rows[] = {{"ws#12", 0, "WS", "12"}, {"ws#12", 2, "WS", "12#1"}, {"#x", 0, "", "X"}, {"ws#", 0, "WS", ""}};
    for (const auto& row : rows) {
        Make({row.name}).Collect(*network);
        network->m_nSessionID = row.session;
        stat->MarkSession(*network);
        stat->Publish();
        EXPECT_EQ(VariableSet("KVStation"), row.station) << row.name;
        EXPECT_EQ(VariableSet("KVTSSessionNumber"), row.number) << row.name;
    }
}

TEST_F(StationTypeTest, OutsideARemoteSessionTheWholeNameIsPublished) {
    Make({"ws#12"}).Collect(*network);
    stat->Publish();
    EXPECT_EQ(VariableSet("KVStation"), "WS#12");
    EXPECT_EQ(VariableSet("KVTSSessionNumber"), std::nullopt);
}

TEST_F(StationTypeTest, VCDVersionIsItsDecimalNumberAndIsPublished) {
    for (const int version : {41, 0, -7, 2147483647}) {
        station.vcdVersion = version;
        Make({}).ReadVCDVersion();
        EXPECT_EQ(kvtest::Str(stat->m_cVCDVersion), std::to_string(version));
        stat->Publish();
        EXPECT_EQ(VariableSet("KVVCDVersion"), std::to_string(version));
        ExpectEverythingClosed();
    }
}

TEST_F(StationTypeTest, WithoutTheVCDModuleOrItsFunctionTheVersionIsEmptyAndPublishedSo) {
    Make({}).ReadVCDVersion();
    EXPECT_STREQ(stat->m_cVCDVersion, "");
    stat->Publish();
    EXPECT_EQ(VariableSet("KVVCDVersion"), "");

    station.vcdVersion = 41;
    station.missing = {"KVVCD32.dll!KVGetVCDVersion"};
    Make({}).ReadVCDVersion();
    EXPECT_STREQ(stat->m_cVCDVersion, "");
    ExpectEverythingClosed();
}

TEST_F(StationTypeTest, NothingIsTraced) {
    DescribeMetaFrameSession();
    station.vcdVersion = 41;
    Make({}).Collect(*network);
    stat->MarkSession(*network);
    stat->ReadVCDVersion();
    stat->Publish();
    EXPECT_THAT(machine->traceLines(), ::testing::IsEmpty());
}

}  // namespace
