#include "kvstation/Steps.h"

#include <algorithm>
#include <string>

#include "simwin/CallText.h"

namespace kvstation {
namespace {

// In the order of a collection. A call that stands in several steps marks one only behind the step named.
constexpr StepMark kMarks[] = {
    {"module start", "ZRTSWRPInit", "", "", ""},
    {"start", "ZRTrace", "Reading station data.\n", "", ""},

    {"user name", "KVGetEnv", "KVUser", "", ""},
    {"Windows account", "GetUserNameExA", "2", "user name", "KVGetEnv"},
    {"display name", "LoadLibraryA", "Secur32.dll", "", ""},

    {"IP configuration", "KVGetEnv", "CLIENTNAME", "display name", ""},
    {"host name", "KVGetEnv", "KVIP", "IP configuration", ""},
    {"server's address", "LoadLibraryA", "ws2_32.dll", "IP configuration", ""},
    {"server's name", "GetComputerNameA", "", "server's address", ""},
    {"client's address", "ZRTSQueryIPAddress", "", "", ""},
    {"session number", "ZRTSQuerySessionID", "", "", ""},
    {"server's MAC address", "SendARP", "", "session number", "inet_addr"},
    {"server's MAC address", "Netbios", "", "session number", ""},
    {"MAC address", "SendARP", "", "server's MAC address", "inet_addr"},
    {"DNS name", "getnameinfo", "", "", "inet_addr"},
    {"MAC address", "SendARP", "", "DNS name", "inet_addr"},
    {"MAC address", "Netbios", "", "host name", ""},
    {"masks and gateways", "RegOpenKeyA", "SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans", "", "GetVersionExA"},
    {"masks and gateways", "RegOpenKeyA", "SYSTEM\\CurrentControlSet\\Services\\NetBT\\Adapters", "", "GetVersionExA"},
    {"masks and gateways", "RegOpenKeyA", "SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Adapters", "",
     "GetVersionExA"},
    {"workgroup", "LoadLibraryA", "netapi32.dll", "", ""},

    {"client name", "RegOpenKeyA", "SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings", "", ""},
    {"providers", "RegOpenKeyA", "System\\CurrentControlSet\\control\\NetworkProvider\\Order", "", "GetVersionExA"},
    {"providers", "RegOpenKeyA", "SYSTEM\\CurrentControlSet\\Control\\NetWorkProvider\\Order", "", "GetVersionExA"},
    {"browsers", "RegOpenKeyA", ".html", "", ""},
    {"network adapters", "RegOpenKeyA", "Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards", "browsers",
     "GetVersionExA"},
    {"network adapters", "RegOpenKeyA", "Enum\\Root", "browsers", "GetVersionExA"},
    {"mail clients", "RegOpenKeyA", "SOFTWARE\\Clients\\Mail", "", ""},
    {"ICA client", "RegOpenKeyA", ".ica", "", ""},
    {"RDP client", "GetEnvironmentVariableA", "systemRoot", "", ""},
    {"domain", "KVGetDomainName", "", "", ""},
    {"terminal-server product", "KVGetEnv", "CLIENTNAME", "domain", ""},

    {"operating system", "GetVersionExA", "", "terminal-server product", ""},

    {"processor", "GetSystemInfo", "", "", ""},
    {"processor power", "LoadLibraryA", "powrprof.dll", "", ""},
    {"processor names", "GetVersionExA", "", "processor power", ""},
    {"BIOS", "GetVersionExA", "", "processor names", ""},
    {"memory", "GlobalMemoryStatus", "", "", ""},
    {"owner", "GetVersionExA", "", "memory", ""},
    {"current user", "KVGetEnv", "CLIENTNAME", "owner", ""},
    {"devices", "GetVersionExA", "", "owner", ""},
    {"devices", "GetVersionExA", "", "current user", ""},
    {"drives", "GetDriveTypeA", "A:\\", "", ""},
    {"keyboard", "GetVersionExA", "", "drives", ""},
    {"printers", "KVGetEnv", "CLIENTNAME", "keyboard", ""},
    {"default printer", "GetVersionExA", "", "printers", ""},
    {"printer list", "RegOpenKeyA", "Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices", "default printer", ""},
    {"printer list", "RegOpenKeyA", "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers", "default printer", ""},
    {"processor type", "LoadStringA", "", "printer list", ""},

    {"monitor", "GetVersionExA", "", "printer list", ""},
    {"monitor", "GetVersionExA", "", "processor type", ""},
    {"video adapter", "RegOpenKeyA", "HARDWARE\\DEVICEMAP\\VIDEO", "", "GetVersionExA"},
    {"video adapter", "RegOpenKeyA", "Enum\\PCI", "", "GetVersionExA"},

    {"station type", "KVGetEnv", "KVStationType", "", ""},
    {"remote client", "KVGetEnv", "KVRDPClientName", "", ""},
    {"session mark", "KVGetEnv", "CLIENTNAME", "remote client", ""},
    {"VCD module", "LoadLibraryA", "KVVCD32.dll", "", ""},

    {"publishing", "KVSetEnv", "", "VCD module", ""},
    {"session id", "GetCurrentProcessId", "", "", ""},
    {"server sessions", "KVGetEnv", "KVTSDefaultSrvSessions", "", ""},
    {"module end", "ZRTSWRPFree", "", "", ""},
};

bool holds(std::string_view arguments, std::string_view argument) {
    if (argument.empty() || arguments == argument)
        return true;
    std::string quoted;
    simwin::appendQuoted(quoted, argument);
    return arguments.find(quoted) != std::string_view::npos;
}

}  // namespace

std::span<const StepMark> stepMarks() {
    return kMarks;
}

const StepMark* findMark(std::string_view step, std::string_view call, std::string_view arguments) {
    const auto* found = std::ranges::find_if(kMarks, [&](const StepMark& mark) {
        return mark.call == call && (mark.after.empty() || mark.after == step) && mark.step != step &&
               holds(arguments, mark.argument);
    });
    return found != std::end(kMarks) ? found : nullptr;
}

}  // namespace kvstation
