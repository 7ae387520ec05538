#include "kvstation/redact/Redaction.h"

#include <algorithm>
#include <string_view>

#include "kvstation/redact/BinaryTexts.h"
#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/StandIns.h"
#include "kvstation/redact/TextPlace.h"
#include "kvstation/redact/WindowsWords.h"
#include "simwin/station/StationMembers.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;
using simwin::Tells;

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

template <class List>
bool isAmong(const List& list, std::string_view name) {
    return std::ranges::any_of(list, [&](std::string_view one) { return simwin::equalNoCase(one, name); });
}

bool isSecretValue(std::string_view name) {
    return isAmong(kSecretValues, name) || simwin::lowerCase(name).find("serial") != std::string::npos;
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
    for (const simwin::Hive hive : simwin::kOwnHives)
        eachKey(tree, tree.root(hive), visit);
}

// Calls replace(text, place) for the names of a key's path, which take the place of the old ones. The hive's stays.
template <class Replace>
std::string replacePath(std::string_view path, Replace replace) {
    std::string made;
    auto place = TextPlace::Anywhere;
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t end = std::min(simwin::findCharacter(path, '\\', from), path.size());
        const std::string_view name = path.substr(from, end - from);
        made += from == 0 ? std::string(name) : "\\" + replace(name, place);
        if (simwin::equalNoCase(name, kKeyOfVersions))
            place = TextPlace::Version;
        from = end + 1;
    }
    return made;
}

// Windows calls the session at the machine itself so: nobody's name, and it tells why a station passes for a session.
bool isName(const simwin::Variable& variable) {
    return isAmong(kSecretVariables, variable.name) && !simwin::equalNoCase(variable.value, "Console");
}

class Redactor {
  public:
    Redactor(const Station& station, Redacting extent)
        : m_standIns(askedWords()), m_station(station), m_everything(extent == Redacting::Everything) {
        if (m_everything)
            m_standIns.leaveNothing();
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
    // Calls visit(text) for the members of station.json that tell just that.
    template <class Visit>
    void eachTelling(Tells what, Visit visit) {
        simwin::eachToldText(m_station, [&](std::string& text, Tells tells) {
            if (tells == what)
                visit(text);
        });
    }

    void findNames() {
        eachTelling(Tells::Name, [&](const std::string& name) { m_standIns.addName(name); });
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
        const PageText characters = pageText(text);
        for (const NamedPart& part : namedPartsOf(characters))
            if (part.kind == PartKind::Address || part.kind == PartKind::ServerAddress)
                m_standIns.addAddress(bytesOf(part.text));
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
        eachTelling(Tells::Addresses, [&](const std::string& text) { addAddresses(text); });
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
                if (!simwin::isNumber(*value))
                    findInValue(*value);
            }
        });
    }

    void findInValue(const RegistryValue& value) {
        if (isAmong(kAddressValues, value.name))
            addAddresses(value.bytes);
        if (isSecretValue(value.name)) {
            m_standIns.addName(wideTextOf(value.bytes, simwin::isText(value)).value_or(value.bytes));
            return;
        }
        findInBytes(value.bytes, simwin::isText(value), placeIn(value.name));
    }

    // As redactBytes() replaces.
    void findInBytes(std::string bytes, bool isText, TextPlace place) {
        m_standIns.learn(bytes, place);
        const auto learn = [&](const std::string& text) {
            m_standIns.learn(text, place);
            return text;
        };
        if (!isText)
            replaceAscii(bytes, learn);
        replaceAnyWide(bytes, learn);
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
        eachTelling(Tells::Words, [&](std::string& text) { visit(text, TextPlace::Anywhere); });
        eachTelling(Tells::Addresses, [&](std::string& text) { visit(text, TextPlace::Anywhere); });
        eachTelling(Tells::Version, [&](std::string& text) { visit(text, TextPlace::Version); });
        for (simwin::Variable& variable : m_station.environment)
            if (!isName(variable))
                visit(variable.value, placeIn(variable.name));
        for (simwin::File& file : m_station.files)
            visit(file.path, TextPlace::Anywhere);
        for (simwin::ProfileEntry& entry : m_station.profile)
            visit(entry.value, TextPlace::Anywhere);
    }

    void findInTexts() {
        eachText([&](const std::string& text, TextPlace place) { m_standIns.learn(text, place); });
        for (const simwin::File& file : m_station.files)
            if (file.resource)
                findInBytes(*file.resource, false, TextPlace::Version);
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
        eachTelling(Tells::Name, [&](std::string& name) { name = m_standIns.whole(name); });
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
            one = redactUnknown(one);
        for (simwin::File& file : m_station.files)
            if (file.resource)
                file.resource = redactBytes(*file.resource, false, TextPlace::Version);
        if (m_everything)
            redactOwnNames();
    }

    // Names that the module asks for stay, as in every text.
    void redactOwnNames() {
        for (simwin::Variable& variable : m_station.environment)
            variable.name = m_standIns.inside(variable.name);
        for (simwin::ProfileEntry& entry : m_station.profile)
            entry = {m_standIns.inside(entry.section), m_standIns.inside(entry.entry), entry.value};
    }

    // A key, a variable, a file, or a member that every station has.
    std::string redactUnknown(const std::string& unknown) {
        if (simwin::splitHive(unknown))
            return redactPath(unknown);
        for (const std::string_view naming : {"environment.", "files."})
            if (unknown.starts_with(naming))
                return std::string(naming) + m_standIns.inside(unknown.substr(naming.size()));
        return unknown;
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
        if (simwin::isNumber(value))
            return value.bytes;
        if (!isSecretValue(value.name))
            return redactBytes(value.bytes, simwin::isText(value), placeIn(value.name));
        const std::optional<std::string> wide = wideTextOf(value.bytes, simwin::isText(value));
        return wide ? widened(m_standIns.whole(*wide)) : m_standIns.whole(value.bytes);
    }
    std::string redactBytes(std::string_view data, bool isText, TextPlace place) {
        std::string bytes = m_standIns.inside(m_standIns.physicalInside(data), place);
        const auto inside = [&](const std::string& text) { return m_standIns.inside(text, place); };
        if (!isText)
            replaceAscii(bytes, inside);
        replaceWideLatin(bytes, inside);
        replaceAnyWide(bytes, [&](const std::string& text) { return m_standIns.insideKnown(text, place); });
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
    bool m_everything;
};

}  // namespace

Station redacted(const Station& station, Redacting extent) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    Station result = Redactor(station, extent).redact();
    result.description += result.description.empty() ? "redacted" : ", redacted";
    return result;
}

}  // namespace kvstation
