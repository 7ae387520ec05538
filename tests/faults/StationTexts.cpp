// Users, names, addresses and drives.
#include "tests/faults/StationTexts.h"

#include <algorithm>

#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

namespace kvtest {
namespace {

constexpr std::uint32_t kFixed = 3;  // GetDriveTypeA's number

void addIfThere(Texts& texts, const std::string& text) {
    if (!text.empty())
        texts.insert(text);
}

void addUpperCase(Texts& texts, const simwin::OptionalText& text) {
    if (text)
        texts.insert(upperCase(*text));
}

// A to Z alone.
std::string plainUpperCase(std::string text) {
    for (char& character : text)
        character = character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
    return text;
}

std::string hexadecimal(const std::string& bytes) {
    std::string digits;
    for (const char byte : bytes) {
        digits += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        digits += "0123456789ABCDEF"[static_cast<unsigned char>(byte) & 15];
    }
    return digits;
}

// A size that cannot be read is 0, and its percentage that of a division by 0.
std::string describeSize(std::uint64_t totalBytes, std::uint64_t freeBytes) {
    const std::uint64_t total = totalBytes >> 20;
    const std::uint64_t free = freeBytes >> 20;
    if (total == 0)
        return "0 MB -2147483648% free) ";
    const float part = static_cast<float>(free) / static_cast<float>(total);
    return std::to_string(total) + " MB " + std::to_string(static_cast<int>(static_cast<double>(part) * 100.0)) +
           "% free) ";
}

// A system that cannot tell sizes in bytes does not have the function.
bool tellsBytes(const simwin::Station& station, const simwin::Drive& drive) {
    return drive.total && std::find(station.missing.begin(), station.missing.end(),
                                    "KERNEL32.DLL!GetDiskFreeSpaceExA") == station.missing.end();
}

// In bytes, and in clusters where that question fails. Only a drive that has no more than the second answer loses its
// size altogether.
Texts sizes(const simwin::Station& station, const simwin::Drive& drive) {
    constexpr std::uint64_t kClusterSize = 4096;  // of a drive whose clusters are not described
    Texts all = {tellsBytes(station, drive) ? describeSize(*drive.total, drive.free) : describeSize(0, 0)};
    if (drive.clusters) {
        const std::uint64_t cluster = std::uint64_t{drive.clusters->sectorsPerCluster} * drive.clusters->bytesPerSector;
        all.insert(describeSize(drive.clusters->total * cluster, drive.clusters->free * cluster));
    } else if (drive.total) {
        all.insert(describeSize(*drive.total / kClusterSize * kClusterSize, drive.free / kClusterSize * kClusterSize));
    }
    return all;
}

}  // namespace

StationTexts::StationTexts(const simwin::Station& station) : m_station(station), m_registry(station.registry) {}

std::uint32_t StationTexts::platform() const {
    return m_station.version ? m_station.version->platformId : 0;
}

std::string StationTexts::variable(std::string_view name) const {
    const auto& all = m_station.environment;
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const auto& one) { return simwin::equalNoCase(one.name, name); });
    return found != all.end() ? found->value : std::string();
}

bool StationTexts::isPrincipalWanted() const {
    return simwin::equalNoCase(variable("KVUSERNAMETYPE"), "nameuserprincipal");
}

// The administrator's choice as it stands. Without it the kind of name that is asked for; behind each kind stands the
// Windows account, which is also what counts when the kind cannot be read.
Texts StationTexts::userNames() const {
    const simwin::User& user = m_station.user;
    const std::string type = variable("KVUserType").substr(0, 1);
    Texts names = {"UNKNOWN"};
    addIfThere(names, variable("KVUser"));
    addUpperCase(names, user.name);
    if (type == "2")
        addUpperCase(names, user.directory);
    else if (isPrincipalWanted())
        addUpperCase(names, user.principal);
    if (type == "1" || (type != "2" && isPrincipalWanted()))
        addUpperCase(names, user.network);
    return names;
}

// The form of the name that is asked for when another one was wanted and that cannot be read. A principal name never
// stands in for an account's.
Texts StationTexts::windowsUsers() const {
    Texts names;
    addUpperCase(names, m_station.user.samCompatible);
    return names;
}

Texts StationTexts::accounts() const {
    return {m_station.user.name.value_or("unknown"), "unknown"};
}

// Each of these is a source of its own, chosen by a question that can fail.
Texts StationTexts::clientNames() const {
    const auto settings = m_registry.text("SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings", "KVVDIClient");
    const bool isVirtualDesktop = settings == "1";
    Texts names;
    addIfThere(names, variable("KVRDPClientName"));
    addIfThere(names, variable("CLIENTNAME"));
    addIfThere(names, plainUpperCase(m_station.computerName.value_or("")));
    if (m_station.session.clientName && (isVirtualDesktop || hasClient()))
        addIfThere(names, m_station.session.clientName->text);
    if (m_station.citrix && m_station.citrix->clientName && isVirtualDesktop)
        addIfThere(names, m_station.citrix->clientName->text);
    return names;
}

// The variable, in upper case on the way that asks for the Microsoft product, until the wrapper knows better.
Texts StationTexts::sessionClientNames() const {
    if (!hasClient())
        return {};
    Texts names = {variable("CLIENTNAME"), upperCase(variable("CLIENTNAME"))};
    if (m_station.session.clientName && m_station.session.clientName->result != 0)
        addIfThere(names, m_station.session.clientName->text);
    return names;
}

// The administrator's choice, and the first address of the host's own name.
Texts StationTexts::ownAddresses() const {
    Texts addresses;
    addIfThere(addresses, variable("KVIP"));
    for (const simwin::Host& host : m_station.network.hosts) {
        if (simwin::equalNoCase(host.hostName, m_station.network.hostName.value_or("")) && !host.addresses.empty())
            addresses.insert(simwin::dotted(host.addresses.front()));
    }
    return addresses;
}

Texts StationTexts::clientAddresses() const {
    return hasClient() && m_station.session.clientAddress ? Texts{m_station.session.clientAddress->text} : Texts();
}

// An address without a name is its own.
std::string StationTexts::nameOf(const std::string& address) const {
    for (const simwin::ReverseEntry& entry : m_station.network.addresses) {
        if (entry.address == address)
            return entry.name;
    }
    return address;
}

// The host's own name is left where it does not resolve.
Texts StationTexts::ownDnsNames() const {
    Texts names;
    addIfThere(names, m_station.network.hostName.value_or(""));
    for (const std::string& address : ownAddresses())
        names.insert(nameOf(address));
    return names;
}

// Only the first of a client's addresses is asked for its name.
Texts StationTexts::clientDnsNames() const {
    Texts names;
    for (const std::string& addresses : clientAddresses())
        names.insert(nameOf(addresses.substr(0, addresses.find(';'))));
    return names;
}

Texts StationTexts::macAddresses(const Texts& addresses) const {
    Texts found;
    for (const simwin::ArpEntry& entry : m_station.network.arp) {
        if (addresses.contains(entry.address))
            found.insert(hexadecimal(entry.physical));
    }
    return found;
}

// The first adapter that tells its status: the next one when that fails.
Texts StationTexts::adapterMacAddresses() const {
    Texts found;
    for (const simwin::Lana& lana : m_station.network.netbios) {
        if (lana.address)
            found.insert(hexadecimal(*lana.address));
    }
    return found;
}

Items StationTexts::roots(std::uint32_t driveType) const {
    Items items;
    for (const auto& [letter, drive] : m_station.drives) {
        if (drive.type == driveType)
            items.push_back({std::string(1, letter) + ":\\"});
    }
    return items;
}

// Label and file system are asked for twice: one failure leaves them as they are.
Items StationTexts::fixedDrives() const {
    Items items;
    for (const auto& [letter, drive] : m_station.drives) {
        if (drive.type != kFixed)
            continue;
        const std::string label = drive.label.value_or("");
        const std::string name = letter + (label.empty() ? label : "(" + label + ")");
        Texts texts;
        for (const std::string& size : sizes(m_station, drive))
            texts.insert(name + ":(" + drive.fileSystem.value_or("") + ":" + size);
        items.push_back(texts);
    }
    return items;
}

}  // namespace kvtest
