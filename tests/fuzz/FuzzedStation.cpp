#include "tests/fuzz/FuzzedStation.h"

#include <span>
#include <string>
#include <string_view>

#include "simwin/calls/CallTable.h"
#include "tests/fuzz/FuzzedRegistry.h"
#include "tests/fuzz/FuzzedText.h"

namespace kvfuzz {
namespace {

using simwin::Station;

constexpr std::size_t kMostItems = 48;

// Set at random they choose the way through the module: these are the variables that it reads.
constexpr std::string_view kVariables[] = {
    "CLIENTNAME",      "KVUser",        "KVUserType",    "KVUSERNAMETYPE",         "KVStationType",
    "KVRDPClientName", "KVRDPClientIP", "USERDOMAIN",    "KVGetClientMACAddress",  "KVIP",
    "KVTSProtocol",    "KVTSBuildNo",   "KVTSProductID", "KVTSDefaultSrvSessions", "systemRoot",
};

simwin::OptionalText readOptional(InputReader& input) {
    return input.below(4) != 0 ? simwin::OptionalText(readText(input)) : std::nullopt;
}

simwin::CompanionText readCompanionText(InputReader& input) {
    std::string text = readText(input);
    const std::uint8_t flags = input.byte();
    return {std::move(text), flags & 3, (flags & 4) == 0};
}

// The version, and by bits of it the code pages.
unsigned readVersion(InputReader& input, Station& station) {
    static constexpr std::uint32_t kMajors[] = {4, 5, 6, 10, 0};
    simwin::WindowsVersion& version = station.version.emplace();
    const std::uint8_t choice = input.byte();
    version.platformId = choice % 8 == 0 ? 0 : choice % 8 == 1 ? 3 : choice % 8 < 5 ? 1 : 2;
    version.terminalServices = (choice & 8) != 0;
    version.major = input.oneOf(kMajors);
    version.minor = input.byte();
    version.build = input.number();
    version.servicePack = readText(input);
    if ((choice & 0x40) != 0)
        station.codePages.oem = version.build;
    const std::span<const unsigned> pages = simwin::knownCodePages();
    return (choice & 0x20) != 0 ? pages[version.build % pages.size()] : simwin::kDefaultCodePage;
}

void readUser(InputReader& input, Station& station) {
    simwin::User& user = station.user;
    for (simwin::OptionalText* text :
         {&user.name, &user.samCompatible, &user.displayName, &user.principal, &user.network, &user.directory})
        *text = readOptional(input);
}

void readProcessors(InputReader& input, Station& station) {
    simwin::Processors& processors = station.processors.emplace();
    static constexpr std::uint32_t kTypes[] = {386, 486, 586, 4000, 21064, 0};
    processors.architecture = input.byte() % 6;
    processors.count = input.byte();
    processors.type = input.oneOf(kTypes);
    processors.level = input.word();
    processors.revision = input.word();
    processors.currentMhz.resize(input.below(3), input.number());
}

void readDrive(InputReader& input, Station& station) {
    simwin::Drive& drive = station.drives[static_cast<char>('A' + input.below(26))];
    const std::uint8_t choice = input.byte();
    drive.type = choice % 8u;
    drive.serial = choice / 8u;  // of the same byte, so that the corpus keeps its meaning
    drive.label = readOptional(input);
    drive.fileSystem = readOptional(input);
    if (input.flag()) {
        drive.total = input.large();
        drive.free = input.large();
        drive.totalFree = input.large();
    }
    if (input.flag())
        drive.clusters = simwin::Clusters{input.number(), input.number(), input.number(), input.number()};
}

void readFile(InputReader& input, Station& station) {
    static constexpr std::string_view kPaths[] = {
        "C:\\Program Files\\Citrix\\ICA Client\\wfica32.exe",
        "C:\\progra~1\\citrix\\icacli~1\\wfica32.exe",
        "C:\\Opera\\opera.exe",
        "C:\\WINDOWS\\system32\\mstscax.dll",
        "C:\\Program Files\\Netscape\\netscp.exe",
    };
    simwin::File file{std::string(input.oneOf(kPaths)), {}, {}};
    switch (input.below(3)) {
        case 0:
            file.version = {input.word(), input.word(), input.word(), input.word()};
            break;
        case 1:
            file.resource = std::string(input.bytes(input.byte()));
            break;
        default:
            break;
    }
    station.files.push_back(std::move(file));
}

// Answers keep nothing of what a resolver promises: lengths, null pointers, no addresses.
void readHost(InputReader& input, Station& station) {
    simwin::Host host;
    host.hostName = station.network.hostName.value_or("pc-lab3");
    host.name = readText(input);
    host.addressType = input.flag() ? 2 : input.byte();
    const std::size_t length = input.flag() ? 4 : 1 + input.below(16);
    for (std::size_t count = input.below(4); count > 0; --count) {
        host.addresses.emplace_back(input.bytes(length));
        host.addresses.back().resize(length);
    }
    const std::uint8_t breaks = input.byte();
    host.nullName = (breaks & 7) == 1;
    host.nullAddresses = (breaks & 7) == 2;
    if ((breaks & 7) == 3)
        host.lengthSaid = static_cast<std::int8_t>(input.byte());
    station.network.hosts.push_back(std::move(host));
}

void readNetwork(InputReader& input, Station& station) {
    simwin::StationNetwork& network = station.network;
    switch (input.below(8)) {
        case 0:
            network.hostName = readOptional(input);
            break;
        case 1:
        case 2:
            readHost(input, station);
            break;
        case 3:
            network.addresses.push_back({readAddress(input), readText(input)});
            break;
        case 4:
            network.arp.push_back({readAddress(input), std::string(input.bytes(input.below(17)))});
            break;
        case 5:
            network.netbios.push_back({input.byte(), readOptional(input)});
            break;
        case 6:
            network.lanGroup = readOptional(input);
            break;
        default:
            network.domain = readOptional(input);
            break;
    }
}

void readSession(InputReader& input, Station& station) {
    switch (input.below(6)) {
        case 0:
            station.session.clientName = readCompanionText(input);
            break;
        case 1:
            station.session.clientAddress = readCompanionText(input);
            break;
        case 2:
            station.session.domain = readCompanionText(input);
            break;
        case 3:
            station.session.id = static_cast<int>(input.number());
            break;
        case 4:
            station.citrix.emplace();
            if (input.flag())
                station.citrix->clientName = readCompanionText(input);
            break;
        default:
            station.vcdVersion = static_cast<int>(input.number());
            break;
    }
}

void readMachine(InputReader& input, Station& station) {
    switch (input.below(6)) {
        case 0:
            station.computerName = readOptional(input);
            break;
        case 1:
            station.memory = simwin::Memory{input.large(), input.large()};
            break;
        case 2:
            station.keyboard = simwin::Keyboard{static_cast<int>(input.below(9)), input.byte()};
            break;
        case 3:
            station.process =
                simwin::Process{input.number(), input.flag() ? std::optional(input.number()) : std::nullopt};
            break;
        case 4:
            station.profile.push_back({"windows", "device", readText(input)});
            break;
        default:
            readProcessors(input, station);
            break;
    }
}

// What a machine lacks or refuses.
void readRefusal(InputReader& input, Station& station, const std::string& key) {
    const simwin::CallEntry& call = input.oneOf(simwin::callTable());
    switch (input.below(4)) {
        case 0:
            station.missing.emplace_back(call.library);
            break;
        case 1:
            station.missing.push_back(std::string(call.library) + "!" + std::string(call.name));
            break;
        case 2:
            station.fails[std::string(call.name)] = 1u + input.byte();
            break;
        default:
            if (!key.empty())
                station.deniedKeys.push_back(key);
            break;
    }
}

}  // namespace

std::span<const std::string_view> fuzzedVariables() {
    return kVariables;
}

Station readFuzzedStation(InputReader& input, std::optional<unsigned> codePage) {
    Station station;
    station.network.hostName = "pc-lab3";
    const unsigned chosen = readVersion(input, station);
    station.codePages.ansi = codePage.value_or(chosen);
    const simwin::CodePageScope scope(station.codePages.ansi);
    std::string lastKey;
    for (std::size_t items = 0; items < kMostItems && !input.isAtEnd(); ++items) {
        switch (input.below(16)) {
            case 0:
            case 1:
                station.environment.push_back({std::string(input.oneOf(kVariables)), readText(input)});
                break;
            case 2:
            case 3:
                readNetwork(input, station);
                break;
            case 4:
                readSession(input, station);
                break;
            case 5:
                readMachine(input, station);
                break;
            case 6:
                readUser(input, station);
                break;
            case 7:
                readDrive(input, station);
                break;
            case 8:
                readFile(input, station);
                break;
            case 9:
                readRefusal(input, station, lastKey);
                break;
            default:
                lastKey = addRegistryItem(input, station.registry);
                break;
        }
    }
    return station;
}

}  // namespace kvfuzz
