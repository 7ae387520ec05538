#include "kvstation/experiments/Answer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "framework/Windows.h"
#include "framework/WindowsSockets.h"

#include <lm.h>
#include <nb30.h>

#include "kvstation/platform/VisibleText.h"
#include "kvstation/questions/CallStructure.h"
#include "simwin/machine/CallText.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::numberOf;
using simwin::ObservedCall;
using simwin::textOf;

// Where a call puts the text that it was asked for.
struct TextParameter {
    std::string_view call;
    std::size_t parameter;
};
constexpr TextParameter kTextParameters[] = {{"GetComputerNameA", 0},
                                             {"GetEnvironmentVariableA", 1},
                                             {"GetPrivateProfileStringA", 3},
                                             {"GetUserNameA", 0},
                                             {"GetUserNameExA", 1},
                                             {"KVGetDomainName", 0},
                                             {"KVGetEnv", 1},
                                             {"KVGetUserName", 0},
                                             {"KVNDSWhoAmI", 1},
                                             {"LoadStringA", 2},
                                             {"RegEnumKeyA", 2},
                                             {"RegEnumValueA", 2},
                                             {"WFQuerySessionInformationA", 3},
                                             {"ZRTSDomainName", 0},
                                             {"ZRTSQueryClientName", 0},
                                             {"ZRTSQueryIPAddress", 0},
                                             {"getnameinfo", 2},
                                             {"gethostname", 0}};

Answer text(std::string_view bytes) {
    return {{simwin::toUtf8(bytes)}, true};
}

Answer plainText(std::string words) {
    return {{std::move(words)}, false};
}

Answer bytes(std::string_view data) {
    std::string shown;
    simwin::appendBytes(shown, data);
    return plainText(shown.empty() ? "no bytes" : shown);
}

bool isPrintable(std::string_view data) {
    return !data.empty() && std::ranges::all_of(data, [](char byte) { return byte >= 0x20 && byte != 0x7F; });
}

// Binary data that is a text, of wide characters or of narrow ones, in the registry's way with NULs behind it.
std::optional<std::string> textIn(std::string_view data) {
    std::string narrow;
    if (data.size() >= 4 && data.size() % 2 == 0 && data[0] != '\0' && data[1] == '\0') {
        for (std::size_t i = 0; i < data.size(); i += 2)
            if (data[i + 1] != '\0')
                return std::nullopt;
            else
                narrow += data[i];
        data = narrow;
    }
    const std::string_view content = data.substr(0, data.find_last_not_of('\0') + 1);
    return isPrintable(content) ? std::optional(std::string(content)) : std::nullopt;
}

Answer list(std::string_view data) {
    Answer answer{{}, true};
    while (!data.empty() && data.front() != '\0') {
        const std::size_t end = std::min(data.find('\0'), data.size());
        answer.items.push_back(simwin::toUtf8(data.substr(0, end)));
        data.remove_prefix(std::min(end + 1, data.size()));
    }
    return answer;
}

Answer registryData(const ObservedCall& call) {
    const std::string_view data = textOf(call.parameters[4]);
    switch (numberOf(call.parameters[3])) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return text(data.substr(0, data.find('\0')));
        case REG_MULTI_SZ:
            return list(data);
        case REG_DWORD:
            if (data.size() == sizeof(std::uint32_t))
                return plainText(std::to_string(structureIn<std::uint32_t>(call, 4)));
            break;
        default:
            break;
    }
    const std::optional<std::string> found = textIn(data);
    return found ? text(*found) : bytes(data);
}

// Out of a version resource, whose fixed part begins with a signature.
std::string versionOf(const ObservedCall& call) {
    constexpr std::string_view kSignature("\xBD\x04\xEF\xFE", 4);
    const std::string_view block = textOf(call.parameters[3]);
    const std::size_t place = block.find(kSignature);
    VS_FIXEDFILEINFO info{};
    if (place == std::string_view::npos || block.size() - place < sizeof info)
        return "no version";
    block.copy(reinterpret_cast<char*>(&info), sizeof info, place);
    return std::to_string(HIWORD(info.dwFileVersionMS)) + "." + std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info.dwFileVersionLS)) + "." + std::to_string(LOWORD(info.dwFileVersionLS));
}

std::string windowsVersion(const ObservedCall& call) {
    const auto info = structureIn<OSVERSIONINFOA>(call, 0);
    const std::string_view pack(info.szCSDVersion, strnlen(info.szCSDVersion, sizeof info.szCSDVersion));
    return "platform " + std::to_string(info.dwPlatformId) + ", version " + std::to_string(info.dwMajorVersion) + "." +
           std::to_string(info.dwMinorVersion) + ", build " + std::to_string(info.dwBuildNumber) +
           (pack.empty() ? "" : ", \"" + simwin::toUtf8(pack) + "\"");
}

std::string systemInfo(const ObservedCall& call) {
    const auto info = structureIn<SYSTEM_INFO>(call, 0);
    return "architecture " + std::to_string(info.wProcessorArchitecture) + ", processors " +
           std::to_string(info.dwNumberOfProcessors) + ", type " + std::to_string(info.dwProcessorType) + ", level " +
           std::to_string(info.wProcessorLevel) + ", revision " + std::to_string(info.wProcessorRevision);
}

std::string memoryStatus(const ObservedCall& call) {
    const auto status = structureIn<MEMORYSTATUS>(call, 0);
    return "physical " + std::to_string(status.dwTotalPhys) + ", virtual " + std::to_string(status.dwTotalVirtual);
}

std::string session(const ObservedCall& call) {
    return std::to_string(structureIn<std::uint32_t>(call, 2));
}

// The third number of a processor's record.
std::string clock(const ObservedCall& call) {
    return std::to_string(structureIn<std::array<std::uint32_t, 6>>(call, 3)[2]) + " MHz";
}

std::string physicalAddressText(const ObservedCall& call) {
    std::string address;
    simwin::appendBytes(address, textOf(call.parameters[2]));
    std::ranges::replace(address, ' ', '-');
    return address;
}

std::string driveType(const ObservedCall& call) {
    constexpr std::string_view kinds[] = {"unknown", "no drive", "removable", "fixed", "remote", "CD-ROM", "RAM disk"};
    const std::uint64_t type = numberOf(call.result);
    return type < std::size(kinds) ? std::string(kinds[type]) : std::to_string(type);
}

std::string volume(const ObservedCall& call) {
    return "\"" + simwin::toUtf8(textOf(call.parameters[1])) + "\", " + simwin::toUtf8(textOf(call.parameters[6]));
}

std::string space(const ObservedCall& call) {
    return std::to_string(numberOf(call.parameters[2])) + " bytes, " + std::to_string(numberOf(call.parameters[1])) +
           " free";
}

// The answer as the log tells it, without the result in front.
std::string behindResult(const ObservedCall& call) {
    const std::size_t comma = call.answer.find(", ");
    return comma != std::string::npos ? call.answer.substr(comma + 2) : call.answer;
}

std::string asLogged(const ObservedCall& call) {
    return call.answer;
}

struct InWords {
    std::string_view call;
    std::string (*words)(const ObservedCall& call);
};
constexpr InWords kInWords[] = {
    {"CallNtPowerInformation", clock},  {"GetDiskFreeSpaceExA", space},    {"GetDriveTypeA", driveType},
    {"GetFileVersionInfoA", versionOf}, {"GetSystemInfo", systemInfo},     {"GetTokenInformation", session},
    {"GetVersionExA", windowsVersion},  {"GetVolumeInformationA", volume}, {"GlobalMemoryStatus", memoryStatus},
    {"NetWkstaGetInfo", behindResult},  {"Netbios", behindResult},         {"SendARP", physicalAddressText},
    {"gethostbyaddr", asLogged},        {"gethostbyname", asLogged}};

// Their result is a number that was asked for.
constexpr std::string_view kNumbers[] = {"GetCurrentProcessId", "GetKeyboardType", "GetOEMCP",
                                         "GetVersion",          "KVGetVCDVersion", "ZRTSQuerySessionID"};

struct NamedError {
    std::uint32_t code;
    std::string_view name;
};
#define KV_ERROR(name) \
    { static_cast<std::uint32_t>(name), #name }
constexpr NamedError kErrors[] = {
    KV_ERROR(ERROR_FILE_NOT_FOUND),
    KV_ERROR(ERROR_PATH_NOT_FOUND),
    KV_ERROR(ERROR_ACCESS_DENIED),
    KV_ERROR(ERROR_INVALID_HANDLE),
    KV_ERROR(ERROR_NOT_ENOUGH_MEMORY),
    KV_ERROR(ERROR_INVALID_DATA),
    KV_ERROR(ERROR_NO_MORE_FILES),
    KV_ERROR(ERROR_NOT_READY),
    KV_ERROR(ERROR_GEN_FAILURE),
    KV_ERROR(ERROR_NOT_SUPPORTED),
    KV_ERROR(ERROR_BAD_NET_NAME),
    KV_ERROR(ERROR_INVALID_PARAMETER),
    KV_ERROR(ERROR_BUFFER_OVERFLOW),
    KV_ERROR(ERROR_CALL_NOT_IMPLEMENTED),
    KV_ERROR(ERROR_INSUFFICIENT_BUFFER),
    KV_ERROR(ERROR_INVALID_NAME),
    KV_ERROR(ERROR_MOD_NOT_FOUND),
    KV_ERROR(ERROR_PROC_NOT_FOUND),
    KV_ERROR(ERROR_BAD_PATHNAME),
    KV_ERROR(ERROR_ENVVAR_NOT_FOUND),
    KV_ERROR(ERROR_MORE_DATA),
    KV_ERROR(ERROR_NO_MORE_ITEMS),
    KV_ERROR(ERROR_DIRECTORY),
    KV_ERROR(ERROR_NO_TOKEN),
    KV_ERROR(ERROR_OLD_WIN_VERSION),
    KV_ERROR(ERROR_NOT_LOGGED_ON),
    KV_ERROR(ERROR_NONE_MAPPED),
    KV_ERROR(ERROR_NO_SUCH_DOMAIN),
    KV_ERROR(ERROR_RESOURCE_TYPE_NOT_FOUND),
    KV_ERROR(ERROR_RESOURCE_DATA_NOT_FOUND),
    KV_ERROR(ERROR_NOT_FOUND),
    KV_ERROR(NERR_WkstaNotStarted),
    KV_ERROR(WSAEFAULT),
    KV_ERROR(WSAEAFNOSUPPORT),
    KV_ERROR(WSAENETDOWN),
    KV_ERROR(WSASYSNOTREADY),
    KV_ERROR(WSANOTINITIALISED),
    KV_ERROR(WSAHOST_NOT_FOUND),
    KV_ERROR(WSATRY_AGAIN),
    KV_ERROR(WSANO_RECOVERY),
    KV_ERROR(WSANO_DATA),
    {0xC0000022, "STATUS_ACCESS_DENIED"},
    {0xC0000023, "STATUS_BUFFER_TOO_SMALL"},
    {0xC0000002, "STATUS_NOT_IMPLEMENTED"},
    {0xC000000D, "STATUS_INVALID_PARAMETER"},
    {0xC00000BB, "STATUS_NOT_SUPPORTED"},
};
// NetBIOS counts its own.
constexpr NamedError kNetbiosErrors[] = {KV_ERROR(NRC_BUFLEN),     KV_ERROR(NRC_ILLCMD), KV_ERROR(NRC_INCOMP),
                                         KV_ERROR(NRC_INVADDRESS), KV_ERROR(NRC_BRIDGE), KV_ERROR(NRC_ENVNOTDEF),
                                         KV_ERROR(NRC_SYSTEM)};
#undef KV_ERROR

template <class Errors>
std::string nameIn(const Errors& errors, std::uint32_t code) {
    const auto* found = std::ranges::find(errors, code, &NamedError::code);
    return found != std::end(errors) ? std::string(found->name) : std::string();
}

}  // namespace

Answer answerOf(const ObservedCall& call) {
    if (call.name == "RegQueryValueExA")
        return call.parameters[4].index() != 0 ? registryData(call) : Answer{};
    if (const auto* found = std::ranges::find(kInWords, call.name, &InWords::call); found != std::end(kInWords))
        return plainText(found->words(call));
    if (const auto* found = std::ranges::find(kTextParameters, call.name, &TextParameter::call);
        found != std::end(kTextParameters))
        return call.parameters[found->parameter].index() != 0 ? text(textOf(call.parameters[found->parameter]))
                                                              : Answer{};
    if (std::ranges::find(kNumbers, call.name) != std::end(kNumbers))
        return plainText(std::to_string(static_cast<std::int64_t>(numberOf(call.result))));
    return {};
}

std::string shown(const Answer& answer) {
    std::string line;
    for (const std::string& item : answer.items)
        line += (line.empty() ? "" : ", ") + (answer.isText ? "\"" + visible(item) + "\"" : visible(item));
    return line.empty() ? answer.isText ? "an empty list" : "there" : line;
}

std::optional<CallError> errorOf(const ObservedCall& call) {
    if (call.succeeded || call.error == 0)
        return std::nullopt;
    return CallError{call.error,
                     call.name == "Netbios" ? nameIn(kNetbiosErrors, call.error) : nameIn(kErrors, call.error)};
}

std::string shown(const CallError& error) {
    return std::to_string(error.code) + (error.name.empty() ? "" : " " + error.name);
}

}  // namespace kvstation
