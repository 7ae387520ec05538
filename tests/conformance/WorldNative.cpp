// The simulated Windows as the suite's world: the arrangement is a station.
#include <algorithm>
#include <optional>

#include "simwin/machine/Machine.h"
#include "simwin/text/CodePage.h"
#include "tests/conformance/Arrangement.h"
#include "tests/conformance/World.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr char kKey[] = "Software\\kvconform-1";
constexpr char kFolder[] = "C:\\Users\\jdoe\\Temp\\kvconform-1";

std::string below(const char* root, std::string_view path) {
    return path.empty() ? root : std::string(root) + "\\" + std::string(path);
}

bool isStoredAsText(std::uint32_t type) {
    const auto known = static_cast<simwin::RegistryType>(type);
    return known == simwin::RegistryType::Text || known == simwin::RegistryType::ExpandText ||
           known == simwin::RegistryType::MultiText;
}

// A station tells keys in the order in which Windows enumerates and exports them: sorted by their upper-case names.
std::vector<DescribedKey> sortedKeys() {
    std::vector<DescribedKey> keys = describedKeys();
    std::sort(keys.begin(), keys.end(), [](const DescribedKey& left, const DescribedKey& right) {
        return simwin::compareNoCase(left.path, right.path) < 0;
    });
    return keys;
}

void describeRegistry(simwin::Station& station) {
    for (const DescribedKey& key : sortedKeys()) {
        const std::string path = "HKEY_CURRENT_USER\\" + below(kKey, key.path);
        station.registry.create(path);
        for (const DescribedValue& value : key.values)
            station.registry.set(path, {value.name, value.type,
                                        isStoredAsText(value.type) ? simwin::fromUtf16(value.stored) : value.stored});
    }
}

void describeFiles(simwin::Station& station) {
    for (const DescribedFile& file : describedFiles()) {
        simwin::File& described = station.files.emplace_back();
        described.path = below(kFolder, file.path);
        if (file.hasVersion)
            described.version = {1, 0, 0, 0};
    }
}

void describeNames(simwin::Station& station) {
    station.computerName = "PC-LAB3";
    station.user.name = "jdoe";
    station.user.samCompatible = "PC-LAB3\\jdoe";
    station.user.network = "jdoe";
    for (const DescribedVariable& variable : describedVariables())
        station.environment.push_back({variable.name, variable.value});
    for (const DescribedEntry& entry : describedEntries())
        station.profile.push_back({kSection, entry.name, entry.written});
}

void describeHardware(simwin::Station& station) {
    constexpr std::uint64_t kGigabyte = std::uint64_t{1} << 30;
    station.version = simwin::WindowsVersion{2, 6, 1, 7601, "Service Pack 1", true};
    station.keyboard = simwin::Keyboard{4, 0};
    station.process = simwin::Process{1234, 1};
    station.processors = simwin::Processors{9, 2, 8664, 6, 0x3A09, {2400, 2400}};
    station.memory = simwin::Memory{8 * kGigabyte, 128 * 1024 * kGigabyte};
    station.drives['C'] = {DRIVE_FIXED, "SYSTEM", "NTFS", 0x12345678, 80 * kGigabyte, 20 * kGigabyte, {}, {}};
}

void describeNetwork(simwin::Station& station) {
    simwin::StationNetwork& network = station.network;
    network.hostName = "pc-lab3";
    network.hosts = {{"pc-lab3", "pc-lab3", 2, {"\x0A\0\0\5"s}},
                     {"localhost", "localhost", 2, {"\x7F\0\0\1"s}},
                     {"127.0.0.1", "127.0.0.1", 2, {"\x7F\0\0\1"s}}};
    network.addresses = {{"127.0.0.1", "pc-lab3"}};
    network.arp = {{"10.0.0.1", "\2\0\0\0\0\1"s}};
    network.netbios = {{0, "\2\0\0\0\0\5"s}};
    network.lanGroup = "WORKGROUP";
    station.session.id = 1;
    station.citrix.emplace().clientName = simwin::CompanionText{"THIN07"};
    station.vcdVersion = 41;
}

simwin::Station describe(UINT ansiCodePage) {
    simwin::Station station;
    if (ansiCodePage != 0)
        station.codePages.ansi = ansiCodePage;
    describeRegistry(station);
    describeFiles(station);
    describeNames(station);
    describeHardware(station);
    describeNetwork(station);
    return station;
}

}  // namespace

struct World::State {
    explicit State(UINT ansiCodePage) : machine(describe(ansiCodePage)) {}

    simwin::Machine machine;
    simwin::Machine::Scope scope{machine};
};

World::World(UINT ansiCodePage) : m_state(std::make_unique<State>(ansiCodePage)) {}
World::~World() = default;

Platform World::platform() const {
    return Platform::Simulated;
}

std::string World::platformText() const {
    return "simwin";
}

std::string World::key(std::string_view path) const {
    return below(kKey, path);
}

std::string World::folder(std::string_view path) const {
    return below(kFolder, path);
}

std::string World::driveRoot() const {
    return "C:\\";
}

std::string World::missingRoot() const {
    return "Q:\\";
}

void World::setLastError(DWORD error) {
    m_state->machine.setLastError(error);
}

UINT World::ansiCodePage() const {
    return m_state->machine.station().codePages.ansi;
}

std::vector<std::string> World::traced() const {
    std::vector<std::string> lines;
    for (const simwin::TraceLine& line : m_state->machine.traceLines())
        lines.push_back(std::to_string(line.level) + " " + line.component + ": " + line.text);
    return lines;
}

}  // namespace conformance
