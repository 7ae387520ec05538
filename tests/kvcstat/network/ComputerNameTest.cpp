// The name that identifies the station, and where it comes from.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using simwin::CompanionText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kSettings[] = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings";

class ComputerNameTest : public kvtest::NetworkTest {
  protected:
    ComputerNameTest() {
        DescribeVersion(2, 5, 1);
        station.computerName = "Pc-Lab3";
    }

    void DescribeFlag(std::string_view flag) { DescribeText(kSettings, "KVVDIClient", flag); }
    void DescribeWrapper(std::string name, int result) {
        station.session.clientName = CompanionText{std::move(name), result, true};
    }
    void DescribeCitrix(std::string name, int result = 1) {
        station.citrix = simwin::Citrix{CompanionText{std::move(name), result, true}};
    }
};

TEST_F(ComputerNameTest, ConsoleStationIsNamedByItsComputerInUpperCase) {
    EXPECT_EQ(Make().GetComputerName(), 0);
    EXPECT_STREQ(network->m_cClientName, "PC-LAB3");
    EXPECT_STREQ(network->m_cTSClientName, "");
    EXPECT_THAT(Trace(), IsEmpty());
}

TEST_F(ComputerNameTest, OnlyTheLettersOfTheAlphabetAreUpperCased) {
    station.computerName = "b\xFCro-1";
    Make().GetComputerName();
    EXPECT_STREQ(network->m_cClientName, "B\xFCRO-1");
}

TEST_F(ComputerNameTest, ComputerNameOf15CharactersFitsAndALongerOneIsNone) {
    station.computerName = "abcdefghijklmno";
    EXPECT_EQ(Make().GetComputerName(), 0);
    EXPECT_STREQ(network->m_cClientName, "ABCDEFGHIJKLMNO");
    EXPECT_STREQ(network->GetLocalComputerName(), "ABCDEFGHIJKLMNO");

    station.computerName = "abcdefghijklmnop";
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "");
    EXPECT_STREQ(network->GetLocalComputerName(), "");
}

TEST_F(ComputerNameTest, NameThatIsSetAlreadyIsKeptAndNothingIsRead) {
    DescribeFlag("1");
    Make();
    network->m_cClientName = "before";
    EXPECT_EQ(network->GetComputerName(), 0);
    EXPECT_STREQ(network->m_cClientName, "before");
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(ComputerNameTest, RemoteSessionIsNamedByItsClientInBothMembers) {
    DescribeSession();
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "Thin07");
    EXPECT_STREQ(network->m_cTSClientName, "Thin07");
    EXPECT_THAT(Trace(), ElementsAre("6 1. CNetworkInformation='Thin07' 'Thin07'"));
}

TEST_F(ComputerNameTest, FlagThatIsNotExactlyOneLeavesTheNameToSessionOrComputer) {
    DescribeWrapper("WRAPPED", 1);
    for (const char* flag : {"1 ", "01", " 1", "yes", "", "11"}) {
        DescribeFlag(flag);
        EXPECT_EQ(Make().GetComputerName(), 0);
        EXPECT_STREQ(network->m_cClientName, "PC-LAB3") << flag;
        EXPECT_THAT(Trace(), ElementsAre("6 GetComputerName Key opened",
                                         "6 GetComputerName KVVDIClient: '" + std::string(flag) + "'"));
        ExpectEverythingClosed();
    }
    DescribeSession();
    Make().GetComputerName();
    EXPECT_STREQ(network->m_cClientName, "Thin07");
}

TEST_F(ComputerNameTest, SettingsWithoutTheFlagReadAsAnEmptyOne) {
    DescribeText(kSettings, "Other", "1");
    Make().GetComputerName();
    EXPECT_STREQ(network->m_cClientName, "PC-LAB3");
    EXPECT_THAT(Trace(), ElementsAre("6 GetComputerName Key opened", "6 GetComputerName KVVDIClient: ''"));
}

TEST_F(ComputerNameTest, FlagStoredAsNumberIsNone) {
    station.registry.set(kSettings, simwin::dwordValue("KVVDIClient", 1));
    Make().GetComputerName();
    EXPECT_STREQ(network->m_cClientName, "PC-LAB3");
}

TEST_F(ComputerNameTest, VirtualDesktopIsNamedByTheWrapperWhateverItsResultIs) {
    DescribeFlag("1");
    for (const int result : {0, 1, -5}) {
        DescribeWrapper("Thin07", result);
        EXPECT_EQ(Make().GetComputerName(), -1);
        EXPECT_STREQ(network->m_cClientName, "Thin07");
        EXPECT_STREQ(network->m_cTSClientName, "");
        EXPECT_THAT(Trace(), ElementsAre("6 GetComputerName Key opened", "6 GetComputerName KVVDIClient: '1'",
                                         "6 ZRTSQueryClientName: 'Thin07' ret = " + std::to_string(result),
                                         "6 ZRTSQueryClientName OK"));
        ExpectEverythingClosed();
    }
}

TEST_F(ComputerNameTest, VirtualDesktopComesBeforeTheRemoteSession) {
    DescribeSession();
    DescribeFlag("1");
    DescribeWrapper("Wrapped", 1);
    Make().GetComputerName();
    EXPECT_STREQ(network->m_cClientName, "Wrapped");
}

TEST_F(ComputerNameTest, WrapperThatFillsItsWholeBufferIsCutTo254Characters) {
    DescribeFlag("1");
    station.session.clientName = CompanionText{std::string(400, 'w'), 1, false};
    Make().GetComputerName();
    EXPECT_EQ(kvtest::Str(network->m_cClientName), std::string(254, 'w'));
}

TEST_F(ComputerNameTest, EmptyAnswerOfTheWrapperLeadsToTheCitrixInterfaceWhateverItsResultIs) {
    DescribeFlag("1");
    DescribeWrapper("", 1);
    DescribeCitrix("Thin08");
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "Thin08");
    EXPECT_THAT(Trace(),
                ElementsAre("6 GetComputerName Key opened", "6 GetComputerName KVVDIClient: '1'",
                            "6 ZRTSQueryClientName: '' ret = 1", "6 Clientname via WFAPI", "6 wfapi.dll wurde geladen",
                            "6 WFQuerySessionInformationA wurde gefunden", "6 Clientname via WFAPI: 'Thin08'"));
    EXPECT_THAT(machine->openHandles(simwin::HandleKind::Library), IsEmpty());
    EXPECT_THAT(machine->openHandles(simwin::HandleKind::CitrixBuffer), ::testing::SizeIs(1));
}

TEST_F(ComputerNameTest, MissingCitrixLibraryIsTracedAndLeavesTheNameEmpty) {
    DescribeFlag("1");
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "");
    EXPECT_THAT(Trace(), ElementsAre("6 GetComputerName Key opened", "6 GetComputerName KVVDIClient: '1'",
                                     "6 ZRTSQueryClientName: '' ret = 0", "6 Clientname via WFAPI",
                                     "6 wfapi.dll konnte nicht geladen werden. Fehler: 126"));
}

TEST_F(ComputerNameTest, MissingCitrixFunctionIsTracedAndLeavesTheNameEmpty) {
    DescribeFlag("1");
    DescribeCitrix("Thin08");
    station.missing = {"wfapi64.dll!WFQuerySessionInformationA"};
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "");
    EXPECT_EQ(Trace().back(), "6 WFQuerySessionInformationA wurde nicht gefunden");
    ExpectEverythingClosed();
}

TEST_F(ComputerNameTest, CitrixQueryMustAnswerOneExactly) {
    DescribeFlag("1");
    for (const int result : {0, 2, -1}) {
        DescribeCitrix("Thin08", result);
        EXPECT_EQ(Make().GetComputerName(), -1);
        EXPECT_STREQ(network->m_cClientName, "") << result;
        EXPECT_EQ(Trace().back(), "6 WFQuerySessionInformationA ist fehlgeschlagen");
        EXPECT_THAT(machine->openHandles(simwin::HandleKind::Library), IsEmpty());
    }
}

TEST_F(ComputerNameTest, VirtualDesktopWithoutAClientHasNoNameRatherThanTheMachines) {
    DescribeSession();
    DescribeFlag("1");
    EXPECT_EQ(Make().GetComputerName(), -1);
    EXPECT_STREQ(network->m_cClientName, "");
}

}  // namespace
