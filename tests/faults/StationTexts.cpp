#include "tests/faults/StationTexts.h"

#include <algorithm>

#include "simwin/Address.h"
#include "simwin/Calls.h"
#include "simwin/CodePage.h"

namespace kvtest {
namespace {

using simwin::KeyId;
using simwin::RegistryType;
using simwin::RegistryValue;

constexpr simwin::Hive kHives[] = {simwin::Hive::LocalMachine, simwin::Hive::CurrentUser, simwin::Hive::Users,
                                   simwin::Hive::CurrentConfig, simwin::Hive::DynData};

std::string firstText(const std::string& bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

// The items of a multi-string value as they are read: "a//b".
std::string joinedItems(const std::string& bytes) {
    std::string joined;
    for (std::size_t start = 0; start < bytes.size() && bytes[start] != '\0';) {
        const std::size_t end = std::min(bytes.find('\0', start), bytes.size());
        joined += (joined.empty() ? "" : "//") + bytes.substr(start, end - start);
        start = end + 1;
    }
    return joined;
}

// The whole text, and its parts, because lists are made of texts that have ";" in them.
void addWithParts(std::set<std::string>& texts, const std::string& text) {
    texts.insert(text);
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(';', start), text.size());
        texts.insert(text.substr(start, end - start));
        start = end + 1;
    }
}

void addValue(std::set<std::string>& texts, const RegistryValue& value) {
    addWithParts(texts, value.name);
    addWithParts(texts, firstText(value.bytes));
    if (value.type == static_cast<std::uint32_t>(RegistryType::MultiText))
        addWithParts(texts, joinedItems(value.bytes));
    if (value.type == static_cast<std::uint32_t>(RegistryType::Binary))
        addWithParts(texts, firstText(simwin::fromUtf16(value.bytes)));
}

void addKey(std::set<std::string>& texts, const simwin::RegistryTree& registry, KeyId key) {
    for (std::size_t i = 0; const RegistryValue* value = registry.value(key, i); ++i)
        addValue(texts, *value);
    for (std::size_t i = 0; const std::string* name = registry.subKeyName(key, i); ++i) {
        addWithParts(texts, *name);
        addKey(texts, registry, *registry.find(key, *name));
    }
}

void addInBothCases(std::set<std::string>& texts, const std::string& text) {
    texts.insert(text);
    texts.insert(upperCase(text));
}

void addIfThere(std::set<std::string>& texts, const simwin::OptionalText& text) {
    if (text)
        addInBothCases(texts, *text);
}

void addIfThere(std::set<std::string>& texts, const std::optional<simwin::CompanionText>& text) {
    if (text)
        addInBothCases(texts, text->text);
}

void addVariable(std::set<std::string>& texts, const simwin::Station& station, std::string_view name) {
    for (const simwin::Variable& variable : station.environment) {
        if (simwin::equalNoCase(variable.name, name))
            addInBothCases(texts, variable.value);
    }
}

void addUsers(std::set<std::string>& users, const simwin::Station& station) {
    const simwin::User& user = station.user;
    for (const simwin::OptionalText* form :
         {&user.name, &user.samCompatible, &user.displayName, &user.principal, &user.network, &user.directory})
        addIfThere(users, *form);
    addVariable(users, station, "KVUser");
}

void addNames(std::set<std::string>& names, const simwin::Station& station) {
    addIfThere(names, station.computerName);
    addIfThere(names, station.session.clientName);
    if (station.citrix)
        addIfThere(names, station.citrix->clientName);
    addVariable(names, station, "CLIENTNAME");
    addVariable(names, station, "KVRDPClientName");
}

void addAddresses(StationTexts& texts, const simwin::Station& station) {
    const simwin::StationNetwork& network = station.network;
    for (const simwin::Host& host : network.hosts) {
        texts.dnsNames.insert(host.name);
        for (const std::string& address : host.addresses)
            texts.addresses.insert(simwin::dotted(address));
    }
    addIfThere(texts.addresses, station.session.clientAddress);
    addVariable(texts.addresses, station, "KVIP");
    addVariable(texts.addresses, station, "KVRDPClientIP");
    addIfThere(texts.dnsNames, network.hostName);
    for (const simwin::ReverseEntry& entry : network.addresses)
        texts.dnsNames.insert(entry.name);
    texts.dnsNames.insert(texts.addresses.begin(), texts.addresses.end());
}

std::string hexadecimal(const std::string& bytes) {
    std::string digits;
    for (const char byte : bytes) {
        digits += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        digits += "0123456789ABCDEF"[static_cast<unsigned char>(byte) & 15];
    }
    return digits;
}

void addMacAddresses(std::set<std::string>& addresses, const simwin::StationNetwork& network) {
    for (const simwin::ArpEntry& entry : network.arp)
        addresses.insert(hexadecimal(entry.physical));
    for (const simwin::Lana& lana : network.netbios) {
        if (lana.address)
            addresses.insert(hexadecimal(*lana.address));
    }
}

constexpr char kNoSize[] = "0 MB -2147483648% free) ";

std::string describeSize(std::uint64_t totalBytes, std::uint64_t freeBytes) {
    const std::uint64_t total = totalBytes >> 20;
    const std::uint64_t free = freeBytes >> 20;
    if (total == 0)
        return kNoSize;
    const float part = static_cast<float>(free) / static_cast<float>(total);
    return std::to_string(total) + " MB " + std::to_string(static_cast<int>(static_cast<double>(part) * 100.0)) +
           "% free) ";
}

std::set<std::string> sizes(const simwin::Drive& drive) {
    std::set<std::string> all = {kNoSize};
    if (drive.space)
        all.insert(describeSize(drive.space->total, drive.space->free));
    if (drive.clusters) {
        const std::uint64_t cluster = std::uint64_t{drive.clusters->sectorsPerCluster} * drive.clusters->bytesPerSector;
        all.insert(describeSize(drive.clusters->total * cluster, drive.clusters->free * cluster));
    }
    return all;
}

void addFixedDrive(std::set<std::string>& drives, char letter, const simwin::Drive& drive) {
    const std::string label = drive.label.value_or("");
    for (const std::string& name : {std::string(), label.empty() ? label : "(" + label + ")"})
        for (const std::string& fileSystem : {std::string(), drive.fileSystem.value_or("")})
            for (const std::string& size : sizes(drive))
                drives.insert(letter + name + ":(" + fileSystem + ":" + size);
}

}  // namespace

std::string upperCase(std::string text) {
    sim__mbsupr(reinterpret_cast<unsigned char*>(text.data()));
    return text;
}

StationTexts::StationTexts(const simwin::Station& station) {
    for (const simwin::Hive hive : kHives)
        addKey(registry, station.registry, station.registry.root(hive));
    addNames(names, station);
    addUsers(users, station);
    addAddresses(*this, station);
    addMacAddresses(macAddresses, station.network);
    for (const auto& [letter, drive] : station.drives)
        addFixedDrive(fixedDrives, letter, drive);
}

}  // namespace kvtest
