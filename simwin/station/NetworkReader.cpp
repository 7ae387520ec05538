#include "simwin/station/NetworkReader.h"

#include <optional>
#include <utility>

#include "simwin/station/MemberReaders.h"
#include "simwin/text/Address.h"

namespace simwin {
namespace {

constexpr std::size_t kLongestPhysicalAddress = 16;
constexpr std::size_t kLanaAddressSize = 6;

// A dotted address, as it stands.
std::string checkDotted(const std::string& text, const JsonView& view) {
    const std::optional<std::string> bytes = parseDotted(text);
    if (!bytes)
        view.fail("is no IPv4 address such as 10.0.0.5");
    return dotted(*bytes);
}

// A dotted address' bytes, or raw ones as {"hex": ...}.
std::string readAddressBytes(const JsonView& view) {
    if (view.isObject())
        return readText(view);
    return *parseDotted(checkDotted(view.utf8(), view));
}

void readHosts(const JsonView& view, std::vector<Host>& hosts) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        Host host;
        host.hostName = toCodePage(name, value);
        host.name = host.hostName;
        const auto readAddresses = [&](const JsonView& list) {
            list.eachItem([&](const JsonView& address) {
                host.addresses.push_back(readAddressBytes(address));
                if (host.addresses.back().size() != host.addresses.front().size())
                    address.fail("is not as long as the first address");
            });
        };
        readMembers(value,
                    {{"name", into(host.name)}, {"addressType", into(host.addressType)}, {"addresses", readAddresses}});
        hosts.push_back(std::move(host));
    });
}

void readReverseEntries(const JsonView& view, std::vector<ReverseEntry>& entries) {
    view.eachMember([&](const std::string& address, const JsonView& value) {
        entries.push_back({checkDotted(address, value), readText(value)});
    });
}

std::string readPhysicalAddress(const JsonView& view, std::size_t least, std::size_t most) {
    std::string bytes = view.isObject() ? readText(view) : readHex(view);
    if (bytes.size() < least || bytes.size() > most)
        view.fail("is no physical address of " + (least == most ? "" : std::to_string(least) + " to ") +
                  std::to_string(most) + " bytes, such as 00-0C-29-AB-CD-EF");
    return bytes;
}

void readArp(const JsonView& view, std::vector<ArpEntry>& entries) {
    view.eachMember([&](const std::string& address, const JsonView& value) {
        entries.push_back({checkDotted(address, value), readPhysicalAddress(value, 0, kLongestPhysicalAddress)});
    });
}

void readNetbios(const JsonView& view, std::vector<Lana>& lanas) {
    view.eachItem([&](const JsonView& item) {
        Lana lana;
        readMembers(item, {{"lana", into(lana.number)}, {"address", [&](const JsonView& value) {
                                                             lana.address = readPhysicalAddress(value, kLanaAddressSize,
                                                                                                kLanaAddressSize);
                                                         }}});
        lanas.push_back(std::move(lana));
    });
}

}  // namespace

void readNetwork(const JsonView& view, StationNetwork& network) {
    readMembers(view, {{"hostName", into(network.hostName)},
                       {"hosts", [&](const JsonView& value) { readHosts(value, network.hosts); }},
                       {"addresses", [&](const JsonView& value) { readReverseEntries(value, network.addresses); }},
                       {"arp", [&](const JsonView& value) { readArp(value, network.arp); }},
                       {"netbios", [&](const JsonView& value) { readNetbios(value, network.netbios); }},
                       {"lanGroup", into(network.lanGroup)},
                       {"domain", into(network.domain)}});
}

}  // namespace simwin
