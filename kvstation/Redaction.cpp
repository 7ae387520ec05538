#include "kvstation/Redaction.h"

#include <algorithm>
#include <string_view>

#include "kvstation/FieldTable.h"
#include "kvstation/Sources.h"
#include "kvstation/StandIns.h"
#include "kvstation/Steps.h"
#include "simwin/Address.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::OptionalText;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;

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

// Words of Windows and of the product that the module or a program asks for; a name made of them stays in paths.
constexpr std::string_view kCommonWords =
    "Windows Microsoft NT System System32 Software Program Files Version Service Pack Server Client Terminal "
    "unknown Citrix MetaFrame WinFrame Presentation Enterprise Internet Explorer Outlook Exchange Netscape Mozilla "
    "Firefox Opera HP LaserJet winspool keyboard display net DiskPeripheral DiskDrive CdRomPeripheral "
    "TapePeripheral nameuserprincipal com dll exe htmlfile ICA RDP wfica32 mstscax iexplore NTFS FAT FAT32 "
    "REGISTRY Machine Logical Unit Id Default_Monitor LanmanWorkstation NetBT Tcpip Intel Pentium AMD";

template <class List>
bool isAmong(const List& list, std::string_view name) {
    return std::ranges::any_of(list, [&](std::string_view one) { return simwin::equalNoCase(one, name); });
}

bool isSecretValue(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](char c) { return simwin::toLower(c); });
    return isAmong(kSecretValues, name) || lower.find("serial") != std::string::npos;
}

std::set<std::string> vocabulary() {
    std::set<std::string> words = wordsOf(kCommonWords);
    const auto add = [&](std::string_view text) { words.merge(wordsOf(text)); };
    for (const StepMark& mark : stepMarks())
        add(mark.argument);
    for (const Field& field : fields())
        for (const Source& source : sourcesOf(field.name))
            if (source.asked != Asked::Field) {
                add(source.what);
                add(source.item);
            }
    return words;
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
    }

    Station redact() {
        redactNames();
        redactNetwork();
        redactTexts();
        redactRegistry();
        return std::move(m_station);
    }

  private:
    void addWords(const OptionalText& text) {
        if (text)
            m_standIns.addWords(*text);
    }
    void addWords(const std::optional<simwin::CompanionText>& text) {
        if (text)
            m_standIns.addWords(text->text);
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
            addWords(*text);
        addWords(m_station.session.clientName);
        addWords(m_station.session.domain);
        if (m_station.citrix)
            addWords(m_station.citrix->clientName);
        for (const simwin::Variable& variable : m_station.environment)
            if (isName(variable))
                m_standIns.addWords(variable.value);
        for (const simwin::Host& host : m_station.network.hosts)
            m_standIns.addWords(host.name + " " + host.hostName);
        // An address without a name of its own may stand here by itself.
        for (const simwin::ReverseEntry& entry : m_station.network.addresses)
            if (!simwin::parseDotted(entry.name))
                m_standIns.addWords(entry.name);
    }

    // All addresses in a text, wherever they stand in it.
    void addAddresses(std::string_view text) {
        std::string run;
        for (std::size_t i = 0; i <= text.size(); ++i) {
            const char character = i < text.size() ? text[i] : '\0';
            if ((character >= '0' && character <= '9') || character == '.') {
                run += character;
            } else {
                m_standIns.addAddress(run);
                run.clear();
            }
        }
    }

    void findAddresses() {
        for (const simwin::Host& host : m_station.network.hosts)
            for (const std::string& address : host.addresses)
                if (address.size() == 4)
                    m_standIns.addAddress(simwin::dotted(address));
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
            for (std::size_t i = 0; const RegistryValue* value = tree.value(key, i); ++i) {
                if (isSecretValue(value->name) &&
                    value->type != static_cast<std::uint32_t>(simwin::RegistryType::DWord))
                    m_standIns.addWords(value->bytes);
                if (isAmong(kAddressValues, value->name))
                    addAddresses(value->bytes);
            }
        });
    }

    void redactNames() {
        for (OptionalText* text : namesOf(m_station))
            whole(*text);
        whole(m_station.session.clientName);
        whole(m_station.session.domain);
        if (m_station.citrix)
            whole(m_station.citrix->clientName);
        if (m_station.session.clientAddress)
            m_station.session.clientAddress->text = m_standIns.inside(m_station.session.clientAddress->text);
    }

    void redactNetwork() {
        for (simwin::Host& host : m_station.network.hosts) {
            host.hostName = m_standIns.whole(host.hostName);
            host.name = m_standIns.whole(host.name);
            for (std::string& address : host.addresses)
                if (address.size() == 4)
                    address = *simwin::parseDotted(m_standIns.address(simwin::dotted(address)));
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

    void redactTexts() {
        m_station.description = m_standIns.inside(m_station.description);
        for (simwin::Variable& variable : m_station.environment)
            variable.value = isName(variable) ? m_standIns.whole(variable.value) : m_standIns.inside(variable.value);
        for (simwin::File& file : m_station.files)
            file.path = m_standIns.inside(file.path);
        for (simwin::ProfileEntry& entry : m_station.profile)
            entry.value = m_standIns.inside(entry.value);
        for (auto& [letter, drive] : m_station.drives) {
            drive.serial = m_standIns.number(drive.serial);
            if (drive.label)
                drive.label = m_standIns.inside(*drive.label);
        }
        for (std::string& key : m_station.deniedKeys)
            key = m_standIns.inside(key);
    }

    // Binary values may hold wide text, as an adapter's description does.
    std::string redactBytes(const RegistryValue& value) {
        switch (static_cast<simwin::RegistryType>(value.type)) {
            case simwin::RegistryType::DWord:
            case simwin::RegistryType::QWord:
                return value.bytes;
            default:
                break;
        }
        std::string narrow;
        bool isWide = value.bytes.size() % 2 == 0 && value.bytes.size() >= 4;
        for (std::size_t i = 1; isWide && i < value.bytes.size(); i += 2) {
            isWide = value.bytes[i] == '\0';
            narrow += value.bytes[i - 1];
        }
        if (!isWide)
            return isSecretValue(value.name) ? m_standIns.whole(value.bytes) : m_standIns.inside(value.bytes);
        std::string wide;
        for (const char character : m_standIns.inside(narrow))
            wide += {character, '\0'};
        return wide;
    }

    void redactRegistry() {
        const RegistryTree old = std::move(m_station.registry);
        m_station.registry = RegistryTree();
        eachKey(old, [&](KeyId key) {
            const std::string path = old.path(key);
            const std::size_t hive = path.find('\\');
            const std::string made =
                hive == std::string::npos ? path : path.substr(0, hive) + m_standIns.inside(path.substr(hive));
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
