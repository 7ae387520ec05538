// What each field of the record takes from a described station, by the sources that the field has: those that it has
// undisturbed, and those that it falls back to when a source fails.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/Station.h"
#include "tests/faults/DescribedRegistry.h"
#include "tests/faults/TextLists.h"

namespace kvtest {

class StationTexts {
  public:
    explicit StationTexts(const simwin::Station& station);  // which must outlive it

    // A client's name in the environment: the station is a session, unless a failure hides that.
    bool hasClient() const { return !variable("CLIENTNAME").empty(); }
    std::string variable(std::string_view name) const;  // empty when it is not set

    // Users and names.
    Texts userNames() const;
    Texts windowsUsers() const;
    Texts accounts() const;
    Texts clientNames() const;
    Texts sessionClientNames() const;

    // Addresses: the station's own are the server's in a session.
    Texts ownAddresses() const;
    Texts clientAddresses() const;
    Texts ownDnsNames() const;
    Texts clientDnsNames() const;
    Texts macAddresses(const Texts& addresses) const;  // by ARP
    Texts adapterMacAddresses() const;                 // by NetBIOS

    // The network's registry. Where a list has another key to be looked for in, that is a list of its own.
    std::vector<Items> subnetMasks() const;
    std::vector<Items> defaultGateways() const;
    Items protocols() const;
    Items providers() const;
    Items networkAdapters() const;
    Items networkDrivers() const;
    Items mailClients() const;
    Texts citrixProducts() const;
    Texts terminalServers() const;

    // Hardware.
    Texts systemIdentifiers() const;
    Texts biosVersions() const;
    Texts biosDates() const;
    Texts keyboards() const;
    Items processors() const;
    Texts processorTypes() const;
    Items devices(std::string_view kind) const;  // "disk", "cdrom", "tape", "other"
    Items printers() const;
    Items roots(std::uint32_t driveType) const;
    Items fixedDrives() const;
    Texts monitors() const;
    Texts videoAdapters() const;
    Items displayAdapters() const;

  private:
    bool isWindows9x() const { return platform() == 1; }
    bool isWindowsNT() const { return platform() == 2; }
    std::uint32_t platform() const;
    bool isPrincipalWanted() const;
    std::vector<Items> adapterSettings(const char* value, const char* value9x) const;
    Items transportSettings(const char* value) const;
    std::vector<std::string> providerServices() const;
    std::optional<std::string> boundDevice(const std::string& binding) const;
    std::vector<DescribedRegistry::KeyId> networkDevices() const;
    Texts biosValues(const char* value) const;
    std::string nameOf(const std::string& address) const;

    const simwin::Station& m_station;
    const DescribedRegistry m_registry;
};

}  // namespace kvtest
