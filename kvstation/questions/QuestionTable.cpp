#include "kvstation/questions/QuestionTable.h"

#include <algorithm>
#include <unordered_map>

#include "simwin/station/RegistryTree.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::numberOf;
using simwin::ObservedCall;
using simwin::textOf;

std::string utf8(const ObservedCall& call, std::size_t parameter) {
    return simwin::toUtf8(textOf(call.parameters[parameter]));
}

template <const char*... Names>
Place member(const ObservedCall&) {
    return memberPlace({Names...});
}

// Of a call for whose failure the file has nothing but the list of calls that fail.
Place failure(const ObservedCall& call) {
    return memberPlace({"fails", call.name});
}

Place openedKey(const ObservedCall& call) {
    if (call.subject.empty())
        return {};
    return {.kind = Place::Kind::Key, .key = simwin::withClassesInPlace(simwin::openedKey(call))};
}

Place registryValue(const ObservedCall& call) {
    if (call.subject.empty())
        return {};
    return {.kind = Place::Kind::Value,
            .key = simwin::withClassesInPlace(call.subject),
            .value = std::string(textOf(call.parameters[1]))};
}

Place listedKey(const ObservedCall& call) {
    if (call.subject.empty())
        return {};
    if (!call.succeeded)
        return {.kind = Place::Kind::EndOfKeys, .key = simwin::withClassesInPlace(call.subject)};
    return {.kind = Place::Kind::Key,
            .key = simwin::withClassesInPlace(call.subject) + "\\" + std::string(textOf(call.parameters[2])),
            .isListed = true};
}

Place listedValue(const ObservedCall& call) {
    if (call.subject.empty())
        return {};
    if (!call.succeeded)
        return {.kind = Place::Kind::EndOfValues, .key = simwin::withClassesInPlace(call.subject)};
    return {.kind = Place::Kind::Value,
            .key = simwin::withClassesInPlace(call.subject),
            .value = std::string(textOf(call.parameters[2])),
            .isListed = true};
}

Place variable(const ObservedCall& call) {
    const std::string name = utf8(call, 0);
    return name.empty() ? Place{} : memberPlace({"environment", name});
}

Place drive(const ObservedCall& call) {
    const std::string root = utf8(call, 0);
    return root.empty() ? Place{} : memberPlace({"drives", std::string(1, simwin::upperAscii(root.front()))});
}

// The file describes what is on drives alone.
Place file(const ObservedCall& call) {
    const std::string path = utf8(call, 0);
    const bool isFull = path.size() > 3 && path[1] == ':' && path[2] == '\\';
    return isFull ? memberPlace({"files", path}) : Place{};
}

// Windows 9x has no tokens.
Place token(const ObservedCall& call) {
    constexpr std::uint32_t kNotImplemented = 120;
    return !call.succeeded && call.error == kNotImplemented ? memberPlace({"version"}) : failure(call);
}

Place library(const ObservedCall& call) {
    const std::string name = utf8(call, 0);
    if (simwin::equalNoCase(name, "wfapi64.dll"))
        return memberPlace({"citrix"});
    if (simwin::equalNoCase(name, "KVVCD32.dll"))
        return memberPlace({"vcdVersion"});
    return {.kind = Place::Kind::Item, .member = {"missing"}, .value = name};
}

Place function(const ObservedCall& call) {
    if (call.subject.empty())
        return {};
    return {.kind = Place::Kind::Item, .member = {"missing"}, .value = call.subject + "!" + utf8(call, 1)};
}

Place nameFormat(const ObservedCall& call) {
    switch (numberOf(call.parameters[0])) {
        case 2:
            return memberPlace({"user", "samCompatible"});
        case 3:
            return memberPlace({"user", "displayName"});
        case 8:
            return memberPlace({"user", "principal"});
        default:
            return {};
    }
}

Place keyboard(const ObservedCall& call) {
    return memberPlace({"keyboard", numberOf(call.parameters[0]) == 0 ? "type" : "subType"});
}

Place profileEntry(const ObservedCall& call) {
    return memberPlace({"profile", utf8(call, 0), utf8(call, 1)});
}

Place physicalAddress(const ObservedCall& call) {
    const auto address = static_cast<std::uint32_t>(numberOf(call.parameters[0]));
    return memberPlace({"network", "arp", simwin::dotted({reinterpret_cast<const char*>(&address), sizeof address})});
}

Place hostByName(const ObservedCall& call) {
    return memberPlace({"network", "hosts", utf8(call, 0)});
}

Place nameOfAddress(std::string_view address) {
    return address.size() == 4 ? memberPlace({"network", "addresses", simwin::dotted(address)}) : Place{};
}
Place hostByAddress(const ObservedCall& call) {
    return nameOfAddress(textOf(call.parameters[0]));
}
Place nameOfSocketAddress(const ObservedCall& call) {
    constexpr std::size_t kAddress = 4;  // behind family and port
    const std::string_view whole = textOf(call.parameters[0]);
    return whole.size() >= kAddress + 4 ? nameOfAddress(whole.substr(kAddress, 4)) : Place{};
}

constexpr char kCitrix[] = "citrix";
constexpr char kClientAddress[] = "clientAddress";
constexpr char kClientName[] = "clientName";
constexpr char kCodePages[] = "codePages";
constexpr char kComputerName[] = "computerName";
constexpr char kCurrentMhz[] = "currentMhz";
constexpr char kDirectory[] = "directory";
constexpr char kDomain[] = "domain";
constexpr char kHostName[] = "hostName";
constexpr char kId[] = "id";
constexpr char kLanGroup[] = "lanGroup";
constexpr char kMemory[] = "memory";
constexpr char kName[] = "name";
constexpr char kNetbios[] = "netbios";
constexpr char kNetwork[] = "network";
constexpr char kOem[] = "oem";
constexpr char kProcess[] = "process";
constexpr char kProcessors[] = "processors";
constexpr char kSession[] = "session";
constexpr char kSessionId[] = "sessionId";
constexpr char kTerminalServices[] = "terminalServices";
constexpr char kUser[] = "user";
constexpr char kVcdVersion[] = "vcdVersion";
constexpr char kVersion[] = "version";

constexpr std::string_view kName15 = R"(["ANOTHER7"])";
constexpr std::string_view kText = R"(["Another7"])";
constexpr std::string_view kCompanionText = R"(["ANOTHER7", {"text": "ANOTHER7", "result": 0}])";
constexpr std::string_view kCompanionAddress = R"(["198.51.100.23", {"text": "198.51.100.23", "result": 0}])";

// One of each Windows that there has been.
constexpr std::string_view kVersions = R"([
  {"platformId": 0, "major": 3, "minor": 10, "build": 103},
  {"platformId": 1, "major": 4, "minor": 0, "build": 950},
  {"platformId": 1, "major": 4, "minor": 10, "build": 2222, "servicePack": " A "},
  {"platformId": 1, "major": 4, "minor": 90, "build": 3000},
  {"platformId": 2, "major": 3, "minor": 51, "build": 1057},
  {"platformId": 2, "major": 4, "minor": 0, "build": 1381, "servicePack": "Service Pack 6"},
  {"platformId": 2, "major": 5, "minor": 0, "build": 2195},
  {"platformId": 2, "major": 5, "minor": 1, "build": 2600, "terminalServices": true},
  {"platformId": 2, "major": 5, "minor": 2, "build": 3790, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 0, "build": 6002, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 1, "build": 7601, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 2, "build": 9200, "terminalServices": true},
  {"platformId": 2, "major": 6, "minor": 3, "build": 9600, "terminalServices": true},
  {"platformId": 2, "major": 10, "minor": 0, "build": 22631, "terminalServices": true}])";

// One of each architecture.
constexpr std::string_view kSystems = R"([
  {"architecture": 0, "count": 1, "type": 386, "level": 3, "revision": 1},
  {"architecture": 0, "count": 1, "type": 486, "level": 4, "revision": 1025},
  {"architecture": 0, "count": 1, "type": 586, "level": 5, "revision": 1025},
  {"architecture": 0, "count": 2, "type": 586, "level": 15, "revision": 1025},
  {"architecture": 1, "count": 1, "type": 4000, "level": 4, "revision": 1},
  {"architecture": 2, "count": 1, "type": 21064, "level": 21064, "revision": 1},
  {"architecture": 3, "count": 1, "type": 604, "level": 4, "revision": 1},
  {"architecture": 6, "count": 1, "type": 2200, "level": 31, "revision": 1},
  {"architecture": 9, "count": 4, "type": 8664, "level": 6, "revision": 1}])";

constexpr std::string_view kDrives = R"([
  {"type": "removable"}, {"type": "cdrom"}, {"type": "remote"}, {"type": "ramdisk"},
  {"type": "fixed", "label": "ANOTHER7", "fileSystem": "FAT", "total": 1073741824, "free": 536870912}])";

constexpr CallRow kRows[] = {
    {"RegOpenKeyA", "the registry key", openedKey},
    {"RegOpenKeyExA", "the registry key", openedKey},
    {"RegQueryValueExA", "the registry value", registryValue},
    {"RegEnumKeyA", "a sub-key of the registry key", listedKey},
    {"RegEnumValueA", "a value of the registry key", listedValue},
    {"OpenProcess", "the own process", member<kProcess>, R"([{"id": 77, "sessionId": 7}])"},
    {"OpenProcessToken", "the process's token", token, "[5]"},
    {"GetTokenInformation", "the number of the process's session", member<kProcess, kSessionId>, "[0, 1, 7]"},
    {"GetCurrentProcessId", "the process's number", member<kProcess, kId>},
    {"GetUserNameA", "the Windows account", member<kUser, kName>, kName15},
    {"GetUserNameExA", "the user's name in a format of the directory", nameFormat, R"(["ANOTHER7\\another7"])"},
    {"GetVersion", "the version of Windows", member<kVersion>, kVersions},
    {"GetVersionExA", "the version of Windows", member<kVersion>, kVersions},
    {"VerifyVersionInfoA", "whether Terminal Services are installed", member<kVersion, kTerminalServices>,
     "[true, false]"},
    {"GetModuleHandleA", "whether the library is loaded", library, R"([{"clientName": "ANOTHER7"}, 7])"},
    {"LoadLibraryA", "whether the library is there", library, R"([{"clientName": "ANOTHER7"}, 7])"},
    {"GetProcAddress", "whether the library has the function", function},
    {"GetComputerNameA", "the computer's name", member<kComputerName>, kName15},
    {"GetEnvironmentVariableA", "the environment variable", variable, kText},
    {"KVGetEnv", "the environment variable", variable, kText},
    {"FindFirstFileA", "whether the file is there", file, R"([{}])"},
    {"_access", "whether the file is there", file, R"([{}])"},
    {"GetFileVersionInfoSizeA", "whether the file tells a version", file, R"([{"version": "7.8.9.1"}])"},
    {"GetFileVersionInfoA", "the file's version", file, R"([{"version": "7.8.9.1"}])"},
    {"GetSystemInfo", "the processors", member<kProcessors>, kSystems},
    {"CallNtPowerInformation", "the processors' clocks", member<kProcessors, kCurrentMhz>, "[[0], [777], [777, 777]]"},
    {"GlobalMemoryStatus", "the memory", member<kMemory>,
     R"([{"physical": 67108864, "virtual": 2147352576}, {"physical": 1073741824, "virtual": 2147352576}])"},
    {"GetOEMCP", "the OEM code page", member<kCodePages, kOem>, "[437, 850, 932]"},
    {"GetDriveTypeA", "the kind of the drive", drive, kDrives},
    {"GetVolumeInformationA", "the drive's label and file system", drive, kDrives},
    {"GetDiskFreeSpaceExA", "the drive's size and free space", drive, kDrives},
    {"GetDiskFreeSpaceA", "the drive's size and free space", drive, kDrives},
    {"GetPrivateProfileStringA", "the entry of the product's ini file", profileEntry, kText},
    {"GetKeyboardType", "the keyboard's type", keyboard, "[0, 1, 2, 3, 4, 5, 6, 7, 8]"},
    {"Netbios", "the NetBIOS adapters and their addresses", member<kNetwork, kNetbios>,
     R"([[{"lana": 0, "address": "02-07-01-AB-CD-EF"}], [{"lana": 0}], []])"},
    {"SendARP", "the MAC address that answers ARP for the address", physicalAddress, R"(["02-07-01-AB-CD-EF"])"},
    {"gethostname", "the host's name", member<kNetwork, kHostName>, R"(["another7"])"},
    {"gethostbyname", "the addresses of the host's name", hostByName,
     R"([{"addresses": ["198.51.100.23"]}, {"name": "another7.example", "addresses": ["198.51.100.23", "203.0.113.7"]}])"},
    {"gethostbyaddr", "the name of the address", hostByAddress, R"(["another7.example"])"},
    {"getnameinfo", "the name of the address", nameOfSocketAddress, R"(["another7.example"])"},
    {"NetWkstaGetInfo", "the computer's workgroup or domain", member<kNetwork, kLanGroup>, kName15},
    {"KVGetDomainName", "the user's domain", member<kNetwork, kDomain>, kName15},
    {"KVGetUserName", "the network account", member<kUser, kNetwork>, kName15},
    {"KVNDSWhoAmI", "the directory's name of the user", member<kUser, kDirectory>, kName15},
    {"ZRTSQueryClientName", "the session's client", member<kSession, kClientName>, kCompanionText},
    {"ZRTSQueryIPAddress", "the address of the session's client", member<kSession, kClientAddress>, kCompanionAddress},
    {"ZRTSQuerySessionID", "the session's number", member<kSession, kId>, "[0, 1, 2, 7]"},
    {"ZRTSDomainName", "the session's domain", member<kSession, kDomain>, kCompanionText},
    {"WFQuerySessionInformationA", "the Citrix session's client", member<kCitrix, kClientName>, kCompanionText},
    {"KVGetVCDVersion", "the version of the VCD module", member<kVcdVersion>, "[7, 70]"},
};

}  // namespace

std::span<const CallRow> callRows() {
    return kRows;
}

const CallRow* findCallRow(std::string_view call) {
    const auto* found = std::ranges::find(kRows, call, &CallRow::call);
    return found != std::end(kRows) ? found : nullptr;
}

bool isQuestion(const char* call) {
    static std::unordered_map<const char*, bool> known;
    const auto [place, isNew] = known.try_emplace(call);
    if (isNew)
        place->second = findCallRow(call) != nullptr;
    return place->second;
}

}  // namespace kvstation
