#include "kvstation/redact/Redaction.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "kvstation/redact/BinaryTexts.h"
#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/StandIns.h"
#include "kvstation/redact/TextPlace.h"
#include "kvstation/redact/WindowsWords.h"
#include "simwin/station/StationMembers.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Station;
using simwin::Tells;

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

// Of an address whose bytes alone are told.
const TextForm& formOfBytes(std::string_view bytes) {
    constexpr std::size_t kIPv4Size = 4;
    constexpr std::size_t kIPv6Size = 16;
    return bytes.size() == kIPv4Size ? kAddressForm : bytes.size() == kIPv6Size ? kLongAddressForm : kPhysicalForm;
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

// What a variable of that name tells. "Console" is what Windows calls the session at the machine itself: nobody's name,
// and it tells why a station passes for a session.
Tells tellsOf(std::string_view variable, std::string_view value) {
    if (isAmong(kSecretVariables, variable) && !simwin::equalNoCase(value, "Console"))
        return Tells::Name;
    if (isAmong(kAddressVariables, variable))
        return Tells::Addresses;
    return placeIn(variable) == TextPlace::Version ? Tells::Version : Tells::Words;
}

// A UTF-8 text with replace(part) in the place of each of its parts that the code page in force has, and that the names
// that are looked for are in. What it has not stays.
template <class Replace>
std::string replaceInPage(std::string_view utf8, Replace replace) {
    std::string made;
    std::string part;
    const auto endPart = [&] {
        if (!part.empty())
            made += simwin::toUtf8(replace(std::exchange(part, {})));
    };
    while (!utf8.empty()) {
        const std::string_view character = utf8.substr(0, std::max(simwin::decodeUtf8(utf8).length, std::size_t{1}));
        simwin::Utf8Error error{};
        if (const std::optional<std::string> bytes = simwin::fromUtf8(character, error)) {
            part += *bytes;
        } else {
            endPart();
            made += character;
        }
        utf8.remove_prefix(character.size());
    }
    endPart();
    return made;
}

template <class Visit>
void eachInPage(std::string_view utf8, Visit visit) {
    replaceInPage(utf8, [&](const std::string& part) {
        visit(part);
        return part;
    });
}

// A text of station.json.
struct Text {
    std::string* text;
    Tells tells;
    std::string name;  // under which it stands, where that is the station's own
};

class Redactor {
  public:
    Redactor(const Station& station, Redacting extent) : m_standIns(askedWords()), m_station(station) {
        if (extent == Redacting::Everything)
            m_standIns.leaveNothing();
        collectTexts();
        // This order, and that of redact(), is the one in which chance makes the stand-ins.
        findFrom(Tells::Name, Tells::Name);
        findFrom(Tells::AddressBytes, Tells::PhysicalBytes);
        findInRegistry();
        findFrom(Tells::Utf8Words, Tells::Last);
        eachAbsentName([&](const std::string& name, Tells tells) {
            eachInPage(name, [&](const std::string& part) { findIn(tells, part); });
        });
    }

    Station redact() {
        redactFrom(Tells::Name, Tells::OwnWords);
        for (auto& [letter, drive] : m_station.drives)
            drive.serial = m_standIns.number(drive.serial);
        redactFrom(Tells::Key, Tells::Key);
        eachAbsentName([&](std::string& name, Tells tells) {
            name = replaceInPage(name, [&](const std::string& part) { return redacted(tells, part); });
        });
        redactFrom(Tells::Unknown, Tells::Last);
        redactRegistry();
        return std::move(m_station);
    }

  private:
    void collectTexts() {
        simwin::eachToldText(m_station, [&](std::string& text, const simwin::Told& told) {
            m_texts.push_back({&text, told.tells, std::string(told.name)});
        });
        std::ranges::stable_sort(m_texts, {}, &Text::tells);
        for (Text& text : m_texts)
            if (text.tells == Tells::Setting)
                text.tells = tellsOf(text.name, *text.text);
    }

    // Calls visit(text) for the texts of these kinds.
    template <class Visit>
    void eachFrom(Tells first, Tells last, Visit visit) {
        for (const Text& text : m_texts)
            if (first <= text.tells && text.tells <= last)
                visit(text);
    }
    void findFrom(Tells first, Tells last) {
        eachFrom(first, last, [&](const Text& one) { findIn(one.tells, *one.text); });
    }
    void redactFrom(Tells first, Tells last) {
        eachFrom(first, last, [&](const Text& one) { *one.text = redacted(one.tells, *one.text); });
    }

    void findIn(Tells tells, const std::string& text) {
        switch (tells) {
            case Tells::Name:
                return m_standIns.addName(text);
            case Tells::AddressBytes:
                return m_standIns.of(formOfBytes(text)).learnBytes(text);
            case Tells::Address:
                return m_standIns.of(kAddressForm).learn(text, TextPlace::Address);
            case Tells::Host:
                if (!simwin::parseDotted(text))
                    m_standIns.addName(text);
                return addAddresses(text);
            case Tells::PhysicalBytes:
                return m_standIns.of(kPhysicalForm).learnBytes(text);
            case Tells::Addresses:
                return m_standIns.learn(text, TextPlace::Address);
            case Tells::Utf8Words:
                eachInPage(text, [&](const std::string& part) { m_standIns.learn(part); });
                return;
            case Tells::Words:
            case Tells::OwnWords:
            case Tells::OwnName:
                return m_standIns.learn(text);
            case Tells::Version:
                return m_standIns.learn(text, TextPlace::Version);
            case Tells::VersionBytes:
                return findInBytes(text, false, TextPlace::Version);
            case Tells::Key:
                return learnPath(text);
            case Tells::Unknown:
                return simwin::splitHive(text)
                           ? learnPath(text)
                           : m_standIns.learn(std::string_view(text).substr(simwin::ownNameIn(text)));
            case Tells::Nothing:
            case Tells::Setting:
                return;
        }
    }

    // Of a host's name, which is one as a whole: no other form is looked for in it.
    void addAddresses(std::string_view text) {
        const PageText characters = pageText(text);
        for (const NamedPart& part : namedPartsOf(characters))
            if (part.form == &kAddressForm)
                m_standIns.of(kAddressForm).learn(bytesOf(part.text), TextPlace::Address);
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
            m_standIns.learn(value.bytes, TextPlace::Address);
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
        eachKeyName(path, [&](std::string_view name, TextPlace place) { m_standIns.learn(name, place); });
    }

    // Calls visit(name, tells) for each name that is the station's own in what is told not to be there; such a
    // member's own name is none.
    template <class Visit>
    void eachAbsentName(Visit visit) {
        for (simwin::MemberPath& path : m_station.absent)
            for (std::size_t i = 0; i < path.size(); ++i)
                if (const Tells tells = simwin::toldAt(simwin::PathBelow(path).first(i)).names; tells != Tells::Nothing)
                    visit(path[i], tells);
    }

    std::string redacted(Tells tells, const std::string& text) {
        switch (tells) {
            case Tells::Name:
                return m_standIns.whole(text);
            case Tells::AddressBytes:
                return m_standIns.of(formOfBytes(text)).ofBytes(text);
            case Tells::Address:
                return redactAddress(text);
            case Tells::Host:
                return simwin::parseDotted(text) ? redactAddress(text) : m_standIns.whole(text);
            case Tells::PhysicalBytes:
                return m_standIns.of(kPhysicalForm).ofBytes(text);
            case Tells::Utf8Words:
                return replaceInPage(text, [&](const std::string& part) { return m_standIns.inside(part); });
            case Tells::Words:
            case Tells::Addresses:
            case Tells::OwnWords:
            case Tells::OwnName:  // what the module asks for stays, as in every text
                return m_standIns.inside(text);
            case Tells::Version:
                return m_standIns.inside(text, TextPlace::Version);
            case Tells::VersionBytes:
                return redactBytes(text, false, TextPlace::Version);
            case Tells::Key:
                return redactPath(text);
            case Tells::Unknown:
                return redactUnknown(text);
            case Tells::Nothing:
            case Tells::Setting:
                break;
        }
        return text;
    }

    std::string redactAddress(const std::string& dotted) {
        return m_standIns.of(kAddressForm).standIn(dotted, TextPlace::Address);
    }

    // A key, a variable, a file, or a member that every station has.
    std::string redactUnknown(const std::string& unknown) {
        if (simwin::splitHive(unknown))
            return redactPath(unknown);
        const std::size_t name = simwin::ownNameIn(unknown);
        return unknown.substr(0, name) + m_standIns.inside(unknown.substr(name));
    }

    // The hive's name stays.
    std::string redactPath(const std::string& path) {
        std::string made = path.substr(0, simwin::findCharacter(path, '\\'));
        eachKeyName(path,
                    [&](std::string_view name, TextPlace place) { made += "\\" + m_standIns.inside(name, place); });
        return made;
    }

    std::string redactBytes(const RegistryValue& value) {
        if (simwin::isNumber(value))
            return value.bytes;
        if (!isSecretValue(value.name))
            return redactBytes(value.bytes, simwin::isText(value), placeIn(value.name));
        const std::optional<std::string> wide = wideTextOf(value.bytes, simwin::isText(value));
        return wide ? widened(m_standIns.whole(*wide)) : m_standIns.whole(value.bytes);
    }
    std::string redactBytes(std::string bytes, bool isText, TextPlace place) {
        m_standIns.replaceIn(bytes);
        bytes = m_standIns.inside(bytes, place);
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
    std::vector<Text> m_texts;  // of m_station, in the order of Tells; variables where Setting is
};

}  // namespace

Station redacted(const Station& station, Redacting extent) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    Station result = Redactor(station, extent).redact();
    result.description += result.description.empty() ? "redacted" : ", redacted";
    return result;
}

}  // namespace kvstation
