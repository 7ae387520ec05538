#include "tests/faults/FieldRules.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "include/kvcstat.h"
#include "tests/stations/StationTypes.h"

namespace kvtest {
namespace {

// One field's content under one failure.
struct Case {
    const StationTexts& station;
    const Fields& record;         // with the failure
    const std::string& expected;  // undisturbed
    const std::string& found;
    std::size_t limit;  // the most characters that the field receives
};

std::string fieldOf(const Fields& record, std::string_view name) {
    const auto field = std::find_if(record.begin(), record.end(), [&](const auto& one) { return one.first == name; });
    return std::get<std::string>(field->second);
}

Texts united(Texts left, const Texts& right) {
    left.insert(right.begin(), right.end());
    return left;
}

// One of the texts, or as much of it as the field takes.
bool isAnyOf(const Texts& texts, const Case& field) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return text.substr(0, field.limit) == field.found; });
}

bool isFull(const Case& field) {
    return field.found.size() == field.limit;
}

// A field whose sources are texts of the station.
template <Texts (StationTexts::*sources)() const>
bool isOneOf(const Case& field) {
    return isAnyOf((field.station.*sources)(), field);
}

// A field that lists items of the station.
template <Items (StationTexts::*sources)() const>
bool isListOf(const Case& field) {
    return isSelection((field.station.*sources)(), field.found, isFull(field));
}

// The same where the items come from one of several places.
template <std::vector<Items> (StationTexts::*sources)() const>
bool isOneListOf(const Case& field) {
    const std::vector<Items> lists = (field.station.*sources)();
    return std::any_of(lists.begin(), lists.end(),
                       [&](const Items& items) { return isSelection(items, field.found, isFull(field)); });
}

// The server's own facts are told where the collection sees a session, and only there. A client's addresses and those
// of the station that it runs on never stand beside each other.
bool isSeenAsSession(const Case& field) {
    return !fieldOf(field.record, "szServerName").empty() || !fieldOf(field.record, "szServerIPAddress").empty() ||
           !fieldOf(field.record, "szServerMACAddress").empty();
}

bool isIPAddress(const Case& field) {
    const Texts addresses = isSeenAsSession(field) ? field.station.clientAddresses() : field.station.ownAddresses();
    return isAnyOf(united(addresses, field.station.chosenAddresses()), field);
}

bool isDnsName(const Case& field) {
    return isAnyOf(isSeenAsSession(field) ? field.station.clientDnsNames() : field.station.ownDnsNames(), field);
}

// "unknown" where no address is found, and where the client's is not asked for. Without an IP address the adapter tells
// its own; a client's is never told by the server's adapters.
bool isMacAddress(const Case& field) {
    const StationTexts& station = field.station;
    const Texts found = isSeenAsSession(field)
                            ? station.macAddresses(station.clientAddresses())
                            : united(station.macAddresses(station.ownAddresses()), station.adapterMacAddresses());
    return isAnyOf(united(found, {"unknown"}), field);
}

bool isServerMacAddress(const Case& field) {
    const StationTexts& station = field.station;
    if (!station.hasClient())
        return false;
    return isAnyOf(
        united(united(station.macAddresses(station.ownAddresses()), station.adapterMacAddresses()), {"unknown"}),
        field);
}

std::string textOf(const Fields& record, StationName name) {
    switch (name) {
        case StationName::Client:
            return fieldOf(record, "szClientName");
        case StationName::Dns:
            return fieldOf(record, "szDnsName");
        case StationName::IPAddress: {
            const std::string addresses = fieldOf(record, "szIPAddress");
            return addresses.substr(0, addresses.find(';', 1));
        }
        case StationName::MACAddress:
            return fieldOf(record, "szMACAddress");
    }
    return {};
}

std::string stationName(const Fields& record, int type) {
    for (const StationName name : namesTried(type)) {
        const std::string text = textOf(record, name);
        if (!text.empty())
            return upperCase(text);
    }
    return "UNKNOWN";
}

// What the record itself tells as the first that there is; the client's name when the type cannot be read. In a session
// with the mark or, where the session or its number cannot be told, without.
bool isStation(const Case& field) {
    Texts names;
    for (const int type : {std::atoi(field.station.variable("KVStationType").c_str()), 0}) {
        const std::string name = stationName(field.record, type);
        names.insert(name);
        if (field.station.hasClient())
            names.insert(name + "#1");
    }
    return isAnyOf(names, field);
}

// In a session "Terminal server session (USER)" with the record's own user, of which the words in front are missing
// when they cannot be loaded; else the account.
bool isCurrentUser(const Case& field) {
    Texts texts = field.station.accounts();
    const std::string user = " (" + fieldOf(field.record, "szUserName") + ")";
    if (field.station.hasClient())
        texts.insert({"Terminal server session" + user, user});
    return isAnyOf(texts, field);
}

// Processors whose names can be read; with none, the name of their type.
bool isProcessorName(const Case& field) {
    return isListOf<&StationTexts::processors>(field) || isOneOf<&StationTexts::processorTypes>(field);
}

// Windows 9x lists display adapters; Windows NT has one.
bool isVideoAdapter(const Case& field) {
    return isListOf<&StationTexts::displayAdapters>(field) || isOneOf<&StationTexts::videoAdapters>(field);
}

// Each browser as it was or missing, and Opera without its version when that cannot be read.
bool isBrowserList(const Case& field) {
    Items browsers;
    for (const std::string& browser : split(field.expected, ";")) {
        browsers.push_back({browser});
        if (browser.starts_with("Opera "))
            browsers.back().insert("Opera ");
    }
    return isSelection(browsers, field.found, false);
}

bool isDiskList(const Case& field) {
    return isArrangement(field.station.devices("disk"), field.found, isFull(field));
}

bool isTapeList(const Case& field) {
    return isArrangement(field.station.devices("tape"), field.found, isFull(field));
}

bool isOtherList(const Case& field) {
    return isArrangement(field.station.devices("other"), field.found, isFull(field));
}

// The two lists of CD-ROMs are cut to the length of the BIOS date, whichever that is.
template <class IsList>
bool isCutByBiosDate(const Case& field, IsList isList) {
    const Texts dates = field.station.biosDates();
    return (isFull(field) && isList(true)) || std::any_of(dates.begin(), dates.end(), [&](const std::string& date) {
               return field.found.size() <= date.size() && isList(field.found.size() == date.size());
           });
}

bool isCDRomList(const Case& field) {
    const Items devices = field.station.devices("cdrom");
    return isCutByBiosDate(field, [&](bool isCut) { return isArrangement(devices, field.found, isCut); });
}

constexpr std::uint32_t kRemovable = 2;  // GetDriveTypeA's numbers
constexpr std::uint32_t kCDRom = 5;

bool isCDRomDriveList(const Case& field) {
    const Items drives = field.station.roots(kCDRom);
    return isCutByBiosDate(field, [&](bool isCut) { return isSelection(drives, field.found, isCut); });
}

// "|ICA 219 17" of a session: build and product are missing behind the protocol when they cannot be read, and all of it
// is when the protocol or the session cannot.
Texts sessionSuffixes(const StationTexts& station) {
    const std::string protocol = station.variable("KVTSProtocol");
    Texts suffixes = {""};
    if (!station.hasClient() || protocol.empty())
        return suffixes;
    for (const std::string& build : {station.variable("KVTSBuildNo"), std::string()})
        for (const std::string& product : {station.variable("KVTSProductID"), std::string()})
            suffixes.insert("|" + protocol + " " + build + " " + product);
    return suffixes;
}

bool isRemovableDriveList(const Case& field) {
    const Items drives = field.station.roots(kRemovable);
    const Texts suffixes = sessionSuffixes(field.station);
    return std::any_of(suffixes.begin(), suffixes.end(), [&](const std::string& suffix) {
        const std::string list =
            field.found.substr(0, field.found.size() - std::min(suffix.size(), field.found.size()));
        return list + suffix == field.found && (list.empty() || isSelection(drives, list, false));
    });
}

struct Rule {
    std::string_view field;
    bool (*explains)(const Case& field);
};

// What a field may hold beside what it holds undisturbed and nothing. A field that is not listed has no fallback.
constexpr Rule kRules[] = {
    {"szStation", isStation},
    {"szUserName", isOneOf<&StationTexts::userNames>},
    {"szKeyboard", isOneOf<&StationTexts::keyboards>},
    {"szSystemIdentifier", isOneOf<&StationTexts::systemIdentifiers>},
    {"szDiskDevices", isDiskList},
    {"szCDRomDevices", isCDRomList},
    {"szTapeDevices", isTapeList},
    {"szOtherDevices", isOtherList},
    {"szPrinters", isListOf<&StationTexts::printers>},
    {"szCDRomDrives", isCDRomDriveList},
    {"szRemovableDrives", isRemovableDriveList},
    {"szFixedDrives", isListOf<&StationTexts::fixedDrives>},
    {"szTSProduct", isOneOf<&StationTexts::citrixProducts>},
    {"szDnsName", isDnsName},
    {"szDefaultGateway", isOneListOf<&StationTexts::defaultGateways>},
    {"szSubnetMask", isOneListOf<&StationTexts::subnetMasks>},
    {"szProtocols", isListOf<&StationTexts::protocols>},
    {"szNetworkDrivers", isListOf<&StationTexts::networkDrivers>},
    {"szServerMACAddress", isServerMacAddress},
    {"szTSClientName", isOneOf<&StationTexts::sessionClientNames>},
    {"szMailClient", isListOf<&StationTexts::mailClients>},
    {"szProviders", isListOf<&StationTexts::providers>},
    {"szBrowser", isBrowserList},
    {"szIPAddress", isIPAddress},
    {"szNetworkAdapters", isListOf<&StationTexts::networkAdapters>},
    {"szClientName", isOneOf<&StationTexts::clientNames>},
    {"szBiosVersion", isOneOf<&StationTexts::biosVersions>},
    {"szCurrentUser", isCurrentUser},
    {"szProcessorName", isProcessorName},
    {"szMonitor", isOneOf<&StationTexts::monitors>},
    {"szVideoAdapter", isVideoAdapter},
    {"szTSVersion", isOneOf<&StationTexts::terminalServers>},
    {"szMACAddress", isMacAddress},
    {"szBiosDate", isOneOf<&StationTexts::biosDates>},
    {"szWinUser", isOneOf<&StationTexts::windowsUsers>},
};

struct Limit {
    std::string_view field;
    std::size_t limit;
};
constexpr Limit kLimits[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning) {#name, limit},
#define KV_NUMBER(name, offset, group, meaning)
#define KV_UNSIGNED(name, offset, group, meaning)
#include "include/kvcstat_fields.inc"
};

std::size_t limitOf(const std::string& field) {
    return std::find_if(std::begin(kLimits), std::end(kLimits), [&](const Limit& one) { return one.field == field; })
        ->limit;
}

bool isExplained(const std::string& name, const Case& field) {
    if (field.found == field.expected || field.found.empty())
        return true;
    const auto* rule =
        std::find_if(std::begin(kRules), std::end(kRules), [&](const Rule& one) { return one.field == name; });
    return rule != std::end(kRules) && rule->explains(field);
}

bool isExplained(std::int64_t expected, std::int64_t found) {
    return found == expected || found == 0;
}

}  // namespace

std::vector<std::string> unexplainedFields(const StationTexts& texts, const Fields& expected, const Fields& found) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const std::string& name = found[i].first;
        if (const auto* number = std::get_if<std::int64_t>(&found[i].second)) {
            if (!isExplained(std::get<std::int64_t>(expected[i].second), *number))
                lines.push_back(name + " is " + std::to_string(*number));
            continue;
        }
        const auto& text = std::get<std::string>(found[i].second);
        if (!isExplained(name, {texts, found, std::get<std::string>(expected[i].second), text, limitOf(name)}))
            lines.push_back(name + " is '" + text + "'");
    }
    return lines;
}

}  // namespace kvtest
