// Versions of the installed ICA and RDP clients.
#include <cstring>

#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using kvtest::kClasses;
using namespace std::string_literals;
using ::testing::ElementsAre;

constexpr char kICAProgram[] = "C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe";

class RemoteClientsTest : public kvtest::NetworkTest {
  protected:
    RemoteClientsTest() {
        station.files.push_back({kICAProgram, simwin::FileVersion{10, 200, 2650, 0}, {}});
        station.files.push_back({"C:\\WINDOWS\\system32\\mstscax.dll", simwin::FileVersion{6, 0, 6001, 18000}, {}});
    }

    void DescribeProgramId(std::string_view programId) { DescribeText(kClasses + ".ica"s, "", programId); }
    void DescribeOpenCommand(std::string_view command, const std::string& programId = "ICAFile") {
        DescribeProgramId(programId);
        DescribeText(kClasses + programId + "\\shell\\open\\command", "", command);
    }
    std::string ICAVersion() {
        Make();
        machine->keepLog(true);
        network->GetICAClientVersion();
        ExpectEverythingClosed();
        return kvtest::Str(network->m_cICAClientVersion);
    }
    std::string RDPVersion() {
        Make().GetRDPClientVersion();
        ExpectEverythingClosed();
        return kvtest::Str(network->m_cRDPClientVersion);
    }
    void ExpectLongPath(const char* path, const char* longPath) {
        Make();
        CString found = "before";
        EXPECT_EQ(network->GetLongPath(path, found), static_cast<int>(std::strlen(longPath))) << path;
        EXPECT_STREQ(found, longPath);
        ExpectEverythingClosed();
    }
};

TEST_F(RemoteClientsTest, ICAClientIsTheProgramThatOpensItsFiles) {
    DescribeOpenCommand("\"C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe\" \"%1\"");
    EXPECT_EQ(ICAVersion(), "10.200.2650.0");
    EXPECT_THAT(Asked("FindFirstFileA"), ElementsAre(R"("c:\\program files")", R"("c:\\program files\\citrix")",
                                                     R"("c:\\program files\\citrix\\ica client")",
                                                     R"("c:\\program files\\citrix\\ica client\\wfica32.exe")"));
    EXPECT_THAT(Asked("GetFileVersionInfoSizeA"),
                ElementsAre(R"("c:\\Program Files\\Citrix\\ICA Client\\wfica32.exe")"));
}

TEST_F(RemoteClientsTest, ICAClientIsFoundInCommandsOfManyForms) {
    for (const char* command : {
             "C:\\PROGRAM FILES\\CITRIX\\ICA CLIENT\\WFICA32.EXE %1",
             "C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe",
             "\"C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe",
             "run \"C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe\" \"wfica32.exe\"",
             "C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe\"\"\"",
             "C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe.bak",
         }) {
        DescribeOpenCommand(command);
        EXPECT_EQ(ICAVersion(), "10.200.2650.0") << command;
    }
}

TEST_F(RemoteClientsTest, CommandsThatNameNoSuchFileHaveNoVersion) {
    for (const char* command : {
             "\"C:\\Program Files\\Citrix\\ICA Client\\pn.exe\" \"%1\"",
             "wfica32.exe",
             "\"wfica32.exe\"",
             "\"wfica32.exe",
             "\"\"C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe\"",
             "start C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe",
             "C:\\Program Files\\Missing\\ICA Client\\wfica32.exe",
             "D:\\Program Files\\Citrix\\ICA Client\\wfica32.exe",
             "\\\\server\\share\\wfica32.exe",
             "\\wfica32.exe",
             "C:wfica32.exe",
             "\"",
             "",
         }) {
        DescribeOpenCommand(command);
        EXPECT_EQ(ICAVersion(), "") << command;
    }
}

TEST_F(RemoteClientsTest, BareProgramNameIsAskedForItsVersionAsItIs) {
    DescribeOpenCommand("WFICA32.EXE");
    ICAVersion();
    EXPECT_EQ(CountCalls("FindFirstFileA"), 0u);
    EXPECT_THAT(Asked("GetFileVersionInfoSizeA"), ElementsAre("\"wfica32.exe\""));
}

TEST_F(RemoteClientsTest, WithoutAnAssociationNothingIsLookedFor) {
    EXPECT_EQ(ICAVersion(), "");
    DescribeProgramId("");
    EXPECT_EQ(ICAVersion(), "");
    EXPECT_EQ(CountCalls("RegOpenKeyA"), 1u);
    DescribeProgramId("ICAFile");
    EXPECT_EQ(ICAVersion(), "");
    EXPECT_EQ(CountCalls("RegOpenKeyA"), 2u);
    EXPECT_EQ(CountCalls("GetFileVersionInfoSizeA"), 0u);
}

TEST_F(RemoteClientsTest, ProgramIdAndCommandAreCutTo259Characters) {
    const std::string command = "\"" + std::string(kICAProgram) + "\"";
    DescribeOpenCommand(command, std::string(259, 'p'));
    EXPECT_EQ(ICAVersion(), "10.200.2650.0");
    DescribeProgramId(std::string(5000, 'p'));
    EXPECT_EQ(ICAVersion(), "10.200.2650.0");

    station.registry = {};
    const std::string quoted = "\"" + std::string(kICAProgram);
    DescribeOpenCommand(std::string(259 - quoted.size(), 'x') + quoted + std::string(5000, 'y'));
    EXPECT_EQ(ICAVersion(), "10.200.2650.0");
    DescribeOpenCommand(std::string(260 - quoted.size(), 'x') + quoted + std::string(5000, 'y'));
    EXPECT_EQ(ICAVersion(), "");
}

TEST_F(RemoteClientsTest, AssociationsBytesReadAsTextWhateverTheirTypeAndEnd) {
    const std::string command = "\"" + std::string(kICAProgram) + "\"";
    for (const auto type : {simwin::RegistryType::Text, simwin::RegistryType::ExpandText, simwin::RegistryType::Binary,
                            simwin::RegistryType::MultiText}) {
        const auto number = static_cast<std::uint32_t>(type);
        station.registry.set(kClasses + ".ica"s, {"", number, "ICAFile"s});
        station.registry.set(kClasses + "ICAFile\\shell\\open\\command"s, {"", number, command});
        EXPECT_EQ(ICAVersion(), "10.200.2650.0") << number;
        station.registry.set(kClasses + ".ica"s, {"", number, ""s});
        EXPECT_EQ(ICAVersion(), "") << number;
    }
}

TEST_F(RemoteClientsTest, VersionResourceThatIsCutOrHoldsNoFixedInformationGivesNoVersion) {
    DescribeOpenCommand(kICAProgram);
    for (const std::string& resource :
         {"\x01"s, "\x10\0\0\0\0\0V\0S\0_\0V\0"s, std::string(92, '\0'), std::string(400, '\xFF')}) {
        station.files = {{kICAProgram, {}, resource}};
        EXPECT_EQ(ICAVersion(), "");
    }
    station.files = {{kICAProgram, {}, {}}};
    EXPECT_EQ(ICAVersion(), "");
}

TEST_F(RemoteClientsTest, LongPathHasEveryComponentAsTheDiskHasIt) {
    ExpectLongPath("c:\\program files\\CITRIX\\ica client\\WFICA32.exe",
                   "c:\\Program Files\\Citrix\\ICA Client\\wfica32.exe");
    ExpectLongPath("C:\\program files", "C:\\Program Files");
    ExpectLongPath("c:\\program files\\", "c:\\Program Files\\");
}

TEST_F(RemoteClientsTest, LongPathOfADriveOrABareNameIsTheTextItself) {
    for (const char* path : {"c:", "c:\\", "wfica32.exe", "", "\\x", "a\\b", "\\\\server"})
        ExpectLongPath(path, path);
}

TEST_F(RemoteClientsTest, LongPathIsEmptyWhenAComponentIsMissing) {
    ExpectLongPath("c:\\program files\\missing\\ica client\\wfica32.exe", "");
    ExpectLongPath("c:\\program files\\citrix\\ica client\\missing.exe", "");
    ExpectLongPath("d:\\program files\\citrix", "");
    ExpectLongPath("\\\\server\\share\\wfica32.exe", "");
    ExpectLongPath("c:\\missing\\", "");
}

TEST_F(RemoteClientsTest, LongPathOfVeryManyComponentsEndsAtTheFirstMissingOne) {
    std::string path = "c:";
    for (int level = 0; level < 128; ++level)
        path += "\\a";
    ExpectLongPath(path.c_str(), "");
    EXPECT_EQ(kvtest::Str(network->m_cICAClientVersion), "");
}

TEST_F(RemoteClientsTest, RDPClientIsTheSystemsControlInOrOutOfASession) {
    DescribeVariable("SystemRoot", "C:\\WINDOWS");
    EXPECT_EQ(RDPVersion(), "6.0.6001.18000");
    DescribeSession();
    EXPECT_EQ(RDPVersion(), "6.0.6001.18000");
}

TEST_F(RemoteClientsTest, RDPClientWithoutSystemRootFileOrResourceHasNoVersion) {
    EXPECT_EQ(RDPVersion(), "");
    DescribeVariable("SystemRoot", "C:\\WINNT");
    EXPECT_EQ(RDPVersion(), "");
    station.environment = {{"SystemRoot", "C:\\WINDOWS"}};
    station.files = {{"C:\\WINDOWS\\system32\\mstscax.dll", {}, {}}};
    EXPECT_EQ(RDPVersion(), "");
}

TEST_F(RemoteClientsTest, SystemRootOf259CharactersFitsAndALongerOneIsNone) {
    const std::string root = "C:\\" + std::string(256, 'w');
    station.files = {{root + "\\system32\\mstscax.dll", simwin::FileVersion{6, 0, 0, 1}, {}},
                     {"\\system32\\mstscax.dll", simwin::FileVersion{6, 0, 0, 2}, {}}};
    DescribeVariable("SystemRoot", root);
    EXPECT_EQ(RDPVersion(), "6.0.0.1");
    station.environment = {{"SystemRoot", root + "w"}};
    EXPECT_EQ(RDPVersion(), "6.0.0.2");
}

}  // namespace
