// The ways between the station's name and its address.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using namespace std::string_literals;
using simwin::Host;
using ::testing::ElementsAre;

constexpr int kIPv4 = 2;
constexpr int kIPv6 = 6;

class HostNameTest : public kvtest::NetworkTest {
  protected:
    HostNameTest() {
        DescribeVersion(2, 5, 1);
        station.network.hostName = "pc-lab3";
        station.network.hosts.resize(1);
        Answer().hostName = "pc-lab3";
        Answer().name = "pc-lab3.lab.example";
        Answer().addresses = {"\x0A\x00\x00\x05"s};
    }

    Host& Answer() { return station.network.hosts.front(); }
    void DescribeName(std::string address, std::string name) {
        station.network.addresses.push_back({std::move(address), std::move(name)});
    }

    void ExpectAddressAndName(const std::string& address, const std::string& name) {
        EXPECT_EQ(kvtest::Str(network->m_cIPAddress), address);
        EXPECT_EQ(kvtest::Str(network->m_cDnsName), name);
        ExpectEverythingClosed();
    }
    void ExpectResolved(int status, const std::string& address, const std::string& name) {
        EXPECT_EQ(Make().ResolveHostName(), status);
        ExpectAddressAndName(address, name);
    }
    void ExpectResolvedByWsock32(int status, const std::string& address, const std::string& name) {
        EXPECT_EQ(Make().ResolveHostNameWsock32(), status);
        ExpectAddressAndName(address, name);
    }
    // The same for a station whose address is known before.
    void ExpectResolvedFrom(const char* known, int status, const std::string& address, const std::string& name) {
        Make().m_cIPAddress = known;
        EXPECT_EQ(network->ResolveHostName(), status);
        ExpectAddressAndName(address, name);
    }

    std::string HostAddress(int family) {
        const std::string address = kvtest::Str(Make().GetHostAddress(family));
        ExpectEverythingClosed();
        return address;
    }
};

TEST_F(HostNameTest, OwnNameGivesAddressAndOfficialName) {
    ExpectResolved(0, "10.0.0.5", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(0, "10.0.0.5", "pc-lab3.lab.example");
}

TEST_F(HostNameTest, FirstOfSeveralAddressesIsTheStations) {
    Answer().addresses = {"\xC0\xA8\x01\xFE"s, "\x0A\x00\x00\x05"s};
    ExpectResolved(0, "192.168.1.254", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(0, "192.168.1.254", "pc-lab3.lab.example");
    EXPECT_EQ(HostAddress(kIPv4), "192.168.1.254");
}

TEST_F(HostNameTest, StationWithoutAHostNameHasNeither) {
    station.network.hostName.reset();
    ExpectResolved(-1, "", "");
    ExpectResolvedByWsock32(-1, "", "");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, StationWithoutAHostNameKeepsTheDnsNameThatItHas) {
    station.network.hostName.reset();
    Make().m_cDnsName = "before";
    EXPECT_EQ(network->ResolveHostName(), -1);
    EXPECT_STREQ(network->m_cDnsName, "before");
}

TEST_F(HostNameTest, HostNameThatFillsTheWholeRoomIsEndedWithIt) {
    station.network.hostName = std::string(200, 'h');
    station.network.hostNameEnds = false;
    Answer().hostName = std::string(127, 'h');
    ExpectResolved(0, "10.0.0.5", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(0, "10.0.0.5", "pc-lab3.lab.example");
    EXPECT_EQ(HostAddress(kIPv4), "10.0.0.5");
    station.network.hosts.clear();
    ExpectResolved(-1, "", std::string(127, 'h'));
}

TEST_F(HostNameTest, MissingHostNameFunctionCountsAsItsFailure) {
    station.missing = {"ws2_32.dll!gethostname", "wsock32.dll!gethostname"};
    ExpectResolved(-1, "", "");
    ExpectResolvedByWsock32(-1, "", "");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, UnresolvedHostKeepsItsShortName) {
    station.network.hosts.clear();
    ExpectResolved(-1, "", "pc-lab3");
    ExpectResolvedByWsock32(-1, "", "pc-lab3");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, MissingResolverFunctionLeavesTheShortName) {
    station.missing = {"ws2_32.dll!gethostbyname", "wsock32.dll!gethostbyname"};
    ExpectResolved(-1, "", "pc-lab3");
    ExpectResolvedByWsock32(-1, "", "pc-lab3");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, AnswerWithoutAnAddressGivesTheNameAlone) {
    Answer().addresses.clear();
    ExpectResolved(-1, "", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(-1, "", "pc-lab3.lab.example");
    EXPECT_EQ(HostAddress(kIPv4), "");

    Answer().nullAddresses = true;
    ExpectResolved(-1, "", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(-1, "", "pc-lab3.lab.example");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, AnswerWithoutANameLeavesTheShortName) {
    Answer().nullName = true;
    ExpectResolved(0, "10.0.0.5", "pc-lab3");
    ExpectResolvedByWsock32(0, "10.0.0.5", "pc-lab3");
}

TEST_F(HostNameTest, AnswerWithAnEmptyNameLeavesNoName) {
    Answer().name = "";
    ExpectResolved(0, "10.0.0.5", "");
    ExpectResolvedByWsock32(0, "10.0.0.5", "");
}

TEST_F(HostNameTest, AddressesOfOtherLengthsAreWrittenByteByByteUpToSixteen) {
    const struct {
        std::string bytes;
        std::string address;
    } rows[] = {
        {"\x0A\x01\x02"s, "10.1.2"},
        {"\x0A"s, "10"},
        {"\x0A\x01\x02\x03\x04"s, "10.1.2.3.4"},
        {std::string(16, '\x01'), "1.1.1.1.1.1.1.1.1.1.1.1.1.1.1.1"},
        {std::string(300, '\x01'), "1.1.1.1.1.1.1.1.1.1.1.1.1.1.1.1"},
    };
    for (const auto& row : rows) {
        Answer().addresses = {row.bytes};
        ExpectResolved(0, row.address, "pc-lab3.lab.example");
        ExpectResolvedByWsock32(0, row.address, "pc-lab3.lab.example");
        EXPECT_EQ(HostAddress(kIPv4), row.address);
    }
}

TEST_F(HostNameTest, AddressesOfNoBytesAreCountedAndGiveNoText) {
    Answer().addresses = {"\x0A\x00\x00\x05"s, "\x0A\x00\x00\x06"s};
    for (const int length : {0, -1, -32768}) {
        Answer().lengthSaid = length;
        ExpectResolved(0, "", "pc-lab3.lab.example");
        ExpectResolvedByWsock32(0, "", "pc-lab3.lab.example");
        EXPECT_EQ(HostAddress(kIPv4), "");
    }
}

TEST_F(HostNameTest, OnlyTheOldLibraryTestsTheAddressType) {
    Answer().addressType = 23;
    ExpectResolved(0, "10.0.0.5", "pc-lab3.lab.example");
    ExpectResolvedByWsock32(-1, "", "pc-lab3");
}

TEST_F(HostNameTest, NamesLongerThanTheBufferAreCutOrMissing) {
    Answer().name = std::string(300, 'n');
    ExpectResolved(0, "10.0.0.5", std::string(127, 'n'));
    ExpectResolvedByWsock32(0, "10.0.0.5", std::string(127, 'n'));

    station.network.hostName = std::string(127, 'h');
    ExpectResolved(-1, "", std::string(127, 'h'));
    station.network.hostName = std::string(128, 'h');
    ExpectResolved(-1, "", "");
}

TEST_F(HostNameTest, KnownAddressIsKeptAndGivesTheName) {
    DescribeName("10.1.2.3", "front-desk.lab.example");
    ExpectResolvedFrom("10.1.2.3", -1, "10.1.2.3", "front-desk.lab.example");
}

TEST_F(HostNameTest, KnownAddressWithoutANameGivesNone) {
    ExpectResolvedFrom("10.1.2.3", -1, "10.1.2.3", "");
}

TEST_F(HostNameTest, KnownTextThatIsNoAddressIsNotLookedUp) {
    DescribeName("255.255.255.255", "everybody");
    for (const char* text : {"station", "10.1.2.3;10.1.2.4", "255.255.255.255"}) {
        Make().m_cIPAddress = text;
        machine->keepLog(true);
        EXPECT_EQ(network->ResolveHostName(), -1);
        EXPECT_STREQ(network->m_cDnsName, "");
        EXPECT_EQ(CountCalls("gethostbyaddr"), 0u);
    }
}

TEST_F(HostNameTest, MissingReverseFunctionsGiveNoName) {
    DescribeName("10.1.2.3", "front-desk.lab.example");
    for (const char* missing : {"ws2_32.dll!inet_addr", "ws2_32.dll!gethostbyaddr"}) {
        station.missing = {missing};
        ExpectResolvedFrom("10.1.2.3", -1, "10.1.2.3", "");
    }
}

TEST_F(HostNameTest, NewLibraryGivesTheAddressWithoutTheOldOne) {
    station.missing = {"wsock32.dll"};
    EXPECT_EQ(HostAddress(kIPv4), "10.0.0.5");
}

// Whether this is a session is asked last.
TEST_F(HostNameTest, LibraryIsFreedBeforeTheNameIsTaken) {
    Make();
    machine->keepLog(true);
    network->ResolveHostName();
    EXPECT_EQ(machine->log().back().name, "KVGetEnv");
    network->ResolveHostNameWsock32();
    EXPECT_EQ(machine->log().back().name, "KVGetEnv");
    ExpectEverythingClosed();
}

TEST_F(HostNameTest, WithoutTheNewLibraryTheOldOneResolves) {
    station.missing = {"ws2_32.dll"};
    ExpectResolved(-1, "10.0.0.5", "pc-lab3.lab.example");
    EXPECT_EQ(HostAddress(kIPv4), "10.0.0.5");
}

TEST_F(HostNameTest, OldLibraryReplacesTheKnownAddress) {
    station.missing = {"ws2_32.dll"};
    DescribeName("10.1.2.3", "front-desk.lab.example");
    ExpectResolvedFrom("10.1.2.3", -1, "10.0.0.5", "pc-lab3.lab.example");
}

TEST_F(HostNameTest, WithoutAnyLibraryNothingIsResolved) {
    station.missing = {"ws2_32.dll", "wsock32.dll"};
    ExpectResolved(-1, "", "");
    ExpectResolvedByWsock32(-1, "", "");
    EXPECT_EQ(HostAddress(kIPv4), "");
}

TEST_F(HostNameTest, RemoteSessionKeepsItsOwnAddressAndName) {
    DescribeSession();
    ExpectResolved(0, "", "");
    ExpectResolvedByWsock32(0, "", "");
}

TEST_F(HostNameTest, HostAddressIsThatOfTheFamilyAskedFor) {
    EXPECT_EQ(HostAddress(kIPv4), "10.0.0.5");
    EXPECT_EQ(HostAddress(kIPv6), "");
    EXPECT_EQ(HostAddress(23), "");
}

TEST_F(HostNameTest, HostAddressOfTheOtherFamilyIsItsNodePartInHexadecimal) {
    Answer().addressType = kIPv6;
    Answer().addresses = {"\x01\x02\x03\x04\x00\x0C\x29\xAB\xCD\xEF"s};
    EXPECT_EQ(HostAddress(kIPv6), "000c29abcdef");
    EXPECT_EQ(HostAddress(kIPv4), "");
    Answer().addresses = {"\x01\x02\x03\x04"s};
    EXPECT_EQ(HostAddress(kIPv6), "");
    Answer().addresses = {std::string(300, '\x7F')};
    EXPECT_EQ(HostAddress(kIPv6), "7f7f7f7f7f7f7f7f7f7f7f7f");
    Answer().addressType = 23;
    EXPECT_EQ(HostAddress(23), "");
}

TEST_F(HostNameTest, DnsNameIsTheAddressesName) {
    DescribeName("10.0.0.5", "pc-lab3.lab.example");
    EXPECT_STREQ(Make().GetDnsName("10.0.0.5", kIPv4), "pc-lab3.lab.example");
    EXPECT_STREQ(network->GetDnsName("10.0.0.5", 0), "pc-lab3.lab.example");
}

TEST_F(HostNameTest, DnsNameOfAnAddressWithoutANameIsItsText) {
    EXPECT_STREQ(Make().GetDnsName("10.0.0.6", kIPv4), "10.0.0.6");
    EXPECT_STREQ(network->GetDnsName("10.6", kIPv4), "10.0.0.6");
}

TEST_F(HostNameTest, DnsNameOfATextThatIsNoAddressIsTheBroadcastAddress) {
    EXPECT_STREQ(Make().GetDnsName("station", kIPv4), "255.255.255.255");
}

TEST_F(HostNameTest, DnsNameOfNothingIsEmptyAndNobodyIsAsked) {
    EXPECT_STREQ(Make().GetDnsName(nullptr, kIPv4), "");
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(HostNameTest, DnsNameOf255CharactersFitsAndALongerOneIsNone) {
    DescribeName("10.0.0.5", std::string(255, 'd'));
    DescribeName("10.0.0.6", std::string(256, 'd'));
    EXPECT_EQ(kvtest::Str(Make().GetDnsName("10.0.0.5", kIPv4)), std::string(255, 'd'));
    EXPECT_STREQ(network->GetDnsName("10.0.0.6", kIPv4), "");
}

TEST_F(HostNameTest, DnsNameIsEmptyWhenTheResolverFails) {
    station.fails = {{"getnameinfo", 11002}};
    EXPECT_STREQ(Make().GetDnsName("10.0.0.5", kIPv4), "");
}

TEST_F(HostNameTest, DnsNameIsAskedForWithAPortThatIsOnlyFormatted) {
    Make();
    machine->keepLog(true);
    network->GetDnsName("10.0.0.5", kIPv4);
    // The address and port; 16 bytes long; buffers of 256; a numeric service.
    EXPECT_THAT(Asked("getnameinfo"), ElementsAre("10.0.0.5:27015, 16, 256, 256, 8"));
}

}  // namespace
