#include "kvstation/redact/Redaction.h"

#include <algorithm>
#include <string_view>

#include "kvstation/cause/OtherTexts.h"
#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/StandIns.h"
#include "simwin/Address.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::OptionalText;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;

constexpr std::size_t kIPv4Size = 4;
constexpr std::size_t kIPv6Size = 16;

// Variables and registry values that tell a name.
constexpr std::string_view kSecretVariables[] = {"CLIENTNAME",  "COMPUTERNAME",  "KVRDPClientName", "KVUser",
                                                 "LOGONSERVER", "USERDNSDOMAIN", "USERDOMAIN",      "USERNAME"};
constexpr std::string_view kAddressVariables[] = {"KVIP", "KVRDPClientIP"};
constexpr std::string_view kSecretValues[] = {"AltDefaultDomainName",
                                              "AltDefaultUserName",
                                              "ComputerName",
                                              "DefaultDomainName",
                                              "DefaultUserName",
                                              "DhcpDomain",
                                              "Domain",
                                              "Hostname",
                                              "NV Hostname",
                                              "ProductId",
                                              "RegisteredOrganization",
                                              "RegisteredOwner"};
constexpr std::string_view kAddressValues[] = {"DefaultGateway", "DhcpIPAddress", "DhcpServer", "IPAddress",
                                               "NameServer"};

// A program's version may look like an address; these places tell that it is one. The module takes its way by some
// (the Citrix server's, the first digit of Netscape's) and shows others. A version that stands elsewhere, such as in
// the name of a folder, is taken for an address: to the module it is a text like any.
constexpr std::string_view kVersionInName = "version";  // of a registry value or a variable
constexpr std::string_view kVersionVariables[] = {"KVTSBuildNo"};
constexpr std::string_view kKeyOfVersions = "Netscape";  // the names of the keys below it

// Words of Windows and of the product that the module or a program asks for; a name made of them stays in paths.
constexpr std::string_view kCommonWords =
    "Windows Microsoft NT System System32 Software Program Files Version Service Pack Server Client Terminal "
    "unknown Citrix MetaFrame WinFrame Presentation Enterprise Internet Explorer Outlook Exchange Netscape Mozilla "
    "Firefox Opera HP LaserJet winspool keyboard display net DiskPeripheral DiskDrive CdRomPeripheral "
    "TapePeripheral nameuserprincipal com dll exe htmlfile ICA RDP wfica32 mstscax iexplore NTFS FAT FAT32 "
    "REGISTRY Machine Logical Unit Id Default_Monitor LanmanWorkstation NetBT Tcpip Intel Pentium AMD "
    "iexplor iexplore netscp netscp6 Navigator Gold Auto Created Printer CDROM Monitor Parameters Linkage Clients Mail "
    "DEVICEMAP VIDEO Scsi ESDI ISAPNP PCI Main CentralProcessor Classes Interfaces Adapters Components 0000 0001 "
    "AttachedComponents Class DeviceDesc Driver DriverDesc Description Device Name Port PathToExe Bind Settings "
    "HardwareInformation AdapterString Identifier MHz ProcessorNameString MachineType IPAddress IPMask SubNetMask TCP "
    "DefaultGateway DefaultDomainName ProviderOrder ProductId ProductName ProductSuite ProductVersion RegisteredOwner "
    "RegisteredOrganization BIOSDate BIOSVersion SystemBiosDate SystemBiosVersion VideoBiosDate VideoBiosVersion";

template <class List>
bool isAmong(const List& list, std::string_view name) {
    return std::ranges::any_of(list, [&](std::string_view one) { return simwin::equalNoCase(one, name); });
}

bool holdsNoCase(std::string_view text, std::string_view lowerPart) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return simwin::toLower(c); });
    return lower.find(lowerPart) != std::string::npos;
}

bool isSecretValue(std::string_view name) {
    return isAmong(kSecretValues, name) || holdsNoCase(name, "serial");
}
TextPlace placeOfValue(std::string_view name) {
    return holdsNoCase(name, kVersionInName) ? TextPlace::Version : TextPlace::Anywhere;
}
TextPlace placeOfVariable(std::string_view name) {
    return isAmong(kVersionVariables, name) ? TextPlace::Version : placeOfValue(name);
}
bool isNumber(const RegistryValue& value) {
    return value.type == static_cast<std::uint32_t>(simwin::RegistryType::DWord) ||
           value.type == static_cast<std::uint32_t>(simwin::RegistryType::QWord);
}

// What the module asks for by name and what it compares with stands in its sources.
std::set<std::string> vocabulary() {
    std::set<std::string> words = wordsOf(kCommonWords);
    for (const std::string_view word : moduleWords())
        words.merge(wordsOf(word));
    for (const std::string_view name : moduleNames())
        words.merge(wordsOf(name));
    return words;
}

std::string narrowed(std::string_view wide) {
    std::string text;
    for (std::size_t i = 0; i < wide.size(); i += 2)
        text += wide[i];
    return text;
}
std::string widened(std::string_view text) {
    std::string wide;
    for (const char character : text)
        wide += {character, '\0'};
    return wide;
}

// Visits every key with its full path, parents first.
template <class Visit>
void eachKey(const RegistryTree& tree, KeyId key, Visit& visit) {
    visit(key);
    for (std::size_t i = 0; const std::string* name = tree.subKeyName(key, i); ++i)
        eachKey(tree, *tree.find(key, *name), visit);
}

template <class Visit>
void eachKey(const RegistryTree& tree, Visit visit) {
    for (const simwin::Hive hive : {simwin::Hive::LocalMachine, simwin::Hive::CurrentUser, simwin::Hive::Users,
                                    simwin::Hive::CurrentConfig, simwin::Hive::DynData, simwin::Hive::PerformanceData})
        eachKey(tree, tree.root(hive), visit);
}

// Calls replace(text, place) for the names of a key's path, which take the place of the old ones. The hive's stays.
template <class Replace>
std::string replacePath(std::string_view path, Replace replace) {
    std::string made;
    auto place = TextPlace::Anywhere;
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t end = std::min(path.find('\\', from), path.size());
        const std::string_view name = path.substr(from, end - from);
        made += from == 0 ? std::string(name) : "\\" + replace(name, place);
        if (simwin::equalNoCase(name, kKeyOfVersions))
            place = TextPlace::Version;
        from = end + 1;
    }
    return made;
}

// The wide texts in binary data: at least three characters of one byte and a NUL each, at even or at odd places. Calls
// replace(text) for each, which gives one of the same length.
template <class Replace>
void replaceWide(std::string& bytes, Replace replace) {
    constexpr std::size_t kShortest = 3;
    for (std::size_t start : {std::size_t{0}, std::size_t{1}}) {
        while (start + 1 < bytes.size()) {
            std::string text;
            for (std::size_t i = start; i + 1 < bytes.size() && bytes[i] != '\0' && bytes[i + 1] == '\0'; i += 2)
                text += bytes[i];
            if (text.size() >= kShortest) {
                text = replace(text);
                for (std::size_t i = 0; i < text.size(); ++i)
                    bytes[start + 2 * i] = text[i];
            }
            start += 2 * text.size() + 2;
        }
    }
}

// Whether it is wide text as a whole, its NULs included.
bool isWide(std::string_view bytes) {
    for (std::size_t i = 1; i < bytes.size(); i += 2)
        if (bytes[i] != '\0')
            return false;
    return bytes.size() % 2 == 0 && bytes.size() >= 4;
}

// Windows calls the session at the machine itself so: nobody's name, and it tells why a station passes for a session.
bool isName(const simwin::Variable& variable) {
    return isAmong(kSecretVariables, variable.name) && !simwin::equalNoCase(variable.value, "Console");
}

// Texts that are names as a whole.
std::vector<OptionalText*> namesOf(Station& station) {
    simwin::User& user = station.user;
    simwin::StationNetwork& network = station.network;
    return {&station.computerName, &user.name,      &user.samCompatible, &user.displayName, &user.principal,
            &user.network,         &user.directory, &network.hostName,   &network.lanGroup, &network.domain};
}

class Redactor {
  public:
    explicit Redactor(const Station& station) : m_standIns(vocabulary()), m_station(station) {
        findNames();
        findAddresses();
        findInRegistry();
        findInTexts();
    }

    Station redact() {
        redactNames();
        redactNetwork();
        redactTexts();
        redactRegistry();
        return std::move(m_station);
    }

  private:
    void addName(const OptionalText& text) {
        if (text)
            m_standIns.addName(*text);
    }
    void addName(const std::optional<simwin::CompanionText>& text) {
        if (text)
            m_standIns.addName(text->text);
    }
    void whole(OptionalText& text) {
        if (text)
            *text = m_standIns.whole(*text);
    }
    void whole(std::optional<simwin::CompanionText>& text) {
        if (text)
            text->text = m_standIns.whole(text->text);
    }

    void findNames() {
        for (const OptionalText* text : namesOf(m_station))
            addName(*text);
        addName(m_station.session.clientName);
        addName(m_station.session.domain);
        if (m_station.citrix)
            addName(m_station.citrix->clientName);
        for (const simwin::Variable& variable : m_station.environment)
            if (isName(variable))
                m_standIns.addName(variable.value);
        for (const simwin::Host& host : m_station.network.hosts)
            m_standIns.addName(host.name + " " + host.hostName);
        // An address without a name of its own may stand here by itself.
        for (const simwin::ReverseEntry& entry : m_station.network.addresses)
            if (!simwin::parseDotted(entry.name))
                m_standIns.addName(entry.name);
    }

    // All addresses in a text that tells addresses.
    void addAddresses(std::string_view text) {
        for (const NamedPart& part : namedPartsOf(text))
            if (part.kind == PartKind::Address || part.kind == PartKind::ServerAddress)
                m_standIns.addAddress(part.text);
    }

    void findAddresses() {
        for (const simwin::Host& host : m_station.network.hosts)
            for (const std::string& address : host.addresses)
                if (address.size() == kIPv4Size)
                    m_standIns.addAddress(simwin::dotted(address));
                else if (address.size() != kIPv6Size)
                    m_standIns.addPhysical(address);
        for (const simwin::ReverseEntry& entry : m_station.network.addresses)
            addAddresses(entry.address + " " + entry.name);
        for (const simwin::ArpEntry& entry : m_station.network.arp) {
            m_standIns.addAddress(entry.address);
            m_standIns.addPhysical(entry.physical);
        }
        for (const simwin::Lana& lana : m_station.network.netbios)
            if (lana.address)
                m_standIns.addPhysical(*lana.address);
        if (m_station.session.clientAddress)
            addAddresses(m_station.session.clientAddress->text);
        for (const simwin::Variable& variable : m_station.environment)
            if (isAmong(kAddressVariables, variable.name))
                addAddresses(variable.value);
    }

    void findInRegistry() {
        const RegistryTree& tree = m_station.registry;
        eachKey(tree, [&](KeyId key) {
            learnPath(tree.path(key));
            for (std::size_t i = 0; const RegistryValue* value = tree.value(key, i); ++i) {
                m_standIns.learn(value->name);
                if (!isNumber(*value))
                    findInValue(*value);
            }
        });
    }

    void findInValue(const RegistryValue& value) {
        if (isAmong(kAddressValues, value.name))
            addAddresses(value.bytes);
        if (isSecretValue(value.name)) {
            m_standIns.addName(isWide(value.bytes) ? narrowed(value.bytes) : value.bytes);
            return;
        }
        const TextPlace place = placeOfValue(value.name);
        m_standIns.learn(value.bytes, place);
        std::string bytes = value.bytes;
        replaceWide(bytes, [&](const std::string& text) {
            m_standIns.learn(text, place);
            return text;
        });
    }

    void learnPath(const std::string& path) {
        replacePath(path, [&](std::string_view name, TextPlace place) {
            m_standIns.learn(name, place);
            return std::string();
        });
    }

    // Calls visit(text, place) for every text that may hold names and addresses among others.
    template <class Visit>
    void eachText(Visit visit) {
        visit(m_station.description, TextPlace::Anywhere);
        for (simwin::Variable& variable : m_station.environment)
            if (!isName(variable))
                visit(variable.value, placeOfVariable(variable.name));
        for (simwin::File& file : m_station.files)
            visit(file.path, TextPlace::Anywhere);
        for (simwin::ProfileEntry& entry : m_station.profile)
            visit(entry.value, TextPlace::Anywhere);
        for (auto& [letter, drive] : m_station.drives)
            if (drive.label)
                visit(*drive.label, TextPlace::Anywhere);
        if (m_station.session.clientAddress)
            visit(m_station.session.clientAddress->text, TextPlace::Anywhere);
    }

    void findInTexts() {
        eachText([&](const std::string& text, TextPlace place) { m_standIns.learn(text, place); });
        for (const std::vector<std::string>* keys : {&m_station.deniedKeys, &m_station.unknown})
            for (const std::string& key : *keys)
                learnPath(key);
        for (const simwin::MemberPath& path : m_station.absent)
            if (simwin::parseDotted(path.back()))
                m_standIns.addAddress(path.back());
            else if (path.size() > 1 && path[1] == "hosts")
                m_standIns.addName(path.back());
    }

    void redactNames() {
        for (OptionalText* text : namesOf(m_station))
            whole(*text);
        whole(m_station.session.clientName);
        whole(m_station.session.domain);
        if (m_station.citrix)
            whole(m_station.citrix->clientName);
    }

    void redactNetwork() {
        for (simwin::Host& host : m_station.network.hosts) {
            host.hostName = m_standIns.whole(host.hostName);
            host.name = m_standIns.whole(host.name);
            for (std::string& address : host.addresses)
                address = redactAddress(address);
        }
        for (simwin::ReverseEntry& entry : m_station.network.addresses) {
            entry.address = m_standIns.address(entry.address);
            entry.name =
                simwin::parseDotted(entry.name) ? m_standIns.address(entry.name) : m_standIns.whole(entry.name);
        }
        for (simwin::ArpEntry& entry : m_station.network.arp)
            entry = {m_standIns.address(entry.address), m_standIns.physical(entry.physical)};
        for (simwin::Lana& lana : m_station.network.netbios)
            if (lana.address)
                lana.address = m_standIns.physical(*lana.address);
    }

    std::string redactAddress(const std::string& bytes) {
        if (bytes.size() == kIPv4Size)
            return *simwin::parseDotted(m_standIns.address(simwin::dotted(bytes)));
        return bytes.size() == kIPv6Size ? m_standIns.longAddress(bytes) : m_standIns.physical(bytes);
    }

    void redactTexts() {
        for (simwin::Variable& variable : m_station.environment)
            if (isName(variable))
                variable.value = m_standIns.whole(variable.value);
        eachText([&](std::string& text, TextPlace place) { text = m_standIns.inside(text, place); });
        for (auto& [letter, drive] : m_station.drives)
            drive.serial = m_standIns.number(drive.serial);
        for (std::string& key : m_station.deniedKeys)
            key = redactPath(key);
        for (simwin::MemberPath& path : m_station.absent)
            redactMember(path);
        for (std::string& one : m_station.unknown)
            one = simwin::splitHive(one) ? redactPath(one) : m_standIns.inside(one);
    }

    // The last name may be an address, a host or a file.
    void redactMember(simwin::MemberPath& path) {
        simwin::Utf8Error error{};
        const std::optional<std::string> name = simwin::fromUtf8(path.back(), error);
        if (!name)
            return;
        const bool isHost = path.size() > 1 && path[1] == "hosts";
        path.back() = simwin::toUtf8(simwin::parseDotted(*name) ? m_standIns.address(*name)
                                     : isHost                   ? m_standIns.whole(*name)
                                                                : m_standIns.inside(*name));
    }

    std::string redactPath(const std::string& path) {
        return replacePath(path,
                           [&](std::string_view name, TextPlace place) { return m_standIns.inside(name, place); });
    }

    std::string redactBytes(const RegistryValue& value) {
        if (isNumber(value))
            return value.bytes;
        if (isSecretValue(value.name))
            return isWide(value.bytes) ? widened(m_standIns.whole(narrowed(value.bytes)))
                                       : m_standIns.whole(value.bytes);
        const TextPlace place = placeOfValue(value.name);
        std::string bytes = m_standIns.inside(m_standIns.physicalInside(value.bytes), place);
        replaceWide(bytes, [&](const std::string& text) { return m_standIns.inside(text, place); });
        return bytes;
    }

    void redactRegistry() {
        const RegistryTree old = std::move(m_station.registry);
        m_station.registry = RegistryTree();
        eachKey(old, [&](KeyId key) {
            const std::string made = redactPath(old.path(key));
            m_station.registry.create(made);
            for (std::size_t i = 0; const RegistryValue* value = old.value(key, i); ++i)
                m_station.registry.set(made, {m_standIns.inside(value->name), value->type, redactBytes(*value)});
        });
    }

    StandIns m_standIns;
    Station m_station;
};

}  // namespace

Station redacted(const Station& station) {
    Station result = Redactor(station).redact();
    result.description += result.description.empty() ? "redacted" : ", redacted";
    return result;
}

}  // namespace kvstation
