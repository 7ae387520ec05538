// Workgroup, domain, and what the session knows about its client.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using simwin::CompanionText;
using simwin::HandleKind;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr char kWinLogon[] = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\WinLogon";

class DomainTest : public kvtest::NetworkTest {
  protected:
    std::string Workgroup() {
        Make();
        network->m_cWorkgroupDefault = "FALLBACK";
        network->GetWorkgroup();
        ExpectEverythingClosed();
        return kvtest::Str(network->m_cWorkgroup);
    }
};

TEST_F(DomainTest, WorkgroupIsTheStationsLANGroup) {
    station.network.lanGroup = "WORKGROUP";
    EXPECT_EQ(Workgroup(), "WORKGROUP");
}

TEST_F(DomainTest, WorkgroupIsConvertedToTheCodePage) {
    station.network.lanGroup = "B\xDCRO";
    Make();
    machine->keepLog(true);
    network->GetWorkgroup();
    EXPECT_STREQ(network->m_cWorkgroup, "B\xDCRO");
    // CP_ACP, no flags; to the terminator, into 260 bytes.
    EXPECT_THAT(Asked("WideCharToMultiByte"), ElementsAre(AllOf(StartsWith("0, 0, "), HasSubstr(", -1, 260"))));
}

TEST_F(DomainTest, WorkgroupThatIsSetAlreadyIsKeptAndNobodyIsAsked) {
    station.network.lanGroup = "WORKGROUP";
    Make().m_cWorkgroup = "BEFORE";
    network->GetWorkgroup();
    EXPECT_STREQ(network->m_cWorkgroup, "BEFORE");
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(DomainTest, WorkgroupThatCannotBeAskedForIsTheFallback) {
    EXPECT_EQ(Workgroup(), "FALLBACK");
    station.network.lanGroup = "WORKGROUP";
    for (const char* missing : {"netapi32.dll", "netapi32.dll!NetWkstaGetInfo", "netapi32.dll!NetApiBufferFree"}) {
        station.missing = {missing};
        EXPECT_EQ(Workgroup(), "FALLBACK") << missing;
    }
}

TEST_F(DomainTest, EmptyLANGroupIsTheFallback) {
    station.network.lanGroup = "";
    EXPECT_EQ(Workgroup(), "FALLBACK");
}

TEST_F(DomainTest, LANGroupOf259CharactersFitsAndALongerOneIsNone) {
    station.network.lanGroup = std::string(259, 'G');
    EXPECT_EQ(Workgroup(), std::string(259, 'G'));
    station.network.lanGroup = std::string(260, 'G');
    EXPECT_EQ(Workgroup(), "FALLBACK");
}

TEST_F(DomainTest, WithoutAFallbackTheWorkgroupStaysEmpty) {
    Make().GetWorkgroup();
    EXPECT_STREQ(network->m_cWorkgroup, "");
}

TEST_F(DomainTest, DomainNameIsWhatTheNetworkLibraryFills) {
    EXPECT_STREQ(Make().GetDomainName(), "");
    station.network.domain = "LAB";
    EXPECT_STREQ(Make().GetDomainName(), "LAB");
}

TEST_F(DomainTest, DefaultDomainIsTheLogonDialogues) {
    DescribeText(kWinLogon, "DefaultDomainName", "LAB");
    EXPECT_EQ(Make().m_nTSDomainFlag, 0u);
    network->m_nTSDomainFlag = 7;
    EXPECT_EQ(network->GetDomainInformation(), -1);
    EXPECT_STREQ(network->m_cDefaultDomainName, "LAB");
    EXPECT_EQ(network->m_nTSDomainFlag, 0u);
    ExpectEverythingClosed();
}

TEST_F(DomainTest, SessionsClientReplacesBothClientNamesAndItsDomainIsKept) {
    station.session.clientName = CompanionText{"Thin07", 1, true};
    station.session.domain = CompanionText{"LAB", 5, true};
    Make().m_cClientName = "BEFORE";
    network->m_cTSClientName = "before";
    EXPECT_EQ(network->GetDomainInformation(), -1);
    EXPECT_STREQ(network->m_cClientName, "Thin07");
    EXPECT_STREQ(network->m_cTSClientName, "Thin07");
    EXPECT_STREQ(network->m_cTSDomainName, "LAB");
}

TEST_F(DomainTest, HereTheWrappersResultDecidesAndNotItsText) {
    station.session.clientName = CompanionText{"Thin07", 0, true};
    station.session.domain = CompanionText{"LAB", 0, true};
    Make().m_cClientName = "BEFORE";
    network->GetDomainInformation();
    EXPECT_STREQ(network->m_cClientName, "BEFORE");
    EXPECT_STREQ(network->m_cTSClientName, "");
    EXPECT_STREQ(network->m_cTSDomainName, "");

    station.session.clientName = CompanionText{"", 1, true};
    Make().m_cClientName = "BEFORE";
    network->GetDomainInformation();
    EXPECT_STREQ(network->m_cClientName, "");
}

TEST_F(DomainTest, DomainThatTheWrapperDoesNotWriteIsEmptyAndNotTheClientsName) {
    station.session.clientName = CompanionText{"Thin07", 1, true};
    station.session.domain = CompanionText{"", 1, false};  // a result without a byte written
    Make().GetDomainInformation();
    EXPECT_STREQ(network->m_cTSDomainName, "");
}

TEST_F(DomainTest, WrapperThatFillsItsWholeBufferIsCutTo254Characters) {
    station.session.clientName = CompanionText{std::string(400, 'c'), 1, false};
    station.session.domain = CompanionText{std::string(400, 'd'), 1, false};
    Make().GetDomainInformation();
    EXPECT_EQ(kvtest::Str(network->m_cClientName), std::string(254, 'c'));
    EXPECT_EQ(kvtest::Str(network->m_cTSDomainName), std::string(254, 'd'));
}

}  // namespace
