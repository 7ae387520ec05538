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
    return isAnyOf(isSeenAsSession(field) ? field.station.clientAddresses() : field.station.ownAddresses(), field);
}

bool isDnsName(const Case& field) {
    return isAnyOf(isSeenAsSession(field) ? field.station.clientDnsNames() : field.station.ownDnsNames(), field);
}

// "unknown" where no address is found, and where the client's is not asked for.
bool isMacAddress(const Case& field) {
    const StationTexts& station = field.station;
    const Texts addresses = isSeenAsSession(field) ? station.clientAddresses() : station.ownAddresses();
    return isAnyOf(united(station.macAddresses(addresses), {"unknown"}), field);
}

bool isServerMacAddress(const Case& field) {
    const StationTexts& station = field.station;
    return station.hasClient() && isAnyOf(united(station.macAddresses(station.ownAddresses()), {"unknown"}), field);
}

// Without an IP address the adapter tells its own; a client's is never told by the server's adapters.
bool isAdapterMacAddress(const Case& field) {
    return !isSeenAsSession(field) && isAnyOf(field.station.adapterMacAddresses(), field);
}

// Where the client's address is not known.
bool isServerAdapterMacAddress(const Case& field) {
    return field.station.hasClient() && isAnyOf(field.station.adapterMacAddresses(), field);
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

// What a field may hold beside what it holds undisturbed and nothing, with a rule for each source. A field that is not
// listed has no fallback.
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
    {"szServerMACAddress", isServerAdapterMacAddress},
    {"szTSClientName", isOneOf<&StationTexts::sessionClientNames>},
    {"szMailClient", isListOf<&StationTexts::mailClients>},
    {"szProviders", isListOf<&StationTexts::providers>},
    {"szBrowser", isBrowserList},
    {"szIPAddress", isIPAddress},
    {"szNetworkAdapters", isListOf<&StationTexts::networkAdapters>},
    {"szClientName", isOneOf<&StationTexts::clientNames>},
    {"szBiosVersion", isOneOf<&StationTexts::biosVersions>},
    {"szCurrentUser", isCurrentUser},
    {"szProcessorName", isListOf<&StationTexts::processors>},
    {"szProcessorName", isOneOf<&StationTexts::processorTypes>},  // where no name can be read
    {"szMonitor", isOneOf<&StationTexts::monitors>},
    {"szVideoAdapter", isListOf<&StationTexts::displayAdapters>},  // of Windows 9x
    {"szVideoAdapter", isOneOf<&StationTexts::videoAdapters>},     // of Windows NT, which has one
    {"szTSVersion", isOneOf<&StationTexts::terminalServers>},
    {"szMACAddress", isMacAddress},
    {"szMACAddress", isAdapterMacAddress},
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

// Such as "szMACAddress, rule 2".
std::string nameOf(const Rule& rule) {
    const auto before =
        std::count_if(std::begin(kRules), &rule, [&](const Rule& other) { return other.field == rule.field; });
    return std::string(rule.field) + ", rule " + std::to_string(before + 1);
}

Texts rulesThatExplain(const std::string& name, const Case& field) {
    Texts rules;
    for (const Rule& rule : kRules) {
        if (rule.field == name && rule.explains(field))
            rules.insert(nameOf(rule));
    }
    return rules;
}

bool isNothing(const FieldValue& value) {
    return value == FieldValue(std::string()) || value == FieldValue(std::int64_t{0});
}

}  // namespace

Texts allRules() {
    Texts names;
    for (const Rule& rule : kRules)
        names.insert(nameOf(rule));
    return names;
}

Explanation explain(const StationTexts& texts, const Fields& expected, const Fields& found) {
    Explanation explanation;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const auto& [name, value] = found[i];
        if (value == expected[i].second || isNothing(value))
            continue;
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            explanation.unexplainedFields.push_back(name + " is " + std::to_string(*number));
            continue;
        }
        const auto& text = std::get<std::string>(value);
        Texts rules =
            rulesThatExplain(name, {texts, found, std::get<std::string>(expected[i].second), text, limitOf(name)});
        if (rules.empty())
            explanation.unexplainedFields.push_back(name + " is '" + text + "'");
        if (rules.size() == 1)
            explanation.neededRules.merge(rules);
    }
    return explanation;
}

}  // namespace kvtest
