// The run as a whole: load and unload, the order of its steps, and what it writes into the record.
#include <algorithm>

#include "framework/ModuleState.h"
#include "framework/WinApp.h"
#include "framework/Windows.h"
#include "tests/kvcstat/MachineTest.h"
#include "tests/kvcstat/PatternedRecord.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

namespace {

using kvtest::kCitrix;
using kvtest::kExplorer;
using kvtest::kFirefox;
using kvtest::kMail;
using simwin::HandleKind;
using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr char kDescription[] = "HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System";

class CollectionRunTest : public kvtest::MachineTest {
  protected:
    CollectionRunTest() { station.version = simwin::WindowsVersion{2, 5, 1, 2600, "Service Pack 3", false}; }

    // One call on a cleared record, on a machine started anew.
    void Collect() {
        Start();
        record.Clear();
        GetStationData(record.data());
    }
    void CollectOverPattern() {
        Start();
        record = {};
        GetStationData(record.data());
    }

    void DescribeMetaFrameSession() {
        station.environment.push_back({"CLIENTNAME", "THIN07"});
        station.registry.set(kCitrix, simwin::textValue("ProductName", "Citrix MetaFrame XP"));
    }
    void DescribeDrive(char letter, std::uint32_t type) { station.drives[letter].type = type; }

    kvtest::PatternedRecord record;
};

TEST_F(CollectionRunTest, LoadStartsTheWrapperAndThenWindowsSocketsAndUnloadStopsTheWrapper) {
    Start();
    machine->keepLog(true);
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr));
    EXPECT_TRUE(DllMain(nullptr, DLL_THREAD_ATTACH, nullptr));
    EXPECT_TRUE(DllMain(nullptr, DLL_THREAD_DETACH, nullptr));
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr));
    std::vector<std::string> calls;
    for (const simwin::LoggedCall& call : machine->log())
        calls.push_back(call.name + "(" + call.arguments + ")");
    EXPECT_THAT(calls, ElementsAre("ZRTSWRPInit()", "WSAStartup(257)", "ZRTSWRPFree()")) << "0x0101: version 1.1";
}

TEST_F(CollectionRunTest, LoadSucceedsWhateverTheWrapperAndSocketsAnswer) {
    station.fails["WSAStartup"] = 10091;
    station.fails["ZRTSWRPInit"] = 0;
    Start();
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr));
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr));
}

// Brings the module's own application object back.
struct OwnApp {
    OwnApp() = default;
    OwnApp(const OwnApp&) = delete;
    OwnApp& operator=(const OwnApp&) = delete;
    ~OwnApp() { GetStaticModuleState().m_pApp = app; }

    CWinApp* app = GetStaticModuleState().m_pApp;
};

// An application object, which takes the own one's place when it is constructed.
class OtherApp : private OwnApp, public CWinApp {
  public:
    explicit OtherApp(bool starts) : CWinApp("other.ini"), m_starts(starts) {}

    bool InitInstance() override { return m_starts && CWinApp::InitInstance(); }

  private:
    bool m_starts;
};

TEST_F(CollectionRunTest, LoadFailsWhenTheApplicationDoesNotStart) {
    Start();
    {
        const OtherApp app(false);
        EXPECT_FALSE(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr));
    }
    OtherApp app(true);
    EXPECT_TRUE(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr));
    EXPECT_EQ(app.ExitInstance(), 0);
}

TEST_F(CollectionRunTest, AnotherModulesStateIsInForceAgainBehindTheCall) {
    station.version->platformId = 0;
    station.profile = {{"windows", "device", "Deskjet,winspool,LPT1:"}};
    const OwnApp own;
    CWinApp otherApp("other.ini");
    GetStaticModuleState().m_pApp = own.app;
    CModuleState other{nullptr, &otherApp};
    const CModuleStateScope scope(other);
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szDefaultPrinter), "Deskjet")
        << "during the call the module's own is: its application object reads its own profile";
    EXPECT_EQ(&GetModuleState(), &other);
}

TEST_F(CollectionRunTest, FirstTraceLineSaysThatTheStationIsRead) {
    Collect();
    ASSERT_FALSE(machine->traceLines().empty());
    const simwin::TraceLine& line = machine->traceLines().front();
    EXPECT_EQ(line.level, 2);
    EXPECT_EQ(line.component, "KelVor - Station registration (client)");
    EXPECT_EQ(line.text, "Reading station data.\n");
}

TEST_F(CollectionRunTest, VersionIsReadRightBeforeTheHardware) {
    Start().keepLog(true);
    record.Clear();
    GetStationData(record.data());
    const auto& log = machine->log();
    const auto hardware =
        std::ranges::find(log, std::string_view("GetSystemInfo"), &simwin::LoggedCall::name) - log.begin();
    ASSERT_GT(hardware, 0);
    EXPECT_EQ(log.at(static_cast<std::size_t>(hardware - 1)).name, "GetVersionExA");
}

TEST_F(CollectionRunTest, EmptyMachineLeavesEveryTextFieldAndTheReservedAreasAsTheCallerHadThem) {
    station.version.reset();
    CollectOverPattern();
    for (const kvtest::RecordPlace& area : kvtest::RecordPlace::reserved())
        EXPECT_TRUE(record.IsUntouched(area)) << area.offset;
    EXPECT_TRUE(record.IsUntouched(&STATIONDATA::szOS));
    EXPECT_TRUE(record.IsUntouched(&STATIONDATA::szCDRomDevices));
    EXPECT_TRUE(record.IsUntouched(&STATIONDATA::dwSessionId));
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
    EXPECT_THAT(machine->misuses(), SizeIs(0));
}

TEST_F(CollectionRunTest, TextsArriveWithoutTerminatorAndTheBytesBehindThemStay) {
    CollectOverPattern();
    const std::string description = "Windows NT 5.1 (Build 2600) Service Pack 3";
    EXPECT_EQ(record.At(&STATIONDATA::szOS),
              description + kvtest::PatternedRecord::Pattern(sizeof(STATIONDATA::szOS) - description.size()));
    for (const kvtest::RecordPlace& area : kvtest::RecordPlace::reserved())
        EXPECT_TRUE(record.IsUntouched(area)) << area.offset;
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(CollectionRunTest, DescriptionLongerThanItsFieldIsCut) {
    station.version->servicePack = std::string(127, 'x');
    CollectOverPattern();
    const std::string description = "Windows NT 5.1 (Build 2600) " + station.version->servicePack;
    EXPECT_EQ(record.At(&STATIONDATA::szOS),
              description.substr(0, sizeof(STATIONDATA::szOS) - 1) + kvtest::PatternedRecord::Pattern(1));
}

TEST_F(CollectionRunTest, WithoutTheVCDModuleOneZeroByteEndsTheRecord) {
    CollectOverPattern();
    EXPECT_EQ(record.At(&STATIONDATA::szVCDVersion),
              '\0' + kvtest::PatternedRecord::Pattern(sizeof(STATIONDATA::szVCDVersion) - 1));
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(CollectionRunTest, LongestVCDVersionEndsAtTheRecordsLastByte) {
    station.vcdVersion = -2147483647 - 1;
    CollectOverPattern();
    EXPECT_EQ(record.At(&STATIONDATA::szVCDVersion), std::string("-2147483648") + '\0');
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(CollectionRunTest, SessionIdIsTheTokensAndStaysTheCallersWhenItCannotBeRead) {
    station.process = simwin::Process{1234, 3};
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::dwSessionId), 3u);

    for (const char* call : {"OpenProcess", "OpenProcessToken", "GetTokenInformation"}) {
        station.fails = {{call, 5}};
        kvtest::PatternedRecord untouched;
        Start();
        GetStationData(untouched.data());
        EXPECT_TRUE(untouched.IsUntouched(&STATIONDATA::dwSessionId)) << call;
    }
}

TEST_F(CollectionRunTest, EachCallLeavesOneProcessAndOneTokenHandleOpen) {
    station.process = simwin::Process{1234, 0};
    Collect();
    GetStationData(record.data());
    EXPECT_THAT(machine->openHandles(HandleKind::Process), SizeIs(2));
    EXPECT_THAT(machine->openHandles(HandleKind::Token), SizeIs(2));
    EXPECT_THAT(machine->openHandles(), SizeIs(4));
    EXPECT_THAT(machine->misuses(), SizeIs(0));
}

TEST_F(CollectionRunTest, DefaultServerSessionsIsTheLeadingNumberOfItsVariable) {
    const struct {
        const char* text;
        std::int32_t number;
    } rows[] = {{"12abc", 12}, {"abc", 0}, {"", 0}, {" 7", 7}, {"-3", -3}};
    for (const auto& row : rows) {
        station.environment = {{"KVTSDefaultSrvSessions", row.text}};
        Collect();
        EXPECT_EQ(static_cast<std::int32_t>(record.Number(&STATIONDATA::dwTSDefaultSrvSessions)), row.number)
            << row.text;
    }
    station.environment.clear();
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::dwTSDefaultSrvSessions), 0u);
}

TEST_F(CollectionRunTest, SessionsProtocolBuildAndProductFollowTheRemovableDrivesBehindABar) {
    DescribeMetaFrameSession();
    station.environment.insert(station.environment.end(),
                               {{"KVTSProtocol", "ICA"}, {"KVTSBuildNo", "2600"}, {"KVTSProductID", "1"}});
    DescribeDrive('A', 2);
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szRemovableDrives), "A:\\|ICA 2600 1");
}

TEST_F(CollectionRunTest, SessionSuffixOfAStationWithoutRemovableDrivesBeginsWithTheBar) {
    DescribeMetaFrameSession();
    station.environment.push_back({"KVTSProtocol", "RDP"});
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szRemovableDrives), "|RDP  ");
}

TEST_F(CollectionRunTest, WithoutASessionProtocolTheRemovableDrivesStayAsTheyAre) {
    DescribeMetaFrameSession();
    station.environment.insert(station.environment.end(), {{"KVTSBuildNo", "2600"}, {"KVTSProductID", "1"}});
    DescribeDrive('A', 2);
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szRemovableDrives), "A:\\");
}

TEST_F(CollectionRunTest, BrowserFlagsSayWhichWordsTheBrowserTextHolds) {
    station.registry.set(kFirefox, simwin::textValue("CurrentVersion", "3.6.13 (en-US)"));
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::bInternetExplorer), 0u);
    EXPECT_EQ(record.Number(&STATIONDATA::bNetscape), 0u);

    station.registry.set(kExplorer, simwin::textValue("Version", "6.0.2900.2180"));
    station.registry.create("HKEY_LOCAL_MACHINE\\Software\\Netscape\\Netscape\\4.79");
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::bInternetExplorer), 1u);
    EXPECT_EQ(record.Number(&STATIONDATA::bNetscape), 1u);
}

TEST_F(CollectionRunTest, MailFlagsSayWhichWordsTheMailTextHolds) {
    station.registry.create(std::string(kMail) + "\\Microsoft Outlook");
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::bOutlook), 1u);
    EXPECT_EQ(record.Number(&STATIONDATA::bExchange), 0u);

    station.registry = {};
    station.registry.create(std::string(kMail) + "\\Microsoft Exchange");
    station.registry.create(std::string(kMail) + "\\outlook");
    CollectOverPattern();
    EXPECT_EQ(record.Number(&STATIONDATA::bOutlook), 0u);
    EXPECT_EQ(record.Number(&STATIONDATA::bExchange), 1u);
}

TEST_F(CollectionRunTest, BiosDateOfAnyLengthCountsTheCDRomDrivesAndWritesNothingBehindTheRecord) {
    DescribeDrive('D', 5);
    DescribeDrive('E', 5);
    station.registry.set(kDescription, simwin::textValue("SystemBiosDate", "12/3"));
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szCDRomDrives), "D:\\;");
    EXPECT_EQ(record.Text(&STATIONDATA::szBiosDate), "12/3");

    // 2000 zeros from the drives on, into the operating system; what is copied later stands again.
    station.registry.set(kDescription, simwin::textValue("SystemBiosDate", std::string(2000, '9')));
    CollectOverPattern();
    EXPECT_EQ(record.Text(&STATIONDATA::szCDRomDrives), "D:\\;E:\\");
    EXPECT_EQ(record.At(&STATIONDATA::reserved1983), std::string(sizeof(STATIONDATA::reserved1983), '\0'));
    EXPECT_EQ(record.Text(&STATIONDATA::szOS).substr(0, 42), "Windows NT 5.1 (Build 2600) Service Pack 3");
    EXPECT_EQ(record.Text(&STATIONDATA::szBiosDate).substr(0, 10), "9999999999");
    EXPECT_TRUE(record.IsUntouched(&STATIONDATA::reserved4608));

    station.registry.set(kDescription, simwin::textValue("SystemBiosDate", std::string(65536, '9')));
    CollectOverPattern();
    EXPECT_EQ(record.At(&STATIONDATA::reserved4608), std::string(sizeof(STATIONDATA::reserved4608), '\0'));
    EXPECT_TRUE(record.IsUntouchedBehindTheRecord());
}

TEST_F(CollectionRunTest, FieldsCopiedBeforeTheCDRomListsAreLostToALongPadding) {
    station.registry.set("HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards\\1",
                         simwin::textValue("Description", "AMD PCNET PCI Ethernet Adapter"));
    station.registry.set(kDescription, simwin::textValue("SystemBiosDate", "12/03/02"));
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szNetworkAdapters), "AMD PCNET PCI Ethernet Adapter");

    // The adapters are copied before the padding that starts at the CD-ROM devices, the operating system after it.
    station.registry.set(kDescription, simwin::textValue("SystemBiosDate", std::string(3000, '9')));
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szNetworkAdapters), "");
    EXPECT_EQ(record.Text(&STATIONDATA::szOS), "Windows NT 5.1 (Build 2600) Service Pack 3");
}

TEST_F(CollectionRunTest, EnvironmentIsPublishedOnAnEmptyMachineToo) {
    station.version.reset();
    Collect();
    EXPECT_EQ(VariableSet("KVOS"), "");
    EXPECT_EQ(VariableSet("KVUser"), "UNKNOWN");
    EXPECT_EQ(VariableSet("KVStation"), "UNKNOWN");
    EXPECT_EQ(VariableSet("KVVCDVersion"), "");
    EXPECT_EQ(VariableSet("KVIP"), std::nullopt);
    EXPECT_EQ(VariableSet("KVDnsName"), std::nullopt);
}

}  // namespace
