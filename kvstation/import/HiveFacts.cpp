#include "kvstation/import/HiveFacts.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>

#include "kvstation/import/HiveEnvironment.h"
#include "kvstation/import/HiveValues.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::Processors;
using simwin::RegistryType;
using simwin::Station;
using simwin::WindowsVersion;

constexpr std::string_view kVersion = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr std::string_view kVersion9x = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr std::string_view kControl = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control";
constexpr std::string_view kTcpip = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters";

constexpr std::string_view kTcpip9x = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\VxD\\MSTCP";

constexpr std::uint32_t kWindows9x = 1;
constexpr std::uint32_t kWindowsNT = 2;
// Beyond these GetComputerNameA has no room.
constexpr std::size_t kLongestComputerName = 15;

std::string controlKey(std::string_view name) {
    return std::string(kControl) + "\\" + std::string(name);
}

template <class Number>
std::optional<Number> parse(std::string_view text, int base = 10) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::optional<std::uint32_t> numberIn(const HiveValues& values, std::string_view name) {
    return parse<std::uint32_t>(values.text(name).value_or(""));
}

struct MajorMinor {
    std::uint32_t major;
    std::uint32_t minor;
};

// Numbers since Windows 10; before, the text "6.1", which is "6.3" ever since.
std::optional<MajorMinor> majorAndMinor(const HiveValues& values) {
    std::optional<std::uint32_t> major = values.number("CurrentMajorVersionNumber");
    std::optional<std::uint32_t> minor = values.number("CurrentMinorVersionNumber");
    const std::string text = values.text("CurrentVersion").value_or("");
    if (const std::size_t dot = text.find('.'); (!major || !minor) && dot != std::string::npos) {
        major = parse<std::uint32_t>(text.substr(0, dot));
        minor = parse<std::uint32_t>(text.substr(dot + 1));
    }
    return major && minor ? std::optional(MajorMinor{*major, *minor}) : std::nullopt;
}

// Since Windows XP the suite is always there; before, it is listed where it is installed.
void describeTerminalServices(HiveRegistry& registry, HiveFacts& facts, WindowsVersion& version) {
    const HiveValues options(registry, controlKey("ProductOptions"));
    const std::vector<std::string> suites = options.texts("ProductSuite");
    const bool isAlways = version.major > 5 || (version.major == 5 && version.minor > 0);
    version.terminalServices = isAlways || std::ranges::find(suites, "Terminal Server") != suites.end();
    if (!isAlways && options.mayHaveLost("ProductSuite", RegistryType::MultiText))
        facts.lost.emplace_back("version.terminalServices");
}

void describeServicePack(const HiveValues& values, std::string_view name, HiveFacts& facts, WindowsVersion& version) {
    version.servicePack = values.text(name).value_or("");
    if (values.mayHaveLost(name, RegistryType::Text))
        facts.lost.emplace_back("version.servicePack");
}

// "4.90.3000"; what Windows NT calls a service pack is a letter here.
void describeVersion9x(HiveRegistry& registry, HiveFacts& facts) {
    const HiveValues values(registry, kVersion9x);
    const std::string text = values.text("VersionNumber").value_or("");
    const std::size_t first = text.find('.');
    const std::size_t second = first != std::string::npos ? text.find('.', first + 1) : first;
    if (second == std::string::npos)
        return;
    const auto major = parse<std::uint32_t>(text.substr(0, first));
    const auto minor = parse<std::uint32_t>(text.substr(first + 1, second - first - 1));
    const auto build = parse<std::uint32_t>(text.substr(second + 1));
    if (!major || !minor || !build)
        return;
    WindowsVersion version{
        .platformId = kWindows9x, .major = *major, .minor = *minor, .build = *build, .servicePack = {}};
    describeServicePack(values, "SubVersionNumber", facts, version);
    facts.station.version = version;
}

void describeVersion(HiveRegistry& registry, HiveFacts& facts) {
    if (registry.isWindows9x())
        return describeVersion9x(registry, facts);
    const HiveValues values(registry, kVersion);
    const std::optional<MajorMinor> number = majorAndMinor(values);
    const std::optional<std::uint32_t> build = numberIn(values, "CurrentBuildNumber");
    if (!number || !build)
        return;
    WindowsVersion version{
        .platformId = kWindowsNT, .major = number->major, .minor = number->minor, .build = *build, .servicePack = {}};
    describeServicePack(values, "CSDVersion", facts, version);
    describeTerminalServices(registry, facts, version);
    facts.station.version = version;
}

void describeNames(HiveRegistry& registry, Station& station) {
    const auto computer = HiveValues(registry, controlKey("ComputerName\\ComputerName")).text("ComputerName");
    if (computer && !computer->empty() && computer->size() <= kLongestComputerName)
        station.computerName = computer;
    const auto host = HiveValues(registry, registry.isWindows9x() ? kTcpip9x : kTcpip).text("Hostname");
    if (host && !host->empty())
        station.network.hostName = host;
}

void describeCodePages(HiveRegistry& registry, HiveFacts& facts) {
    const HiveValues values(registry, controlKey("Nls\\CodePage"));
    const std::optional<std::uint32_t> oem = numberIn(values, "OEMCP");
    facts.knowsOemCodePage = oem.has_value();
    if (oem)
        facts.station.codePages.oem = *oem;
    facts.station.codePages.ansi = simwin::codePageInForce();
}

struct Architecture {
    std::string_view name;
    std::uint16_t number;
    std::uint32_t type;  // what GetSystemInfo gives for every level but those below
};

constexpr Architecture kArchitectures[] = {{"x86", 0, 586},   {"MIPS", 1, 4000},  {"ALPHA", 2, 21064}, {"PPC", 3, 604},
                                           {"IA64", 6, 2200}, {"AMD64", 9, 8664}, {"ARM64", 12, 0}};

struct LevelType {
    std::uint16_t architecture;
    std::uint16_t level;
    std::uint32_t type;
};

constexpr LevelType kLevelTypes[] = {{0, 3, 386}, {0, 4, 486}, {3, 1, 601}, {3, 3, 603}, {3, 6, 603}, {3, 20, 620}};

std::uint32_t typeOf(const Architecture& architecture, std::uint16_t level) {
    for (const LevelType& one : kLevelTypes)
        if (one.architecture == architecture.number && one.level == level)
            return one.type;
    return architecture.type;
}

// Windows writes these variables of the machine at each start, from what GetSystemInfo tells.
void describeProcessors(HiveRegistry& registry, Station& station) {
    const HiveValues values(registry, controlKey("Session Manager\\Environment"));
    const std::string name = values.text("PROCESSOR_ARCHITECTURE").value_or("");
    const auto* known = std::ranges::find_if(
        kArchitectures, [&](const Architecture& one) { return simwin::equalNoCase(one.name, name); });
    const auto count = numberIn(values, "NUMBER_OF_PROCESSORS");
    const auto level = parse<std::uint16_t>(values.text("PROCESSOR_LEVEL").value_or(""));
    const auto revision = parse<std::uint16_t>(values.text("PROCESSOR_REVISION").value_or(""), 16);
    if (known == std::end(kArchitectures) || !count || !level || !revision)
        return;
    station.processors = Processors{.architecture = known->number,
                                    .count = *count,
                                    .type = typeOf(*known, *level),
                                    .level = *level,
                                    .revision = *revision,
                                    .currentMhz = {}};
}

bool isServer(HiveRegistry& registry) {
    const std::string type = HiveValues(registry, controlKey("ProductOptions")).text("ProductType").value_or("");
    return !type.empty() && !simwin::equalNoCase(type, "WinNT");
}

}  // namespace

HiveFacts factsOf(HiveRegistry& registry) {
    HiveFacts facts;
    describeVersion(registry, facts);
    describeNames(registry, facts.station);
    describeCodePages(registry, facts);
    describeProcessors(registry, facts.station);
    facts.station.environment = environmentOf(registry);
    facts.isServer = isServer(registry);
    return facts;
}

}  // namespace kvstation
