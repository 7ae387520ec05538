#include "tests/simwin/EveryCall.h"

#include <array>

#include "framework/String.h"
#include "simwin/calls/Calls.h"

namespace simwin {

using namespace std::string_literals;

Station describedForEveryCall() {
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
    station.drives['C'] = {DRIVE_FIXED, "SYSTEM", "NTFS", 1, 4096, 4096, {}, {}};
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

void makeRegistryCalls() {
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

namespace {

void makeSystemCalls() {
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

void makeNameCalls() {
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

void makeNetworkCalls() {
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

void makeFileAndDriveCalls() {
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

void makeTextAndLibraryCalls() {
    std::array<char, 1024> buffer{};
    WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<LPCWSTR>(u"abc"), -1, buffer.data(), 64, nullptr, nullptr);
    wsprintfA(buffer.data(), "%d", 5);
    LoadStringA(nullptr, 16003, buffer.data(), 64);
    ZRTrace(2, "Component", "%d\n", 5);
    _strupr(buffer.data());
    auto* text = reinterpret_cast<unsigned char*>(buffer.data());
    _mbsupr(text);
    _mbslwr(text);
    // cppcheck-suppress stringCompare ; only the call counts
    _mbscmp(text, text);
    _mbschr(text, 'a');
    _mbsrchr(text, 'a');
    _mbsstr(text, text);
    LocalFree(LocalAlloc(LPTR, 4));
    GetModuleHandleA("ntdll.dll");
    const HMODULE library = LoadLibraryA("KVVCD32.dll");
    sim_KVGetVCDVersion();
    if (const HMODULE environment = GetModuleHandleA("kvenv64.dll"))
        GetProcAddress(environment, reinterpret_cast<const char*>(std::uintptr_t{3}));
    if (library != nullptr) {
        GetProcAddress(library, "KVGetVCDVersion");
        FreeLibrary(library);
    }
}

}  // namespace

void makeEveryCall() {
    makeRegistryCalls();
    makeSystemCalls();
    makeNameCalls();
    makeNetworkCalls();
    makeFileAndDriveCalls();
    makeTextAndLibraryCalls();
}

}  // namespace simwin
