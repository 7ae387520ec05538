#include "kvstation/Undescribed.h"

#include <algorithm>
#include <string_view>

#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::Station;

bool never(const Station&) {
    return false;
}

struct Member {
    std::string_view name;  // in station.json
    std::string_view call;  // that asks for it
    bool (*isDescribed)(const Station& station);
    std::string_view meaning;
};

constexpr Member kMembers[] = {
    {"version", "GetVersionExA", [](const Station& station) { return station.version.has_value(); },
     "the version of Windows, without which the module reads little"},
    {"keyboard", "GetKeyboardType", never, "the keyboard's type"},
    {"computerName", "GetComputerNameA", [](const Station& station) { return station.computerName.has_value(); },
     "the computer's name"},
    {"user", "GetUserNameExA", never, "the names of who is logged on"},
    {"process", "GetCurrentProcessId", never, "the session's number"},
    {"processors", "GetSystemInfo", [](const Station& station) { return station.processors.has_value(); },
     "the processors"},
    {"processors.currentMhz", "CallNtPowerInformation", never, "the processors' clocks"},
    {"memory", "GlobalMemoryStatus", never, "the memory"},
    {"drives", "GetDriveTypeA", never, "the drives, their sizes and free space"},
    {"network.hostName", "gethostname", [](const Station& station) { return station.network.hostName.has_value(); },
     "the host's name"},
    {"network.hosts", "gethostbyname", never, "the addresses of host names"},
    {"network.addresses", "getnameinfo", never, "the names of addresses"},
    {"network.arp", "SendARP", never, "the MAC addresses of addresses"},
    {"network.netbios", "Netbios", never, "the adapters' MAC addresses"},
    {"network.lanGroup", "NetWkstaGetInfo", never, "the workgroup or domain of the computer"},
    {"network.domain", "KVGetDomainName", never, "the domain of the user"},
    {"session", "ZRTSQueryClientName", never, "the remote session and its client"},
};

constexpr std::size_t kNameWidth = 22;

std::string lineOf(std::string_view name, std::string_view meaning) {
    std::string line(name);
    line.resize(std::max(line.size(), kNameWidth), ' ');
    return line + ' ' + std::string(meaning);
}

void addList(std::vector<std::string>& lines, std::string_view name, std::string_view meaning,
             const std::vector<std::string>& items) {
    if (items.empty())
        return;
    std::string list(meaning);
    for (const std::string& item : items)
        list += (&item == &items.front() ? ": " : ", ") + simwin::toUtf8(item);
    lines.push_back(lineOf(name, list));
}

void addKeys(std::vector<std::string>& lines, const Questions& questions, const std::vector<std::string>& roots) {
    constexpr std::string_view kHardware = "HKEY_LOCAL_MACHINE\\HARDWARE";
    constexpr std::string_view kServices = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services";
    const std::vector<std::string>& missing = questions.missingKeys().all();
    const auto isAsked = [&](std::string_view root) {
        return std::ranges::any_of(missing,
                                   [&](const std::string& path) { return simwin::restBelow(path, root).has_value(); });
    };
    const auto isDeviceList = [&](const std::string& path) {
        return simwin::restBelow(path, kServices) &&
               simwin::equalNoCase(path.substr(path.find_last_of('\\') + 1), "Enum");
    };
    for (const std::string& root : roots)
        if (isAsked(root))
            lines.push_back(root + ", of which there is no hive");
    if (isAsked(kHardware))
        lines.push_back(std::string(kHardware) + ", which is in no hive: Windows makes it at each start");
    if (std::ranges::any_of(missing, isDeviceList))
        lines.push_back(std::string(kServices) + "\\*\\Enum, which is in no hive: Windows makes it at each start");
}

}  // namespace

std::vector<std::string> undescribed(const Station& station, const Questions& questions,
                                     const std::vector<std::string>& missingRoots) {
    std::vector<std::string> lines;
    addKeys(lines, questions, missingRoots);
    for (const Member& member : kMembers)
        if (questions.hasMade(member.call) && !member.isDescribed(station))
            lines.push_back(lineOf(member.name, member.meaning));
    addList(lines, "environment", "variables that the registry does not set", questions.missingVariables());
    addList(lines, "files", "files and their versions", questions.files());
    return lines;
}

}  // namespace kvstation
