// What the registry tells of the network, of programs and of terminal servers.
#include <algorithm>

#include "simwin/text/CodePage.h"
#include "tests/faults/StationTexts.h"

namespace kvtest {
namespace {

constexpr char kServices[] = "SYSTEM\\CurrentControlSet\\Services\\";

// A value with an address that is not configured in it is left out whole.
void addConfigured(Items& items, const std::optional<std::string>& text) {
    if (text && text->find("0.0.0.0") == std::string::npos)
        items.push_back({*text});
}

Items listed(const std::vector<std::string>& names) {
    Items items;
    for (const std::string& name : names)
        items.push_back({name});
    return items;
}

}  // namespace

std::vector<Items> StationTexts::subnetMasks() const {
    return adapterSettings("SubNetMask", "IPMask");
}

std::vector<Items> StationTexts::defaultGateways() const {
    return adapterSettings("DefaultGateway", "DefaultGateway");
}

// Only version 5 exactly looks at the interfaces: where the version cannot be read, it is another.
std::vector<Items> StationTexts::adapterSettings(const char* value, const char* value9x) const {
    if (isWindows9x())
        return {transportSettings(value9x)};
    const std::string services = kServices;
    Items bound;
    for (const std::string& name : m_registry.subKeyNames(services + "NetBT\\Adapters"))
        addConfigured(bound, m_registry.text(services + name + "\\Parameters\\Tcpip", value));
    Items interfaces;
    for (const std::string& name : m_registry.subKeyNames(services + "TCPIP\\Parameters\\Adapters"))
        addConfigured(interfaces, m_registry.text(services + "TCPIP\\Parameters\\Interfaces\\" + name, value));
    if (!isWindowsNT() || m_station.version->major != 5)
        return {bound};
    return {bound, interfaces};
}

Items StationTexts::transportSettings(const char* value) const {
    Items items;
    for (const auto key : m_registry.keysAt("SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*")) {
        if (simwin::equalNoCase(m_registry.text(key, "DriverDesc").value_or(""), "TCP/IP") &&
            m_registry.text(key, "IPAddress"))
            addConfigured(items, m_registry.text(key, value));
    }
    return items;
}

// The services of the network's providers, in the order in which they are asked.
std::vector<std::string> StationTexts::providerServices() const {
    const char* const order = "SYSTEM\\CurrentControlSet\\Control\\NetworkProvider\\Order";
    if (isWindows9x())
        return m_registry.valueNames(simwin::Hive::LocalMachine, order);
    return split(m_registry.text(order, "ProviderOrder").value_or(""), ",");
}

// A provider whose name cannot be read has an empty one.
Items StationTexts::providers() const {
    Items items;
    for (const std::string& service : providerServices()) {
        const std::string key = kServices + service + "\\NetworkProvider";
        if (!m_registry.keysAt(key).empty())
            items.push_back({m_registry.text(key, "Name").value_or(""), ""});
    }
    return items;
}

// The description of the first device of the service behind "\Device\NetBT_Tcpip_{...}".
std::optional<std::string> StationTexts::boundDevice(const std::string& binding) const {
    const std::vector<std::string> pieces = split(binding, "\\_");
    const auto instance = pieces.size() > 1 ? m_registry.text(kServices + pieces[1] + "\\Enum", "0") : std::nullopt;
    if (!instance)
        return std::nullopt;
    return m_registry.text("SYSTEM\\CurrentControlSet\\Enum\\" + *instance, "DeviceDesc");
}

// The transports of Windows 9x; on Windows NT the devices that the providers are bound to, each where it is first
// found: a binding that fails leaves a later one of the same device to be listed in its own place.
Items StationTexts::protocols() const {
    Items items;
    if (isWindows9x()) {
        for (const auto key : m_registry.keysAt("SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*")) {
            if (const auto description = m_registry.text(key, "DriverDesc"))
                items.push_back({*description});
        }
        return items;
    }
    for (const std::string& service : providerServices()) {
        for (const std::string& binding : m_registry.list(kServices + service + "\\Linkage", "Bind")) {
            if (const auto description = boundDevice(binding))
                items.push_back({*description});
        }
    }
    return items;
}

// Windows 9x: only these two enumerators are looked through.
std::vector<DescribedRegistry::KeyId> StationTexts::networkDevices() const {
    auto keys = m_registry.devicesAt("Enum\\Root\\*\\*", "net");
    const auto more = m_registry.devicesAt("Enum\\ISAPNP\\*\\*", "net");
    keys.insert(keys.end(), more.begin(), more.end());
    return keys;
}

// An adapter whose description cannot be read is listed as an empty item.
Items StationTexts::networkAdapters() const {
    const char* const cards = "Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards\\*";
    Items items;
    for (const auto key : isWindows9x() ? networkDevices() : m_registry.keysAt(cards))
        items.push_back({m_registry.text(key, isWindows9x() ? "DeviceDesc" : "Description").value_or(""), ""});
    return items;
}

// A driver whose description cannot be read goes by the device's.
Items StationTexts::networkDrivers() const {
    Items items;
    for (const auto key : isWindows9x() ? networkDevices() : DescribedRegistry::Keys()) {
        Texts texts = {m_registry.text(key, "DeviceDesc").value_or(""), ""};
        const std::string driver = kServices + ("Class\\" + m_registry.text(key, "Driver").value_or(""));
        texts.insert(m_registry.text(driver, "DriverDesc").value_or(""));
        items.push_back(texts);
    }
    return items;
}

Items StationTexts::mailClients() const {
    return listed(m_registry.subKeyNames("SOFTWARE\\Clients\\Mail"));
}

// Name and version, of which either may be missing: a missing version leaves the blank in front of it.
Texts StationTexts::citrixProducts() const {
    const char* const citrix = "SYSTEM\\CurrentControlSet\\Control\\Citrix";
    const std::string name = m_registry.text(citrix, "ProductName").value_or("");
    const std::string version = m_registry.text(citrix, "ProductVersion").value_or("");
    if (!hasClient())
        return {};
    return name.empty() ? Texts{version} : Texts{version, name + " "};
}

// The fixed text until the product's name is read, and no version without that.
Texts StationTexts::terminalServers() const {
    const char* const server = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";
    const auto name = m_registry.text(server, "ProductName");
    const auto version = m_registry.text(server, "ProductVersion");
    if (!hasClient() || m_registry.keysAt(server).empty())
        return {};
    Texts texts = {"Microsoft Terminal Server"};
    if (name)
        texts.insert({*name, version ? *name + " " + *version : *name});
    return texts;
}

}  // namespace kvtest
