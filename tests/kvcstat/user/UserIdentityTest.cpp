// Which user the station registers as, and the other forms of the user's name.
#include "kvcstat/user/UserInformation.h"
#include "tests/kvcstat/MachineTest.h"

namespace {

using simwin::HandleKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class UserIdentityTest : public kvtest::MachineTest {
  protected:
    UserIdentityTest() {
        station.user.name = "jdoe";
        station.user.samCompatible = "LAB\\jdoe";
        station.user.displayName = "John Doe";
        station.user.principal = "jd@lab";
        station.user.network = "NetJdoe";
        station.user.directory = "CN=jdoe.O=lab";
    }

    CUserInformation& MakeUser() {
        userName.Empty();
        user.reset();
        Start();
        user = std::make_unique<CUserInformation>();
        return *user;
    }
    // What one collection chooses.
    std::string Collect() {
        MakeUser();
        EXPECT_EQ(user->Collect(userName), 0);
        EXPECT_EQ(kvtest::Str(userName), kvtest::Str(user->m_cUserName));
        return kvtest::Str(userName);
    }
    std::string CollectAs(const std::string& userType, const std::string& nameType = "") {
        station.environment = {{"KVUserType", userType}, {"KVUSERNAMETYPE", nameType}};
        return Collect();
    }

    std::vector<std::pair<int, std::string>> Trace() const {
        std::vector<std::pair<int, std::string>> lines;
        for (const simwin::TraceLine& line : machine->traceLines())
            lines.emplace_back(line.level, line.text);
        return lines;
    }
    bool IsTraced(int level, const std::string& text) const {
        const auto lines = Trace();
        return std::find(lines.begin(), lines.end(), std::pair(level, text)) != lines.end();
    }
    std::size_t CountCalls(std::string_view name) const {
        std::size_t count = 0;
        for (const simwin::LoggedCall& call : machine->log())
            count += call.name == name ? 1 : 0;
        return count;
    }

    std::unique_ptr<CUserInformation> user;
    CString userName;
};

TEST_F(UserIdentityTest, DictatedNameIsKeptInItsLetterCaseAndNothingElseIsAskedForIt) {
    station.environment = {{"KVUser", "John.Doe"}, {"KVUserType", "1"}};
    EXPECT_EQ(Collect(), "John.Doe");
    EXPECT_STREQ(user->m_cWinUser, "LAB\\JDOE");
    EXPECT_STREQ(user->m_cUserDisplayedName, "John Doe");
    EXPECT_THAT(Trace(),
                ElementsAre(Pair(2, "KVUser='John.Doe'\n"), Pair(2, "m_cUserName='John.Doe'\n"),
                            Pair(2, "m_cWinUser='LAB\\JDOE'\n"), Pair(2, "m_cUserDisplayedName='John Doe'\n")));
    ExpectEverythingClosed();
}

TEST_F(UserIdentityTest, WithoutAnyVariableTheWindowsAccountIsTheName) {
    EXPECT_EQ(Collect(), "JDOE");
    EXPECT_THAT(Trace(),
                ElementsAre(Pair(2, "KVUser=''\n"), Pair(2, "KVUSERNAMETYPE=''\n"), Pair(2, "KVUSERTYPE_WINDOWS"),
                            Pair(2, "m_cUserName='JDOE'\n"), Pair(2, "m_cWinUser='LAB\\JDOE'\n"),
                            Pair(2, "m_cUserDisplayedName='John Doe'\n")));
    ExpectEverythingClosed();
}

TEST_F(UserIdentityTest, FirstCharacterOfTheUserTypeChoosesTheSource) {
    const struct {
        const char* userType;
        const char* name;
    } rows[] = {
        {"0", "JDOE"},     {"1", "NETJDOE"},         {"2", "CN=JDOE.O=LAB"},  {"", "JDOE"},   {"3", "JDOE"},
        {"1x", "NETJDOE"}, {"2nd", "CN=JDOE.O=LAB"}, {"21", "CN=JDOE.O=LAB"}, {" 1", "JDOE"}, {"x2", "JDOE"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CollectAs(row.userType), row.name) << row.userType;
}

TEST_F(UserIdentityTest, EachSourceTracesItsUserTypeAndTheDirectoryServiceNone) {
    CollectAs("1");
    EXPECT_TRUE(IsTraced(2, "KVUSERTYPE_WINDOWS_NET"));
    EXPECT_FALSE(IsTraced(2, "KVUSERTYPE_WINDOWS"));
    CollectAs("2");
    EXPECT_FALSE(IsTraced(2, "KVUSERTYPE_WINDOWS_NET"));
    EXPECT_FALSE(IsTraced(2, "KVUSERTYPE_WINDOWS"));
}

TEST_F(UserIdentityTest, PrincipalNameIsUsedForTheNetworkAndTheWindowsAccountInUpperCase) {
    for (const char* userType : {"0", "1"}) {
        for (const char* nameType : {"nameuserprincipal", "NAMEUSERPRINCIPAL", "NameUserPrincipal"}) {
            EXPECT_EQ(CollectAs(userType, nameType), "JD@LAB") << userType << nameType;
            EXPECT_TRUE(IsTraced(2, "KVUSERNAMETYPE='" + std::string(nameType) + "'\n"));
            EXPECT_TRUE(IsTraced(2, "GetUserNameEx='yes'\n"));
            EXPECT_TRUE(IsTraced(2, "cUserName='jd@lab'\n"));
        }
    }
    EXPECT_EQ(CollectAs("0", "nameuserprincipal "), "JDOE");
}

TEST_F(UserIdentityTest, PrincipalNameIsTracedAsItIsAnsweredBeforeItIsUpperCased) {
    CollectAs("1", "nameuserprincipal");
    EXPECT_THAT(Trace(), ElementsAre(Pair(2, "KVUser=''\n"), Pair(2, "KVUSERNAMETYPE='nameuserprincipal'\n"),
                                     Pair(2, "KVUSERTYPE_WINDOWS_NET"), Pair(2, "GetUserNameEx='yes'\n"),
                                     Pair(2, "cUserName='jd@lab'\n"), Pair(2, "m_cUserName='JD@LAB'\n"),
                                     Pair(2, "m_cWinUser='JD@LAB'\n"), Pair(2, "m_cUserDisplayedName='John Doe'\n")));
}

TEST_F(UserIdentityTest, DirectoryServiceIsAskedWhateverTheNameTypeIs) {
    EXPECT_EQ(CollectAs("2", "nameuserprincipal"), "CN=JDOE.O=LAB");
}

TEST_F(UserIdentityTest, MissingPrincipalNameFallsBackToTheNetworkAccountForBothUserTypes) {
    station.user.principal.reset();
    for (const char* userType : {"0", "1"}) {
        EXPECT_EQ(CollectAs(userType, "nameuserprincipal"), "NETJDOE");
        EXPECT_TRUE(IsTraced(2, "GetUserNameEx='no' Error=1332\n"));
        EXPECT_FALSE(IsTraced(2, "GetUserNameEx='yes'\n"));
    }
    station.user.network.reset();
    for (const char* userType : {"0", "1"})
        EXPECT_EQ(CollectAs(userType, "nameuserprincipal"), "JDOE");
}

TEST_F(UserIdentityTest, SourcesThatFailFallBackToTheWindowsAccount) {
    station.user.network.reset();
    station.user.directory.reset();
    EXPECT_EQ(CollectAs("1"), "JDOE");
    EXPECT_EQ(CollectAs("2"), "JDOE");
}

TEST_F(UserIdentityTest, WithoutAnySourceTheNameIsUnknownInUpperCase) {
    station.user = {};
    for (const char* userType : {"0", "1", "2"}) {
        EXPECT_EQ(CollectAs(userType), "UNKNOWN");
        EXPECT_EQ(CollectAs(userType, "nameuserprincipal"), "UNKNOWN");
        EXPECT_STREQ(user->m_cWinUser, "");
        EXPECT_STREQ(user->m_cUserDisplayedName, "");
    }
}

TEST_F(UserIdentityTest, WindowsAccountIsAskedOnceAndOneThatFailedOnceMore) {
    for (const std::size_t asked : {1u, 2u}) {
        MakeUser();
        machine->keepLog(true);
        user->Collect(userName);
        EXPECT_EQ(CountCalls("GetUserNameA"), asked);
        station.user.name.reset();
    }
}

TEST_F(UserIdentityTest, LettersOfTheCodePageAreUpperCased) {
    station.user.name = "m\xFCller";
    station.user.samCompatible = "LAB\\m\xFCller";
    station.user.displayName = "J\xF6rg M\xFCller";
    EXPECT_EQ(Collect(), "M\xDCLLER");
    EXPECT_STREQ(user->m_cWinUser, "LAB\\M\xDCLLER");
    EXPECT_STREQ(user->m_cUserDisplayedName, "J\xF6rg M\xFCller");
}

TEST_F(UserIdentityTest, WindowsAccountOf256CharactersFitsAndALongerOneDoesNot) {
    station.user.name = std::string(256, 'x');
    MakeUser();
    EXPECT_EQ(user->GetWindowsUser(userName), 0);
    EXPECT_EQ(kvtest::Str(userName), std::string(256, 'X'));
    station.user.name = std::string(257, 'x');
    MakeUser();
    EXPECT_EQ(user->GetWindowsUser(userName), -1);
    EXPECT_STREQ(userName, "");
}

TEST_F(UserIdentityTest, WindowsAccountLeavesTheGivenNameInTheMemberAlsoWhenItFails) {
    station.user.name.reset();
    MakeUser();
    userName = "before";
    EXPECT_EQ(user->GetWindowsUser(userName), -1);
    EXPECT_STREQ(userName, "before");
    EXPECT_STREQ(user->m_cUserName, "before");
}

TEST_F(UserIdentityTest, WinUserIsTheAccountWithItsDomainInUpperCase) {
    MakeUser();
    EXPECT_EQ(user->ReadWinUser(), 0);
    EXPECT_STREQ(user->m_cWinUser, "LAB\\JDOE");
    EXPECT_THAT(Trace(), IsEmpty());
}

TEST_F(UserIdentityTest, PrincipalNameAsWinUserMustFitTheRoomOfTheAccountName) {
    const struct {
        const char* principal;
        int result;
        const char* winUser;
    } rows[] = {
        {"j@lab", 0, "J@LAB"},
        {"j@lab.de", 0, "J@LAB.DE"},  // eight characters, as many as LAB\jdoe
        {"jd@lab.de", -1, ""},
    };
    station.environment = {{"KVUSERNAMETYPE", "NameUserPrincipal"}};
    for (const auto& row : rows) {
        station.user.principal = row.principal;
        MakeUser();
        EXPECT_EQ(user->ReadWinUser(), row.result) << row.principal;
        EXPECT_STREQ(user->m_cWinUser, row.winUser);
        EXPECT_EQ(IsTraced(6, "GetUserNameEx failed. Error 234\n"), row.result != 0);  // ERROR_MORE_DATA
    }
}

TEST_F(UserIdentityTest, PrincipalNameAsWinUserHasNoRoomWithoutAnAccountName) {
    station.environment = {{"KVUSERNAMETYPE", "nameuserprincipal"}};
    station.user.samCompatible.reset();
    MakeUser();
    EXPECT_EQ(user->ReadWinUser(), -1);
    EXPECT_THAT(Trace(), ElementsAre(Pair(6, "GetUserNameEx failed. Error 234\n")));
}

TEST_F(UserIdentityTest, MissingAccountNameIsTracedWithWindowsError) {
    station.user.samCompatible.reset();
    MakeUser();
    EXPECT_EQ(user->ReadWinUser(), -1);
    EXPECT_STREQ(user->m_cWinUser, "");
    EXPECT_THAT(Trace(), ElementsAre(Pair(6, "GetUserNameEx failed. Error 1332\n")));
}

TEST_F(UserIdentityTest, DisplayedNameStandsAsItIsAndTheLibraryIsFreed) {
    MakeUser();
    EXPECT_EQ(user->ReadDisplayedName(), -1);
    EXPECT_STREQ(user->m_cUserDisplayedName, "John Doe");
    ExpectEverythingClosed();
}

TEST_F(UserIdentityTest, DisplayedNameOf255CharactersFitsAndALongerOneIsNone) {
    station.user.displayName = std::string(255, 'd');
    MakeUser().ReadDisplayedName();
    EXPECT_EQ(kvtest::Str(user->m_cUserDisplayedName), std::string(255, 'd'));
    station.user.displayName = std::string(256, 'd');
    MakeUser().ReadDisplayedName();
    EXPECT_STREQ(user->m_cUserDisplayedName, "");
}

TEST_F(UserIdentityTest, WithoutTheSecurityLibraryOrItsFunctionThereIsNoDisplayedName) {
    for (const char* missing : {"Secur32.dll", "Secur32.dll!GetUserNameExA"}) {
        station.missing = {missing};
        MakeUser();
        EXPECT_EQ(user->ReadDisplayedName(), -1);
        EXPECT_STREQ(user->m_cUserDisplayedName, "") << missing;
        ExpectEverythingClosed();
    }
}

TEST_F(UserIdentityTest, NamesLongerThanAnyBufferAreNeverOverrun) {
    const std::string longName(4000, 'n');
    station.user = {longName, longName, longName, longName, longName, longName};
    EXPECT_EQ(CollectAs("0"), "UNKNOWN");
    EXPECT_EQ(CollectAs("0", "nameuserprincipal"), std::string(4000, 'N'));
    EXPECT_EQ(CollectAs("1"), std::string(4000, 'N'));
    EXPECT_EQ(kvtest::Str(user->m_cWinUser), std::string(4000, 'N'));
    EXPECT_STREQ(user->m_cUserDisplayedName, "");
}

TEST_F(UserIdentityTest, ChosenNameIsPublished) {
    station.environment = {{"KVUserType", "1"}};
    Collect();
    EXPECT_EQ(user->PublishUser(), 0);
    EXPECT_EQ(VariableSet("KVUser"), "NETJDOE");
}

TEST_F(UserIdentityTest, PublishingTellsWhenTheEnvironmentDidNotTakeIt) {
    station.fails = {{"KVSetEnv", 8}};
    Collect();
    EXPECT_EQ(user->PublishUser(), -1);
    EXPECT_EQ(VariableSet("KVUser"), std::nullopt);
}

}  // namespace
