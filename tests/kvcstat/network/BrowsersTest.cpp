// The default browser and the installed ones.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using kvtest::kClasses;
using kvtest::kExplorer;
using kvtest::kFirefox;
using namespace std::string_literals;

constexpr char kNetscape[] = "HKEY_LOCAL_MACHINE\\Software\\Netscape\\";
constexpr char kOpera[] = "HKEY_CURRENT_USER\\Software\\Opera Software";

class BrowsersTest : public kvtest::NetworkTest {
  protected:
    void DescribeDocumentType(std::string_view documentType) { DescribeText(kClasses + ".html"s, "", documentType); }
    void DescribeOpenCommand(std::string_view command) {
        DescribeDocumentType("htmlfile");
        DescribeText(kClasses + "htmlfile\\shell\\open\\command"s, "", command);
    }
    void DescribeFile(std::string path, std::optional<simwin::FileVersion> version) {
        station.files.push_back({std::move(path), version, {}});
    }

    std::string DefaultBrowser() {
        Make().GetBrowsers();
        ExpectEverythingClosed();
        return kvtest::Str(network->m_cDefaultBrowser);
    }
    std::string Browsers() {
        Make().GetBrowsers();
        ExpectEverythingClosed();
        return kvtest::Str(network->m_cBrowser);
    }
};

TEST_F(BrowsersTest, DefaultBrowserIsNamedByTheFirstTextThatItsCommandHolds) {
    const struct {
        const char* command;
        const char* name;
    } rows[] = {
        {"\"C:\\Program Files\\Internet Explorer\\iexplore.exe\" -nohome", "Microsoft Internet Explorer"},
        {"C:\\Netscape\\Communicator\\Program\\NETSCAPE.EXE \"%1\"", "Netscape Navigator or Communicator"},
        {"C:\\Program Files\\Opera\\Opera.exe \"%1\"", "Opera"},
        {"C:\\PROGRA~1\\NAVIGA~1\\NETSCP.EXE -url \"%1\"", "Mozilla"},
        {"C:\\PROGRA~1\\MOZILL~1\\FIREFOX.EXE -url \"%1\"", "Firefox"},
        {"firefox.exe \"%1\"", "Firefox"},
        {"C:\\firefox\\opera.exe", "Opera"},
        {"C:\\Netscape\\netscp.exe", "Netscape Navigator or Communicator"},
        {"C:\\firefox\\netscp.exe", "Mozilla"},
        {"opera firefox iexplor netscape", "Microsoft Internet Explorer"},
    };
    for (const auto& row : rows) {
        DescribeOpenCommand(row.command);
        EXPECT_EQ(DefaultBrowser(), row.name) << row.command;
    }
}

TEST_F(BrowsersTest, UnknownDefaultBrowserIsItsWholeCommandInLowerCase) {
    DescribeOpenCommand("\"C:\\Program Files\\Google\\Chrome.exe\" -- \"%1\"");
    EXPECT_EQ(DefaultBrowser(), "\"c:\\program files\\google\\chrome.exe\" -- \"%1\"");
    DescribeOpenCommand("\"C:\\B\xDCRO\\Web.exe\"");
    EXPECT_EQ(DefaultBrowser(), "\"c:\\b\xFCro\\web.exe\"");
    DescribeOpenCommand(std::string(5000, 'X'));
    EXPECT_EQ(DefaultBrowser(), std::string(5000, 'x'));
}

TEST_F(BrowsersTest, WithoutAnAssociationOrItsCommandThereIsNoDefaultBrowser) {
    EXPECT_EQ(DefaultBrowser(), "");
    DescribeText(kClasses + "shell\\open\\command"s, "", "C:\\firefox.exe");
    EXPECT_EQ(DefaultBrowser(), "");
    DescribeDocumentType("");
    EXPECT_EQ(DefaultBrowser(), "");
    DescribeDocumentType("htmlfile");
    EXPECT_EQ(DefaultBrowser(), "");
    EXPECT_EQ(Make().GetDefaultBrowser(), -1);
    DescribeOpenCommand("C:\\firefox.exe");
    EXPECT_EQ(Make().GetDefaultBrowser(), 0);
}

TEST_F(BrowsersTest, DefaultBrowserThatIsSetAlreadyIsKept) {
    DescribeOpenCommand("C:\\firefox.exe");
    Make().m_cDefaultBrowser = "before";
    network->GetBrowsers();
    EXPECT_STREQ(network->m_cDefaultBrowser, "before");
}

TEST_F(BrowsersTest, FileOfTheDefaultBrowserIsLookedForByTheWholeCommandAndItsNameIsNotUsed) {
    DescribeOpenCommand("C:\\Web\\Browser.EXE");
    DescribeFile("C:\\Web\\Browser.exe", simwin::FileVersion{1, 2, 3, 4});
    Make();
    machine->keepLog(true);
    network->GetBrowsers();
    EXPECT_STREQ(network->m_cDefaultBrowser, "c:\\web\\browser.exe");
    EXPECT_THAT(Asked("_access"), ::testing::ElementsAre(R"("c:\\web\\browser.exe", 0)"));
    EXPECT_EQ(CountCalls("GetFileVersionInfoSizeA"), 0u);
}

TEST_F(BrowsersTest, InternetExplorersItemEndsInABlank) {
    DescribeText(kExplorer, "Version", "6.0.2900.2180");
    EXPECT_EQ(Browsers(), "Internet Explorer 6.0.2900.2180 ");
}

TEST_F(BrowsersTest, InternetExplorerWithoutAVersionIsNotListedAndWithAnEmptyOneIs) {
    station.registry.create(kExplorer);
    EXPECT_EQ(Browsers(), "");
    DescribeText(kExplorer, "Version", "");
    EXPECT_EQ(Browsers(), "Internet Explorer  ");
}

TEST_F(BrowsersTest, AllItemsStandInTheirOrder) {
    DescribeText(kExplorer, "Version", "8.0.6001.18702");
    station.registry.create(kNetscape + "Netscape\\4.79 (en)"s);
    station.registry.create(kNetscape + "Netscape Navigator Gold\\3.04"s);
    DescribeText(kFirefox, "CurrentVersion", "3.6.13 (en-US)");
    DescribeText(kOpera, "Last Directory3", "C:\\Program Files\\Opera");
    DescribeFile("C:\\Program Files\\Opera\\opera.exe", simwin::FileVersion{10, 63, 3516, 0});
    EXPECT_EQ(Browsers(),
              "Internet Explorer 8.0.6001.18702 ;Netscape 4.79 (en);Netscape Navigator Gold 3.04;"
              "Mozilla Firefox 3.6.13 (en-US);Opera 10.63.3516.0");
}

TEST_F(BrowsersTest, InternetExplorerReplacesWhatWasListedAndTheOthersAppend) {
    DescribeText(kFirefox, "CurrentVersion", "3.6.13 (en-US)");
    Make().m_cBrowser = "before";
    network->GetBrowsers();
    EXPECT_STREQ(network->m_cBrowser, "before;Mozilla Firefox 3.6.13 (en-US)");
    DescribeText(kExplorer, "Version", "8.0");
    Make().m_cBrowser = "before";
    network->GetBrowsers();
    EXPECT_STREQ(network->m_cBrowser, "Internet Explorer 8.0 ;Mozilla Firefox 3.6.13 (en-US)");
}

TEST_F(BrowsersTest, WithoutInternetExplorerNoBlankPrecedesTheFirstSeparator) {
    DescribeText(kFirefox, "CurrentVersion", "3.6.13 (en-US)");
    DescribeText(kOpera, "Last Directory3", "C:\\Opera");
    EXPECT_EQ(Browsers(), "Mozilla Firefox 3.6.13 (en-US);Opera ");
}

TEST_F(BrowsersTest, OnlyTheFirstSubKeyOfNetscapeCountsAndOnlyWhenItBeginsWithADigit) {
    station.registry.create(kNetscape + "Netscape\\Users"s);
    station.registry.create(kNetscape + "Netscape\\4.79"s);
    EXPECT_EQ(Browsers(), "");
    station.registry = {};
    station.registry.create(kNetscape + "Netscape\\4.79"s);
    station.registry.create(kNetscape + "Netscape\\7.0"s);
    EXPECT_EQ(Browsers(), "Netscape 4.79");
    station.registry = {};
    station.registry.create(kNetscape + "Netscape"s);
    EXPECT_EQ(Browsers(), "");
    station.registry.create(kNetscape + "Netscape\\"s + std::string(255, '4'));  // no name that the walk can read
    EXPECT_EQ(Browsers(), "");
}

TEST_F(BrowsersTest, NetscapesVersionBeginsWithAnyDigit) {
    for (const char* version : {"0.9", "9.0", "4", "4z"}) {
        station.registry = {};
        station.registry.create(kNetscape + "Netscape\\"s + version);
        EXPECT_EQ(Browsers(), "Netscape "s + version);
    }
    for (const char* other : {"/4", ":4", "v4"}) {
        station.registry = {};
        station.registry.create(kNetscape + "Netscape\\"s + other);
        EXPECT_EQ(Browsers(), "") << other;
    }
}

TEST_F(BrowsersTest, StatusSaysWhetherNavigatorGoldsKeyIsThere) {
    station.registry.create(kNetscape + "Netscape\\4.79"s);
    EXPECT_EQ(Make().GetBrowsers(), -1);
    station.registry.create(kNetscape + "Netscape Navigator Gold"s);
    EXPECT_EQ(Make().GetBrowsers(), 0);
}

TEST_F(BrowsersTest, LaterNetscapesProgramIsAskedForItsVersionWhichIsNotListed) {
    DescribeText(kNetscape + "Netscape 6\\6.2 (en)\\Main"s, "PathToExe", "C:\\Netscape 6\\netscp6.exe");
    DescribeText(kNetscape + "Netscape 7\\7.1 (en)\\Main"s, "PathToExe", "C:\\Netscape 7\\netscp.exe");
    station.registry.create(kNetscape + "Empty"s);
    DescribeText(kNetscape + "Pathless\\1.0\\Main"s, "PathToExe", "");
    DescribeFile("C:\\Netscape 6\\netscp6.exe", simwin::FileVersion{6, 2, 0, 0});
    Make();
    machine->keepLog(true);
    network->GetBrowsers();
    EXPECT_STREQ(network->m_cBrowser, "");
    EXPECT_EQ(CountCalls("GetFileVersionInfoSizeA"), 2u);
    EXPECT_EQ(CountCalls("GetFileVersionInfoA"), 1u);
    ExpectEverythingClosed();
}

TEST_F(BrowsersTest, LaterNetscapeWhoseKeyDoesNotOpenIsPassedOver) {
    DescribeText(kNetscape + "Netscape 6\\6.2 (en)\\Main"s, "PathToExe", "C:\\Netscape 6\\netscp6.exe");
    DescribeText(kNetscape + "Netscape 7\\7.1 (en)\\Main"s, "PathToExe", "C:\\Netscape 7\\netscp.exe");
    // What the walk of a key that is not open would come to.
    DescribeText(kNetscape + "Netscape 6\\\\Main"s, "PathToExe", "C:\\Netscape 6\\netscp6.exe");
    station.deniedKeys = {kNetscape + "Netscape 6"s};
    Make();
    machine->keepLog(true);
    network->GetBrowsers();
    EXPECT_THAT(Asked("GetFileVersionInfoSizeA"), ::testing::ElementsAre(R"("C:\\Netscape 7\\netscp.exe")"));
    EXPECT_THAT(Asked("RegOpenKeyA"), ::testing::Not(::testing::Contains(::testing::HasSubstr("Netscape 6\\\\\\"))));
    ExpectEverythingClosed();
}

TEST_F(BrowsersTest, FirefoxWithAnEmptyVersionIsListedWithoutOne) {
    DescribeText(kFirefox, "CurrentVersion", "");
    EXPECT_EQ(Browsers(), "Mozilla Firefox ");
}

TEST_F(BrowsersTest, OperaIsTheUsersAndHasItsProgramsVersion) {
    DescribeText("HKEY_LOCAL_MACHINE\\Software\\Opera Software", "Last Directory3", "C:\\Opera");
    EXPECT_EQ(Browsers(), "");
    DescribeText(kOpera, "Last Directory3", "C:\\Opera");
    EXPECT_EQ(Browsers(), "Opera ");
    DescribeFile("C:\\Opera\\opera.exe", std::nullopt);
    EXPECT_EQ(Browsers(), "Opera ");
    station.files.back().version = simwin::FileVersion{10, 63, 3516, 0};
    EXPECT_EQ(Browsers(), "Opera 10.63.3516.0");
}

TEST_F(BrowsersTest, OperaWithoutProperVersionInformationIsListedWithoutAVersion) {
    DescribeText(kOpera, "Last Directory3", "C:\\Opera");
    for (const std::string& resource : {"\x01"s, "\x10\0\0\0\0\0V\0S\0_\0V\0"s, std::string(92, '\0')}) {
        station.files = {{"C:\\Opera\\opera.exe", {}, resource}};
        EXPECT_EQ(Browsers(), "Opera ");
    }
}

TEST_F(BrowsersTest, OperasFolderMayBeOfAnyTextAndLength) {
    for (const std::string& folder : {""s, "\""s, std::string(5000, 'o')}) {
        DescribeText(kOpera, "Last Directory3", folder);
        EXPECT_EQ(Browsers(), "Opera ");
    }
}

TEST_F(BrowsersTest, NothingIsTraced) {
    DescribeOpenCommand("C:\\firefox.exe");
    Browsers();
    EXPECT_THAT(Trace(), ::testing::IsEmpty());
}

}  // namespace
