#include "kvstation/capture/StationCapture.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "framework/Windows.h"
#include "framework/WindowsSockets.h"

#include <lm.h>
#include <nb30.h>

#include "simwin/machine/HostAnswer.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::numberOf;
using simwin::ObservedCall;
using simwin::Station;
using simwin::textOf;

constexpr std::uint32_t kBufferTooSmall = 0xC0000023;
constexpr std::size_t kLongestStandIn = 4096;

std::string text(const ObservedCall& call, std::size_t parameter) {
    return std::string(textOf(call.parameters[parameter]));
}

std::uint64_t number(const ObservedCall& call, std::size_t parameter) {
    return numberOf(call.parameters[parameter]);
}

template <class Type>
Type structure(const ObservedCall& call, std::size_t parameter) {
    Type whole{};
    textOf(call.parameters[parameter]).copy(reinterpret_cast<char*>(&whole), sizeof whole);
    return whole;
}

template <class Pointer>
Pointer pointer(std::uint64_t value) {
    return reinterpret_cast<Pointer>(static_cast<std::uintptr_t>(value));
}

// In place of a text of which nothing but the room that it needs was told.
std::string standIn(std::uint64_t room) {
    return std::string(std::min<std::size_t>(room > 0 ? room - 1 : 0, kLongestStandIn), 'x');
}

std::string dottedOf(std::uint64_t address) {
    const auto bytes = static_cast<std::uint32_t>(address);
    return simwin::dotted({reinterpret_cast<const char*>(&bytes), sizeof bytes});
}

bool isFullPath(std::string_view path) {
    return path.size() > 3 && path[1] == ':' && path[2] == '\\' && !simwin::endsWithCharacter(path, '\\');
}

simwin::File& fileOf(Station& station, const std::string& path) {
    for (simwin::File& file : station.files)
        if (simwin::equalNoCase(file.path, path))
            return file;
    return station.files.emplace_back(simwin::File{.path = path, .version = {}, .resource = {}});
}

simwin::Drive* driveOf(Station& station, const ObservedCall& call) {
    const std::string root = text(call, 0);
    return root.empty() ? nullptr : &station.drives[simwin::upperAscii(root[0])];
}

simwin::Process& processOf(Station& station) {
    return station.process ? *station.process : station.process.emplace();
}

void addReverse(Station& station, const std::string& address, const std::string& name) {
    auto& entries = station.network.addresses;
    if (name != address && std::ranges::find(entries, address, &simwin::ReverseEntry::address) == entries.end())
        entries.push_back({address, name});
}

}  // namespace

// What each call tells of the station.
struct CaptureTaker {
    std::string_view call;
    void (*take)(StationCapture& capture, const ObservedCall& call);

    static const CaptureTaker* find(std::string_view name);

    static void version(StationCapture& capture, const ObservedCall& call) {
        if (!call.succeeded)
            return;
        const auto info = structure<OSVERSIONINFOA>(call, 0);
        simwin::WindowsVersion& version =
            capture.m_station.version ? *capture.m_station.version : capture.m_station.version.emplace();
        const bool is9x = info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS;
        version.platformId = info.dwPlatformId;
        version.major = info.dwMajorVersion;
        version.minor = info.dwMinorVersion;
        version.build = is9x ? info.dwBuildNumber & 0xFFFF : info.dwBuildNumber;
        version.servicePack.assign(info.szCSDVersion, strnlen(info.szCSDVersion, sizeof info.szCSDVersion));
    }
    static void suites(StationCapture& capture, const ObservedCall& call) {
        if (capture.m_station.version)
            capture.m_station.version->terminalServices = call.succeeded;
    }
    static void keyboard(StationCapture& capture, const ObservedCall& call) {
        simwin::Keyboard& keyboard =
            capture.m_station.keyboard ? *capture.m_station.keyboard : capture.m_station.keyboard.emplace();
        (number(call, 0) == 0 ? keyboard.type : keyboard.subType) = static_cast<int>(numberOf(call.result));
    }
    static void computerName(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            capture.m_station.computerName = text(call, 0);
        else if (call.error == ERROR_BUFFER_OVERFLOW)
            capture.m_station.computerName = standIn(number(call, 1));
    }
    static void userName(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            capture.m_station.user.name = text(call, 0);
    }
    // Asked for its size alone a name is told too: by its length.
    static void userNameEx(StationCapture& capture, const ObservedCall& call) {
        simwin::User& user = capture.m_station.user;
        simwin::OptionalText* name = number(call, 0) == 2   ? &user.samCompatible
                                     : number(call, 0) == 3 ? &user.displayName
                                     : number(call, 0) == 8 ? &user.principal
                                                            : nullptr;
        if (name == nullptr)
            return;
        if (call.succeeded && call.parameters[1].index() != 0)
            *name = text(call, 1);
        else if (!call.succeeded && number(call, 2) > 0 && !*name &&
                 (call.error == ERROR_MORE_DATA || call.error == ERROR_INSUFFICIENT_BUFFER))
            *name = standIn(number(call, 2));
    }
    static void networkUser(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            capture.m_station.user.network = text(call, 0);
    }
    static void directoryUser(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            capture.m_station.user.directory = text(call, 1);
    }
    static void domain(StationCapture& capture, const ObservedCall& call) {
        if (!text(call, 0).empty())
            capture.m_station.network.domain = text(call, 0);
    }
    static void variable(StationCapture& capture, const ObservedCall& call) {
        const std::string name = text(call, 0);
        auto& variables = capture.m_station.environment;
        const auto isSame = [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); };
        if (call.succeeded && !capture.m_published.contains(name) && std::ranges::none_of(variables, isSame))
            variables.push_back({name, text(call, 1)});
    }
    static void publish(StationCapture& capture, const ObservedCall& call) {
        capture.m_published.insert(text(call, 0));
    }
    static void processId(StationCapture& capture, const ObservedCall& call) {
        processOf(capture.m_station).id = static_cast<std::uint32_t>(numberOf(call.result));
    }
    static void sessionId(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            processOf(capture.m_station).sessionId = structure<std::uint32_t>(call, 2);
    }
    static void processors(StationCapture& capture, const ObservedCall& call) {
        const auto info = structure<SYSTEM_INFO>(call, 0);
        simwin::Processors& processors = capture.m_station.processors.emplace();
        processors.architecture = info.wProcessorArchitecture;
        processors.count = info.dwNumberOfProcessors;
        processors.type = info.dwProcessorType;
        processors.level = info.wProcessorLevel;
        processors.revision = info.wProcessorRevision;
    }
    // The third of a record's numbers. A record for each processor is too much for the module's room when there are
    // several, and then no clock is told.
    static void clocks(StationCapture& capture, const ObservedCall& call) {
        if (!capture.m_station.processors)
            return;
        simwin::Processors& processors = *capture.m_station.processors;
        if (call.succeeded)
            processors.currentMhz = {structure<std::array<std::uint32_t, 6>>(call, 3)[2]};
        else if (static_cast<std::uint32_t>(numberOf(call.result)) == kBufferTooSmall)
            processors.currentMhz.assign(std::max(2u, std::min(processors.count, 1024u)), 0);
    }
    static void memory(StationCapture& capture, const ObservedCall& call) {
        const auto status = structure<MEMORYSTATUS>(call, 0);
        capture.m_station.memory = simwin::Memory{status.dwTotalPhys, status.dwTotalVirtual};
    }
    static void oemCodePage(StationCapture& capture, const ObservedCall& call) {
        capture.m_station.codePages.oem = static_cast<unsigned>(numberOf(call.result));
    }
    static void driveType(StationCapture& capture, const ObservedCall& call) {
        if (numberOf(call.result) != DRIVE_NO_ROOT_DIR)
            if (simwin::Drive* drive = driveOf(capture.m_station, call))
                drive->type = static_cast<std::uint32_t>(numberOf(call.result));
    }
    static void volume(StationCapture& capture, const ObservedCall& call) {
        simwin::Drive* drive = call.succeeded ? driveOf(capture.m_station, call) : nullptr;
        if (drive == nullptr)
            return;
        drive->label = text(call, 1);
        drive->serial = static_cast<std::uint32_t>(number(call, 3));
        drive->fileSystem = text(call, 6);
    }
    static void space(StationCapture& capture, const ObservedCall& call) {
        if (simwin::Drive* drive = call.succeeded ? driveOf(capture.m_station, call) : nullptr)
            drive->space = simwin::Space{number(call, 2), number(call, 1),
                                         call.parameters[3].index() != 0 ? number(call, 3) : number(call, 1)};
    }
    static void clusters(StationCapture& capture, const ObservedCall& call) {
        if (simwin::Drive* drive = call.succeeded ? driveOf(capture.m_station, call) : nullptr)
            drive->clusters = simwin::Clusters{
                static_cast<std::uint32_t>(number(call, 1)), static_cast<std::uint32_t>(number(call, 2)),
                static_cast<std::uint32_t>(number(call, 3)), static_cast<std::uint32_t>(number(call, 4))};
    }
    // Each part of a path is looked for below the parts before it, which are known by then.
    static void foundFile(StationCapture& capture, const ObservedCall& call) {
        const std::string asked = text(call, 0);
        const std::string parent(simwin::withoutLastPiece(asked));
        if (!call.succeeded || parent.empty())
            return;
        const auto data = structure<WIN32_FIND_DATAA>(call, 1);
        const auto known = capture.m_realPaths.find(parent);
        const std::string real = (known != capture.m_realPaths.end() ? known->second : parent) + "\\" +
                                 std::string(data.cFileName, strnlen(data.cFileName, sizeof data.cFileName));
        capture.m_realPaths[asked] = real;
        std::erase_if(capture.m_station.files, [&](const simwin::File& file) {
            return file.path == parent || (known != capture.m_realPaths.end() && file.path == known->second);
        });
        if (isFullPath(real))
            fileOf(capture.m_station, real);
    }
    static void existingFile(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded && isFullPath(text(call, 0)))
            fileOf(capture.m_station, text(call, 0));
    }
    static void versionSize(StationCapture& capture, const ObservedCall& call) {
        capture.m_versionedFile = text(call, 0);
        if (call.succeeded && isFullPath(capture.m_versionedFile))
            fileOf(capture.m_station, capture.m_versionedFile).resource = std::string(1, '\0');
    }
    static void fileVersion(StationCapture& capture, const ObservedCall& call) {
        if (!call.succeeded || !isFullPath(capture.m_versionedFile))
            return;
        const auto info = structure<VS_FIXEDFILEINFO>(call, 2);
        simwin::File& file = fileOf(capture.m_station, capture.m_versionedFile);
        file.resource.reset();
        file.version = {HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS), HIWORD(info.dwFileVersionLS),
                        LOWORD(info.dwFileVersionLS)};
    }
    static void hostName(StationCapture& capture, const ObservedCall& call) {
        if (call.succeeded)
            capture.m_station.network.hostName = text(call, 0);
    }
    static void hostByName(StationCapture& capture, const ObservedCall& call) {
        const auto* answer = pointer<const winsock::HostEntry*>(numberOf(call.result));
        auto& hosts = capture.m_station.network.hosts;
        const std::string asked = text(call, 0);
        if (answer == nullptr || std::ranges::find(hosts, asked, &simwin::Host::hostName) != hosts.end())
            return;
        simwin::Host host{.hostName = asked, .name = answer->h_name != nullptr ? answer->h_name : "", .addresses = {}};
        host.addressType = answer->h_addrtype;
        host.addresses = simwin::addressesOf(*answer);
        hosts.push_back(std::move(host));
    }
    static void hostByAddress(StationCapture& capture, const ObservedCall& call) {
        const auto* answer = pointer<const winsock::HostEntry*>(numberOf(call.result));
        if (answer != nullptr && answer->h_name != nullptr && textOf(call.parameters[0]).size() == 4)
            addReverse(capture.m_station, simwin::dotted(textOf(call.parameters[0])), answer->h_name);
    }
    static void nameOfAddress(StationCapture& capture, const ObservedCall& call) {
        constexpr std::size_t kAddress = 4;  // behind family and port
        const std::string_view address = textOf(call.parameters[0]);
        if (call.succeeded && address.size() >= kAddress + 4)
            addReverse(capture.m_station, simwin::dotted(address.substr(kAddress, 4)), text(call, 2));
    }
    static void arp(StationCapture& capture, const ObservedCall& call) {
        auto& entries = capture.m_station.network.arp;
        const std::string address = dottedOf(number(call, 0));
        if (call.succeeded && std::ranges::find(entries, address, &simwin::ArpEntry::address) == entries.end())
            entries.push_back({address, text(call, 2)});
    }
    static void netbios(StationCapture& capture, const ObservedCall& call) {
        const NCB* block = pointer<const NCB*>(number(call, 0));
        auto& lanas = capture.m_station.network.netbios;
        if (block == nullptr || !call.succeeded || block->ncb_buffer == nullptr)
            return;
        if (block->ncb_command == NCBENUM && lanas.empty())
            for (std::size_t i = 1; i < block->ncb_length && i <= block->ncb_buffer[0]; ++i)
                lanas.push_back({block->ncb_buffer[i], {}});
        if (block->ncb_command == NCBASTAT && block->ncb_length >= 6)
            for (simwin::Lana& lana : lanas)
                if (lana.number == block->ncb_lana_num)
                    lana.address = std::string(reinterpret_cast<const char*>(block->ncb_buffer), 6);
    }
    static void group(StationCapture& capture, const ObservedCall& call) { capture.m_expectsGroup = call.succeeded; }
    static void narrowText(StationCapture& capture, const ObservedCall& call) {
        if (capture.m_expectsGroup && call.succeeded)
            capture.m_station.network.lanGroup = text(call, 4);
        capture.m_expectsGroup = false;
    }
    template <std::optional<simwin::CompanionText> simwin::Session::*Member>
    static void sessionText(StationCapture& capture, const ObservedCall& call) {
        const std::string told = text(call, 0);
        if (!told.empty() || call.succeeded)
            capture.m_station.session.*Member =
                simwin::CompanionText{told, static_cast<int>(numberOf(call.result)), told.size() < number(call, 1)};
    }
    static void sessionNumber(StationCapture& capture, const ObservedCall& call) {
        capture.m_station.session.id = static_cast<int>(numberOf(call.result));
    }
    static void citrixClient(StationCapture& capture, const ObservedCall& call) {
        if (capture.m_station.citrix && call.succeeded)
            capture.m_station.citrix->clientName =
                simwin::CompanionText{text(call, 3), static_cast<int>(numberOf(call.result))};
    }
    static void vcdVersion(StationCapture& capture, const ObservedCall& call) {
        capture.m_station.vcdVersion = static_cast<int>(numberOf(call.result));
    }
    static void profile(StationCapture& capture, const ObservedCall& call) {
        if (!text(call, 3).empty())
            capture.m_station.profile.push_back({text(call, 0), text(call, 1), text(call, 3)});
    }
    static void library(StationCapture& capture, const ObservedCall& call) {
        const std::string name = text(call, 0);
        Station& station = capture.m_station;
        if (call.succeeded) {
            capture.m_libraries[numberOf(call.result)] = name;
            if (simwin::equalNoCase(name, "wfapi64.dll") && !station.citrix)
                station.citrix.emplace();
            if (simwin::equalNoCase(name, "KVVCD32.dll") && !station.vcdVersion)
                station.vcdVersion = 0;
        } else if (!simwin::equalNoCase(name, "wfapi64.dll") && !simwin::equalNoCase(name, "KVVCD32.dll")) {
            addMissing(station, name);
        }
    }
    static void function(StationCapture& capture, const ObservedCall& call) {
        const auto library = capture.m_libraries.find(number(call, 0));
        if (!call.succeeded && library != capture.m_libraries.end())
            addMissing(capture.m_station, library->second + "!" + text(call, 1));
    }
    static void addMissing(Station& station, const std::string& item) {
        if (std::ranges::find(station.missing, item) == station.missing.end())
            station.missing.push_back(item);
    }
};

namespace {

constexpr CaptureTaker kTakers[] = {
    {"GetVersionExA", CaptureTaker::version},
    {"VerifyVersionInfoA", CaptureTaker::suites},
    {"GetKeyboardType", CaptureTaker::keyboard},
    {"GetComputerNameA", CaptureTaker::computerName},
    {"GetUserNameA", CaptureTaker::userName},
    {"GetUserNameExA", CaptureTaker::userNameEx},
    {"KVGetUserName", CaptureTaker::networkUser},
    {"KVNDSWhoAmI", CaptureTaker::directoryUser},
    {"KVGetDomainName", CaptureTaker::domain},
    {"KVGetEnv", CaptureTaker::variable},
    {"GetEnvironmentVariableA", CaptureTaker::variable},
    {"KVSetEnv", CaptureTaker::publish},
    {"GetCurrentProcessId", CaptureTaker::processId},
    {"GetTokenInformation", CaptureTaker::sessionId},
    {"GetSystemInfo", CaptureTaker::processors},
    {"CallNtPowerInformation", CaptureTaker::clocks},
    {"GlobalMemoryStatus", CaptureTaker::memory},
    {"GetOEMCP", CaptureTaker::oemCodePage},
    {"GetDriveTypeA", CaptureTaker::driveType},
    {"GetVolumeInformationA", CaptureTaker::volume},
    {"GetDiskFreeSpaceExA", CaptureTaker::space},
    {"GetDiskFreeSpaceA", CaptureTaker::clusters},
    {"FindFirstFileA", CaptureTaker::foundFile},
    {"_access", CaptureTaker::existingFile},
    {"GetFileVersionInfoSizeA", CaptureTaker::versionSize},
    {"VerQueryValueA", CaptureTaker::fileVersion},
    {"gethostname", CaptureTaker::hostName},
    {"gethostbyname", CaptureTaker::hostByName},
    {"gethostbyaddr", CaptureTaker::hostByAddress},
    {"getnameinfo", CaptureTaker::nameOfAddress},
    {"SendARP", CaptureTaker::arp},
    {"Netbios", CaptureTaker::netbios},
    {"NetWkstaGetInfo", CaptureTaker::group},
    {"WideCharToMultiByte", CaptureTaker::narrowText},
    {"ZRTSQueryClientName", CaptureTaker::sessionText<&simwin::Session::clientName>},
    {"ZRTSQueryIPAddress", CaptureTaker::sessionText<&simwin::Session::clientAddress>},
    {"ZRTSDomainName", CaptureTaker::sessionText<&simwin::Session::domain>},
    {"ZRTSQuerySessionID", CaptureTaker::sessionNumber},
    {"WFQuerySessionInformationA", CaptureTaker::citrixClient},
    {"KVGetVCDVersion", CaptureTaker::vcdVersion},
    {"GetPrivateProfileStringA", CaptureTaker::profile},
    {"LoadLibraryA", CaptureTaker::library},
    {"GetModuleHandleA", CaptureTaker::library},
    {"GetProcAddress", CaptureTaker::function},
};

// Calls whose failure nothing else describes, with the error that a station gives by itself.
struct DescribedFailure {
    std::string_view call;
    std::uint32_t natural;
};
constexpr DescribedFailure kFailures[] = {{"GetUserNameExA", ERROR_NONE_MAPPED},
                                          {"OpenProcess", 0},
                                          {"OpenProcessToken", ERROR_CALL_NOT_IMPLEMENTED},
                                          {"getnameinfo", 0}};

}  // namespace

const CaptureTaker* CaptureTaker::find(std::string_view name) {
    const auto* found = std::ranges::find(kTakers, name, &CaptureTaker::call);
    return found != std::end(kTakers) ? found : nullptr;
}

void StationCapture::ends(const ObservedCall& call) {
    Outcome& outcome = m_outcomes[call.name];
    outcome.hasSucceeded = outcome.hasSucceeded || call.succeeded;
    if (!call.succeeded)
        outcome.error = call.name == "getnameinfo" ? static_cast<std::uint32_t>(numberOf(call.result)) : call.error;
    if (call.name.starts_with("Reg"))
        m_registry.take(call);
    else if (const CaptureTaker* taker = CaptureTaker::find(call.name))
        taker->take(*this, call);
}

simwin::Station StationCapture::station() const {
    Station station = m_station;
    m_registry.describe(station);
    for (const DescribedFailure& failure : kFailures) {
        const auto outcome = m_outcomes.find(failure.call);
        if (outcome == m_outcomes.end() || outcome->second.hasSucceeded || outcome->second.error == 0)
            continue;
        const bool isSizeOnly =
            failure.call == "GetUserNameExA" && (station.user.samCompatible || station.user.principal);
        if (outcome->second.error != failure.natural && !isSizeOnly)
            station.fails[std::string(failure.call)] = outcome->second.error;
    }
    return station;
}

}  // namespace kvstation
