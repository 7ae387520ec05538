// What a machine keeps of a run: calls, failures, the log, and the recording.
#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <functional>

#include "framework/String.h"
#include "simwin/Address.h"
#include "simwin/CallTable.h"
#include "simwin/Calls.h"
#include "simwin/Recording.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using namespace std::string_literals;
using testing::IsEmpty;
using testing::SizeIs;

Station described() {
    Station station;
    station.version = WindowsVersion{2, 5, 1, 2600, "", true};
    station.computerName = "PC";
    station.user.name = "jdoe";
    station.user.samCompatible = "LAB\\jdoe";
    station.user.network = "JDOE";
    station.user.directory = "CN=jdoe";
    station.keyboard = Keyboard{4, 0};
    station.process = Process{1234, 0};
    station.processors = Processors{0, 1, 586, 6, 0, {2400}};
    station.environment = {{"A", "b"}};
    station.drives['C'] = {DRIVE_FIXED, "SYSTEM", "NTFS", 1, Space{4096, 4096, 4096}, {}};
    station.files = {{"C:\\a.dll", FileVersion{1, 2, 3, 4}, {}}};
    station.network.hostName = "pc";
    station.network.hosts = {{"pc", "pc.example", 2, {"\x0A\0\0\5"s}}};
    station.network.addresses = {{"10.0.0.5", "pc.example"}};
    station.network.arp = {{"10.0.0.5", "\1\2\3\4\5\6"}};
    station.network.netbios = {{0, "\1\2\3\4\5\6"}};
    station.network.lanGroup = "GROUP";
    station.network.domain = "LAB";
    station.session = {CompanionText{"THIN", 1, true}, CompanionText{"10.9.8.7", 1, true},
                       CompanionText{"LAB", 1, true}, 3};
    station.citrix.emplace().clientName = CompanionText{"THIN", 1, true};
    station.vcdVersion = 41;
    station.profile = {{"windows", "device", "HP"}};
    station.registry.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub", textValue("Name", "abc"));
    return station;
}

void readRegistry() {
    HKEY key = nullptr;
    HKEY sub = nullptr;
    RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product", &key);
    RegOpenKeyExA(key, "Sub", 0, KEY_READ, &sub);
    std::array<char, 16> buffer{};
    DWORD size = 16;
    DWORD type = 0;
    RegEnumKeyA(key, 0, buffer.data(), 16);
    RegEnumValueA(sub, 0, buffer.data(), &size, nullptr, &type, nullptr, nullptr);
    RegQueryValueExA(sub, "Name", nullptr, &type, nullptr, &size);
    RegQueryValueExA(sub, "Name", nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &size);
    if (sub != nullptr)
        RegCloseKey(sub);
    if (key != nullptr)
        RegCloseKey(key);
}

void readSystem() {
    GetVersion();
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    GetVersionExA(&info);
    OSVERSIONINFOEXA suite{};
    suite.dwOSVersionInfoSize = sizeof suite;
    suite.wSuiteMask = 0x10;
    sim_VerifyVersionInfoA(&suite, VER_SUITENAME, sim_VerSetConditionMask(0, VER_SUITENAME, VER_AND));
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&suite));
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    MEMORYSTATUS memory{};
    GlobalMemoryStatus(&memory);
    GetOEMCP();
    GetKeyboardType(0);
    std::array<ULONG, 6> power{};
    sim_CallNtPowerInformation(static_cast<POWER_INFORMATION_LEVEL>(11), nullptr, 0, power.data(), 24);
    HANDLE token = nullptr;
    DWORD session = 0;
    DWORD size = 0;
    if (OpenProcessToken(OpenProcess(0, FALSE, GetCurrentProcessId()), TOKEN_QUERY, &token))
        GetTokenInformation(token, TokenSessionId, &session, 4, &size);
    GetLastError();
}

void readNames() {
    std::array<char, 64> buffer{};
    DWORD size = 64;
    GetUserNameA(buffer.data(), &size);
    size = 64;
    GetUserNameExA(NameSamCompatible, buffer.data(), &size);
    size = 64;
    GetComputerNameA(buffer.data(), &size);
    GetEnvironmentVariableA("A", buffer.data(), 64);
    KVGetEnv("A", buffer.data(), 64);
    char name[] = "KVOS";
    char value[] = "NT5";
    KVSetEnv(name, value);
    CString text;
    KVGetUserName(text);
    KVNDSWhoAmI("", text);
    KVGetDomainName(text);
    ZRTSWRPInit();
    ZRTSQueryClientName(buffer.data(), 64);
    ZRTSQueryIPAddress(buffer.data(), 64);
    ZRTSDomainName(buffer.data(), 64);
    ZRTSQuerySessionID();
    ZRTSWRPFree();
    char* client = nullptr;
    sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 10, &client, &size);
    GetPrivateProfileStringA("windows", "device", "", buffer.data(), 64, "kvcstat64.ini");
}

void readNetwork() {
    WSADATA data;
    WSAStartup(MAKEWORD(1, 1), &data);
    std::array<char, 256> buffer{};
    sim_gethostname(buffer.data(), 128);
    sim_gethostbyname("pc");
    sim_gethostbyaddr("\x0A\0\0\5", 4, 2);
    winsock::SocketAddressIPv4 address{};
    address.sin_family = 2;
    sim_getnameinfo(reinterpret_cast<winsock::SocketAddress*>(&address), 16, buffer.data(), 256, nullptr, 0, 8);
    alignas(ULONG) std::array<char, 8> physical{};
    ULONG length = 6;
    SendARP(sim_inet_addr("10.0.0.5"), 0, reinterpret_cast<PhysicalAddressPlace>(physical.data()), &length);
    BYTE* info = nullptr;
    if (sim_NetWkstaGetInfo(nullptr, 101, &info) == 0)
        sim_NetApiBufferFree(info);
    NCB block{};
    block.ncb_command = NCBENUM;
    block.ncb_buffer = reinterpret_cast<UCHAR*>(buffer.data());
    block.ncb_length = 256;
    Netbios(&block);
}

void readFilesAndDrives() {
    WIN32_FIND_DATAA data;
    const HANDLE find = FindFirstFileA("C:\\a.dll", &data);
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    _access("C:\\a.dll", 0);
    const DWORD size = GetFileVersionInfoSizeA("C:\\a.dll", nullptr);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
    if (void* memory = GlobalLock(block)) {
        void* value = nullptr;
        UINT length = 0;
        GetFileVersionInfoA("C:\\a.dll", 0, size, memory);
        VerQueryValueA(memory, "\\", &value, &length);
        GlobalUnlock(block);
    }
    GlobalFree(block);
    GetDriveTypeA("C:\\");
    std::array<char, 64> buffer{};
    GetVolumeInformationA("C:\\", buffer.data(), 64, nullptr, nullptr, nullptr, nullptr, 0);
    ULARGE_INTEGER total;
    sim_GetDiskFreeSpaceExA("C:\\", nullptr, &total, nullptr);
    DWORD numbers[4];
    GetDiskFreeSpaceA("C:\\", &numbers[0], &numbers[1], &numbers[2], &numbers[3]);
}

void useTextsAndLibraries() {
    std::array<char, 1024> buffer{};
    WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<LPCWSTR>(u"abc"), -1, buffer.data(), 64, nullptr, nullptr);
    wsprintfA(buffer.data(), "%d", 5);
    LoadStringA(nullptr, 16003, buffer.data(), 64);
    ZRTrace(2, "Component", "%d\n", 5);
    _strupr(buffer.data());
    auto* text = reinterpret_cast<unsigned char*>(buffer.data());
    _mbsupr(text);
    _mbslwr(text);
    _mbscmp(text, text);
    LocalFree(LocalAlloc(LPTR, 4));
    GetModuleHandleA("ntdll.dll");
    const HMODULE library = LoadLibraryA("KVVCD32.dll");
    GetProcAddress(library, "KVGetVCDVersion");
    sim_KVGetVCDVersion();
    GetProcAddress(GetModuleHandleA("kvenv64.dll"), reinterpret_cast<const char*>(std::uintptr_t{3}));
    if (library != nullptr)
        FreeLibrary(library);
}

// A run that makes every call at least once.
void runEverything() {
    readRegistry();
    readSystem();
    readNames();
    readNetwork();
    readFilesAndDrives();
    useTextsAndLibraries();
}

TEST(Machine, CountsCallsAndThoseThatCanFail) {
    Running running(described());
    GetVersion();
    GetKeyboardType(0);
    GetProcessHeap();
    EXPECT_EQ(running.machine.calls(), 2u);
    EXPECT_EQ(running.machine.faultableCalls(), 1u);
}

TEST(Machine, IsCurrentForItsScope) {
    Running outer(described());
    {
        Station other;
        other.codePages.oem = 850;
        const Running inner(other);
        EXPECT_EQ(GetOEMCP(), 850u);
    }
    EXPECT_EQ(GetOEMCP(), 437u);
    EXPECT_EQ(outer.machine.calls(), 1u);
}

TEST(Machine, FailsTheCallThatItIsToldToAndNoOther) {
    Running running(described());
    running.machine.failCall(2);
    EXPECT_EQ(GetKeyboardType(0), 4);
    EXPECT_EQ(GetVersion() & 0xFF, 5u);
    EXPECT_EQ(running.machine.failedCall(), "");
    EXPECT_EQ(GetKeyboardType(0), 0);
    EXPECT_EQ(running.machine.failedCall(), "GetKeyboardType");
    EXPECT_EQ(GetKeyboardType(0), 4);
}

// The answer of a call that fails as its first faultable one, and the error that it leaves.
struct FailureCase {
    const char* call;
    std::function<std::int64_t()> make;
    std::int64_t result;
    DWORD lastError;
};

TEST(Machine, FailsEachCallAsWindowsWould) {
    HKEY key = nullptr;
    DWORD size = 4;
    BYTE data[4] = {};
    std::array<char, 64> text = {'x'};
    WIN32_FIND_DATAA found;
    const auto pointer = [](auto* value) { return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(value)); };
    const FailureCase cases[] = {
        {"RegOpenKeyA", [&] { return RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE", &key); }, ERROR_ACCESS_DENIED, 0},
        {"RegQueryValueExA", [&] { return RegQueryValueExA(HKEY_LOCAL_MACHINE, "", nullptr, nullptr, nullptr, &size); },
         ERROR_ACCESS_DENIED, 0},
        {"RegQueryValueExA", [&] { return RegQueryValueExA(HKEY_LOCAL_MACHINE, "", nullptr, nullptr, data, &size); },
         ERROR_MORE_DATA, 0},
        {"LoadLibraryA", [&] { return pointer(LoadLibraryA("ws2_32.dll")); }, 0, ERROR_MOD_NOT_FOUND},
        {"GetProcAddress", [&] { return pointer(GetProcAddress(nullptr, "x")); }, 0, ERROR_PROC_NOT_FOUND},
        {"FindFirstFileA", [&] { return pointer(FindFirstFileA("C:\\a.dll", &found)); }, -1, ERROR_ACCESS_DENIED},
        {"OpenProcess", [&] { return pointer(OpenProcess(0, FALSE, 1234)); }, 0, ERROR_ACCESS_DENIED},
        {"GlobalAlloc", [&] { return pointer(GlobalAlloc(0, 1)); }, 0, ERROR_NOT_ENOUGH_MEMORY},
        {"GetComputerNameA", [&] { return GetComputerNameA(text.data(), &size); }, 0, ERROR_FILE_NOT_FOUND},
        {"gethostname", [&] { return sim_gethostname(text.data(), 64); }, -1, WSAENETDOWN},
        {"_access", [&] { return _access("C:\\a.dll", 0); }, -1, ERROR_ACCESS_DENIED},
        {"KVGetEnv", [&] { return KVGetEnv("A", text.data(), 64); }, 0, ERROR_ENVVAR_NOT_FOUND},
        {"WSAStartup", [&] { return WSAStartup(0x0101, nullptr); }, WSASYSNOTREADY, 0},
    };
    for (const FailureCase& one : cases) {
        Running running(described());
        running.machine.failCall(1);
        EXPECT_EQ(one.make(), one.result) << one.call;
        EXPECT_EQ(running.machine.lastError(), one.lastError) << one.call;
        EXPECT_EQ(running.machine.failedCall(), one.call);
        EXPECT_THAT(running.machine.openHandles(), IsEmpty()) << one.call;
    }
    EXPECT_EQ(size, 5u) << "a value that grew tells its new size";
    EXPECT_EQ(text[0], '\0') << "a variable that is not there empties the buffer";
}

TEST(Machine, FailsWithTheErrorThatTheStationStates) {
    Station station = described();
    station.fails = {{"GetComputerNameA", 1234}, {"RegOpenKeyA", 1011}};
    const Running running(station);
    std::array<char, 64> text{};
    DWORD size = 64;
    HKEY key = nullptr;
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(GetComputerNameA(text.data(), &size));
        EXPECT_EQ(GetLastError(), 1234u);
        EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE", &key), 1011);
    }
    EXPECT_TRUE(GetUserNameA(text.data(), &size));
}

TEST(Machine, LeavesNothingOpenBehindAFailureAnywhere) {
    std::uint64_t count = 0;
    {
        Running running(described());
        runEverything();
        count = running.machine.faultableCalls();
        EXPECT_THAT(running.machine.misuses(), IsEmpty());
    }
    ASSERT_GT(count, 50u);
    for (std::uint64_t n = 1; n <= count; ++n) {
        Running running(described());
        running.machine.failCall(n);
        runEverything();
        EXPECT_NE(running.machine.failedCall(), "");
        EXPECT_THAT(running.machine.misuses(), IsEmpty()) << running.machine.failedCall();
        EXPECT_THAT(running.machine.openHandles(HandleKind::RegistryKey), IsEmpty()) << running.machine.failedCall();
    }
}

TEST(Machine, TellsWhatIsOpenByItsKind) {
    Running running(described());
    HKEY key = nullptr;
    RegOpenKeyA(HKEY_LOCAL_MACHINE, "software\\product", &key);
    LoadLibraryA("powrprof.dll");
    OpenProcess(0, FALSE, 1234);
    const std::vector<OpenHandle> open = running.machine.openHandles();
    ASSERT_THAT(open, SizeIs(3));
    EXPECT_EQ(open[0].kind, HandleKind::RegistryKey);
    EXPECT_EQ(open[0].value, 0x10000004u);
    EXPECT_EQ(open[0].what, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Product");
    EXPECT_EQ(open[1].what, "powrprof.dll");
    EXPECT_EQ(open[2].value, 0x30000004u);
    EXPECT_EQ(open[2].what, "process 1234");
}

std::vector<std::string> logOf(const std::function<void()>& run) {
    Running running(described());
    running.machine.keepLog(true);
    run();
    std::vector<std::string> lines;
    for (const LoggedCall& call : running.machine.log())
        lines.push_back(call.name + "(" + call.arguments + ") = " + call.answer + (call.failedOnPurpose ? " !" : ""));
    return lines;
}

TEST(Log, TellsArgumentsAndAnswers) {
    EXPECT_THAT(logOf(readRegistry),
                testing::ElementsAre(
                    "RegOpenKeyA(HKEY_LOCAL_MACHINE 0xffffffff80000002, \"SOFTWARE\\\\Product\") = "
                    "0, HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004",
                    "RegOpenKeyExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004, \"Sub\", 0, 131097) = "
                    "0, HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008",
                    "RegEnumKeyA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004, 0, 16) = 0, \"Sub\"",
                    "RegEnumValueA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, 0, null) = 0, \"Name\", 4, 1",
                    "RegQueryValueExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, \"Name\", null) = 0, 1, 4",
                    "RegQueryValueExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, \"Name\", null) = "
                    "0, 1, \"abc\", 4",
                    "RegCloseKey(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008) = 0",
                    "RegCloseKey(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004) = 0"));
}

TEST(Log, TellsNoAnswerOfACallThatFailed) {
    EXPECT_THAT(logOf([] {
                    std::array<char, 4> buffer = {'x'};
                    DWORD size = 2;
                    GetComputerNameA(buffer.data(), &size);
                    LoadLibraryA("\x80.dll");
                    Machine::current().failCall(3);
                    GetUserNameA(buffer.data(), &size);
                }),
                testing::ElementsAre("GetComputerNameA() = 0", "LoadLibraryA(\"\xE2\x82\xAC.dll\") = null",
                                     "GetUserNameA() = 0 !"));
}

TEST(Log, HoldsEveryCallOfARun) {
    Running running(described());
    running.machine.keepLog(true);
    runEverything();
    EXPECT_EQ(running.machine.log().size(), running.machine.calls());
    for (const CallEntry& entry : callTable()) {
        const bool isHeap = entry.name == "HeapAlloc" || entry.name == "HeapFree" || entry.name == "GetProcessHeap";
        const bool isLogged = std::any_of(running.machine.log().begin(), running.machine.log().end(),
                                          [&](const LoggedCall& call) { return call.name == entry.name; });
        EXPECT_NE(isLogged, isHeap) << entry.name;
    }
}

TEST(Recording, MakesTheSameCallsWithTheSameAnswersAgain) {
    const auto station = std::make_shared<const Station>(described());
    Recording recording(station);
    std::vector<LoggedCall> first;
    {
        Machine machine(station);
        const Machine::Scope scope(machine);
        machine.record(&recording);
        machine.keepLog(true);
        runEverything();
        first = machine.log();
    }
    EXPECT_EQ(recording.size(), first.size());
    Machine machine(station);
    machine.keepLog(true);
    recording.replay(machine);
    EXPECT_THAT(machine.misuses(), IsEmpty());
    ASSERT_EQ(machine.log().size(), first.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(machine.log()[i].name, first[i].name);
        // Blocks lie at other addresses in every run, and formatted texts are handed on as they came out.
        if (first[i].answer.find("0x") == std::string::npos) {
            EXPECT_EQ(machine.log()[i].answer, first[i].answer) << first[i].name;
        }
    }
    EXPECT_THAT(machine.openHandles(HandleKind::RegistryKey), IsEmpty());
    EXPECT_THAT(machine.openHandles(HandleKind::Process), SizeIs(1));
}

TEST(Recording, CanBeReplayedAgainAndAgain) {
    const auto station = std::make_shared<const Station>(described());
    Recording recording(station);
    {
        Machine machine(station);
        const Machine::Scope scope(machine);
        machine.record(&recording);
        runEverything();
    }
    recording.replay();
    Machine machine(station);
    for (int i = 1; i <= 3; ++i) {
        recording.replay(machine);
        EXPECT_EQ(machine.calls(), recording.size() * static_cast<std::size_t>(i));
        EXPECT_THAT(machine.misuses(), IsEmpty());
        EXPECT_THAT(machine.openHandles(HandleKind::Token), SizeIs(i));
    }
}

}  // namespace
