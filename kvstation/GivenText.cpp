#include "kvstation/GivenText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "framework/Windows.h"
#include "simwin/CallText.h"

namespace kvstation {
namespace {

struct GivenText {
    std::string_view call;
    std::size_t parameter;
};

// Where a call puts what it was asked for.
constexpr GivenText kGivenTexts[] = {{"GetComputerNameA", 0},
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
                                     {"SendARP", 2},
                                     {"WFQuerySessionInformationA", 3},
                                     {"ZRTSDomainName", 0},
                                     {"ZRTSQueryClientName", 0},
                                     {"ZRTSQueryIPAddress", 0},
                                     {"getnameinfo", 2},
                                     {"gethostname", 0}};

std::string quoted(std::string_view bytes) {
    std::string text;
    simwin::appendQuoted(text, bytes);
    return text;
}

std::string bytesText(std::string_view bytes) {
    std::string text;
    simwin::appendBytes(text, bytes);
    return text;
}

std::string registryText(const simwin::ObservedCall& call) {
    const std::string_view bytes = simwin::textOf(call.parameters[4]);
    switch (simwin::numberOf(call.parameters[3])) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return quoted(bytes.substr(0, bytes.find('\0')));
        case REG_DWORD: {
            std::uint32_t number = 0;
            bytes.copy(reinterpret_cast<char*>(&number), sizeof number);
            return std::to_string(number);
        }
        default:
            return bytesText(bytes);
    }
}

std::string versionText(std::string_view bytes) {
    VS_FIXEDFILEINFO info{};
    bytes.copy(reinterpret_cast<char*>(&info), sizeof info);
    return std::to_string(HIWORD(info.dwFileVersionMS)) + "." + std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info.dwFileVersionLS)) + "." + std::to_string(LOWORD(info.dwFileVersionLS));
}

template <class Type>
Type structure(const simwin::ObservedCall& call, std::size_t parameter) {
    Type whole{};
    simwin::textOf(call.parameters[parameter]).copy(reinterpret_cast<char*>(&whole), sizeof whole);
    return whole;
}

std::string windowsVersion(const simwin::ObservedCall& call) {
    const auto info = structure<OSVERSIONINFOA>(call, 0);
    const std::size_t length = strnlen(info.szCSDVersion, sizeof info.szCSDVersion);
    return "platform " + std::to_string(info.dwPlatformId) + ", version " + std::to_string(info.dwMajorVersion) + "." +
           std::to_string(info.dwMinorVersion) + ", build " + std::to_string(info.dwBuildNumber) +
           (length != 0 ? ", " + quoted({info.szCSDVersion, length}) : "");
}

std::string systemInfo(const simwin::ObservedCall& call) {
    const auto info = structure<SYSTEM_INFO>(call, 0);
    return "architecture " + std::to_string(info.wProcessorArchitecture) + ", processors " +
           std::to_string(info.dwNumberOfProcessors) + ", type " + std::to_string(info.dwProcessorType) + ", level " +
           std::to_string(info.wProcessorLevel) + ", revision " + std::to_string(info.wProcessorRevision);
}

std::string memoryStatus(const simwin::ObservedCall& call) {
    const auto status = structure<MEMORYSTATUS>(call, 0);
    return "physical " + std::to_string(status.dwTotalPhys) + ", virtual " + std::to_string(status.dwTotalVirtual);
}

std::string session(const simwin::ObservedCall& call) {
    return std::to_string(structure<std::uint32_t>(call, 2));
}

// The third number of a processor's record.
std::string clock(const simwin::ObservedCall& call) {
    return std::to_string(structure<std::array<std::uint32_t, 6>>(call, 3)[2]) + " MHz";
}

struct GivenStructure {
    std::string_view call;
    std::string (*text)(const simwin::ObservedCall& call);
};

constexpr GivenStructure kGivenStructures[] = {{"CallNtPowerInformation", clock},
                                               {"GetSystemInfo", systemInfo},
                                               {"GetTokenInformation", session},
                                               {"GetVersionExA", windowsVersion},
                                               {"GlobalMemoryStatus", memoryStatus}};

}  // namespace

std::string givenBy(const simwin::ObservedCall& call) {
    if (call.name == "RegQueryValueExA")
        return registryText(call);
    if (call.name == "VerQueryValueA")
        return versionText(simwin::textOf(call.parameters[2]));
    if (isStructure(call))
        return std::ranges::find(kGivenStructures, call.name, &GivenStructure::call)->text(call);
    const auto* found = std::ranges::find(kGivenTexts, call.name, &GivenText::call);
    if (found == std::end(kGivenTexts))
        return call.answer;
    const std::string_view text = simwin::textOf(call.parameters[found->parameter]);
    return call.name == "SendARP" ? bytesText(text) : quoted(text);
}

bool isStructure(const simwin::ObservedCall& call) {
    return std::ranges::find(kGivenStructures, call.name, &GivenStructure::call) != std::end(kGivenStructures);
}

}  // namespace kvstation
