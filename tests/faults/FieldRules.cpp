#include "tests/faults/FieldRules.h"

#include <algorithm>
#include <cstddef>

#include "include/kvcstat.h"

namespace kvtest {
namespace {

using Texts = std::set<std::string>;

// One field's content under one failure.
struct Case {
    const StationTexts& station;
    const std::string& expected;  // undisturbed
    const std::string& found;
    std::size_t limit;  // the most characters that the field receives
};

// Of the module's string table.
constexpr std::string_view kFixedTexts[] = {
#define KV_STRING(id, text) text,
#include "kvcstat/StringTable.inc"
};

bool isFixedText(const std::string& text) {
    return std::find(std::begin(kFixedTexts), std::end(kFixedTexts), text) != std::end(kFixedTexts);
}

bool isAny(const Texts& texts, const std::string& text) {
    return texts.contains(text);
}

// The beginning of one of the texts.
bool isCut(const Texts& texts, const std::string& text) {
    const auto next = texts.lower_bound(text);
    return next != texts.end() && next->starts_with(text);
}

// One of the texts, or as much of it as the field takes.
bool isAnyUpTo(std::size_t limit, const Texts& texts, const std::string& text) {
    return isAny(texts, text) || (text.size() == limit && isCut(texts, text));
}

std::vector<std::string> partsOf(const std::string& list) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(';', start), list.size());
        parts.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// A list whose items are empty or among the texts; the last one may be cut where the list was.
bool isListOf(const Texts& items, const std::string& list, bool mayBeCut) {
    const std::vector<std::string> parts = partsOf(list);
    const auto isItem = [&](const std::string& part) { return part.empty() || isAny(items, part); };
    return std::all_of(parts.begin(), parts.end() - 1, isItem) &&
           (isItem(parts.back()) || (mayBeCut && isCut(items, parts.back())));
}

Texts united(const Texts& left, const std::vector<std::string>& right) {
    Texts all = left;
    all.insert(right.begin(), right.end());
    return all;
}

// Items of the registry: a failure leaves some out, makes some empty, ends the list early or turns to another source.
bool isRegistryList(const Case& field) {
    return isListOf(united(field.station.registry, partsOf(field.expected)), field.found,
                    field.found.size() == field.limit);
}

bool isRegistryText(const Case& field) {
    return isAnyUpTo(field.limit, field.station.registry, field.found);
}

bool isRegistryOrFixedText(const Case& field) {
    return isRegistryText(field) || isFixedText(field.found);
}

// "2 SEAGATE ST15150N": devices that could not be told apart, or whose kind could not be read, are counted under
// another name or another kind. The CD-ROM field is cut to the BIOS date's length.
bool isCountedList(const Case& field) {
    Texts devices;
    for (const std::string& text : field.station.registry) {
        for (int count = 1; count <= 9; ++count)
            devices.insert(std::to_string(count) + " " + text);
    }
    return isListOf(devices, field.found, true);
}

bool isName(const Case& field) {
    return isAnyUpTo(field.limit, field.station.names, field.found);
}

bool isUser(const Case& field) {
    return isAnyUpTo(field.limit, field.station.users, field.found);
}

bool isUserOrUnknown(const Case& field) {
    return isUser(field) || field.found == "UNKNOWN";
}

// "Terminal server session (USER)", of which the words in front are a fixed text that may be missing.
bool isCurrentUser(const Case& field) {
    Texts sessions;
    for (const std::string& user : field.station.users) {
        sessions.insert("Terminal server session (" + user + ")");
        sessions.insert(" (" + user + ")");
    }
    return isUser(field) || field.found == "unknown" || isAnyUpTo(field.limit, sessions, field.found);
}

bool isAddress(const Case& field) {
    return isAnyUpTo(field.limit, field.station.addresses, field.found);
}

bool isDnsName(const Case& field) {
    return isAnyUpTo(field.limit, field.station.dnsNames, field.found);
}

bool isMacAddress(const Case& field) {
    return isAnyUpTo(field.limit, field.station.macAddresses, field.found) || field.found == "unknown";
}

// The station registers under any of its names, addresses or MAC addresses, in a session with a mark.
bool isStation(const Case& field) {
    Texts stations = {"UNKNOWN"};
    for (const Texts* kind :
         {&field.station.names, &field.station.dnsNames, &field.station.addresses, &field.station.macAddresses})
        for (const std::string& text : *kind)
            for (const std::string& part : {text, text.substr(0, text.find(';'))})
                stations.insert({upperCase(part), upperCase(part) + "#1"});
    return isAnyUpTo(field.limit, united(stations, {"UNKNOWN#1"}), field.found);
}

// Parts of the text that could not be read are missing in it.
bool isBeginOrEndOfExpected(const Case& field) {
    return field.expected.starts_with(field.found) || field.expected.ends_with(field.found);
}

bool isTerminalServer(const Case& field) {
    return isBeginOrEndOfExpected(field) || field.found == "Microsoft Terminal Server";
}

// Processors that could not be read are missing; with none, their kind's fixed text stands there, with the revision
// behind it.
bool isProcessorName(const Case& field) {
    return isRegistryList(field) || isFixedText(field.found) || isBeginOrEndOfExpected(field);
}

// A version that could not be read is missing behind the browser's name.
bool isBrowserList(const Case& field) {
    return isListOf(united({"Opera "}, partsOf(field.expected)), field.found, field.found.size() == field.limit);
}

bool isMonitor(const Case& field) {
    return isRegistryText(field) || field.found == "unknown";
}

// The CD-ROM drives, of which the BIOS date's length cuts the last one.
bool isPartOfCdRomDrives(const Case& field) {
    Texts roots;
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        roots.insert(std::string(1, letter) + ":\\");
    return isListOf(roots, field.found, true);
}

// The session's suffix "|ICA 219 17": the build and the product behind the protocol may be missing.
Texts sessionSuffixes(const std::string& whole) {
    const std::size_t build = whole.find(' ');
    const std::size_t product = whole.rfind(' ');
    if (build == std::string::npos)
        return {""};
    Texts suffixes = {""};
    for (const std::string& number : {whole.substr(build, product - build), std::string(" ")})
        for (const std::string& id : {whole.substr(product), std::string(" ")})
            suffixes.insert(whole.substr(0, build) + number + id);
    return suffixes;
}

// Drives are missing, or the suffix or parts of it.
bool isPartOfRemovableDrives(const Case& field) {
    const std::size_t bar = std::min(field.expected.find('|'), field.expected.size());
    const std::size_t foundBar = std::min(field.found.find('|'), field.found.size());
    return isListOf(united({}, partsOf(field.expected.substr(0, bar))), field.found.substr(0, foundBar), false) &&
           sessionSuffixes(field.expected.substr(bar)).contains(field.found.substr(foundBar));
}

bool isPartOfFixedDrives(const Case& field) {
    return isListOf(field.station.fixedDrives, field.found, field.found.size() == field.limit);
}

struct Rule {
    std::string_view field;
    bool (*explains)(const Case& field);
};

// A field that is not listed stays as it is or is empty.
constexpr Rule kRules[] = {
    {"szStation", isStation},
    {"szUserName", isUserOrUnknown},
    {"szKeyboard", isRegistryOrFixedText},
    {"szSystemIdentifier", isRegistryText},
    {"szDiskDevices", isCountedList},
    {"szCDRomDevices", isCountedList},
    {"szTapeDevices", isCountedList},
    {"szOtherDevices", isCountedList},
    {"szPrinters", isRegistryList},
    {"szCDRomDrives", isPartOfCdRomDrives},
    {"szRemovableDrives", isPartOfRemovableDrives},
    {"szFixedDrives", isPartOfFixedDrives},
    {"szTSProduct", isBeginOrEndOfExpected},
    {"szDnsName", isDnsName},
    {"szDefaultGateway", isRegistryList},
    {"szSubnetMask", isRegistryList},
    {"szProtocols", isRegistryList},
    {"szNetworkDrivers", isRegistryList},
    {"szServerIPAddress", isAddress},
    {"szServerMACAddress", isMacAddress},
    {"szTSClientName", isName},
    {"szMailClient", isRegistryList},
    {"szProviders", isRegistryList},
    {"szBrowser", isBrowserList},
    {"szIPAddress", isAddress},
    {"szNetworkAdapters", isRegistryList},
    {"szClientName", isName},
    {"szBiosVersion", isRegistryText},
    {"szCurrentUser", isCurrentUser},
    {"szProcessorName", isProcessorName},
    {"szMonitor", isMonitor},
    {"szVideoAdapter", isRegistryList},
    {"szTSVersion", isTerminalServer},
    {"szServerName", isName},
    {"szMACAddress", isMacAddress},
    {"szBiosDate", isRegistryText},
    {"szWinUser", isUser},
};

struct Limit {
    std::string_view field;
    std::size_t limit;
};
constexpr Limit kLimits[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning, source) {#name, limit},
#define KV_NUMBER(name, offset, group, meaning, source)
#define KV_UNSIGNED(name, offset, group, meaning, source)
#include "include/kvcstat_fields.inc"
};

std::size_t limitOf(const std::string& field) {
    return std::find_if(std::begin(kLimits), std::end(kLimits), [&](const Limit& one) { return one.field == field; })
        ->limit;
}

bool isExplained(const StationTexts& texts, const std::string& name, const std::string& expected,
                 const std::string& found) {
    if (found == expected || found.empty())
        return true;
    const auto* rule =
        std::find_if(std::begin(kRules), std::end(kRules), [&](const Rule& one) { return one.field == name; });
    return rule != std::end(kRules) && rule->explains({texts, expected, found, limitOf(name)});
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
        if (!isExplained(texts, name, std::get<std::string>(expected[i].second), text))
            lines.push_back(name + " is '" + text + "'");
    }
    return lines;
}

}  // namespace kvtest
