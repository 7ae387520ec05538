// The network: adapters' addresses, names and addresses of hosts, the workgroup.
#include <algorithm>

#include "framework/Windows.h"
#include "framework/WindowsSockets.h"

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"
#include "simwin/machine/CallText.h"
#include "simwin/machine/HostAnswer.h"
#include "simwin/text/Address.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using simwin::textOf;

constexpr std::string_view kAddressSamples = R"(["another7.example"])";

// What answers ARP for an address.

std::string askedAddress(const ObservedCall& call) {
    const auto address = static_cast<std::uint32_t>(numberAt(call, 0));
    return simwin::dotted({reinterpret_cast<const char*>(&address), sizeof address});
}

Place placeOfPhysicalAddress(const ObservedCall& call) {
    return memberPlace({"network", "arp", askedAddress(call)});
}

Answer tellPhysicalAddress(const ObservedCall& call) {
    std::string address;
    simwin::appendBytes(address, textOf(call.parameters[2]));
    std::ranges::replace(address, ' ', '-');
    return wordsAnswer(address);
}

void keepPhysicalAddress(StationDraft& draft, const ObservedCall& call) {
    auto& entries = draft.station.network.arp;
    const std::string address = askedAddress(call);
    if (call.succeeded && std::ranges::find(entries, address, &simwin::ArpEntry::address) == entries.end())
        entries.push_back({address, textAt(call, 2)});
}

Place placeOfHost(const ObservedCall& call) {
    return memberPlace({"network", "hosts", utf8At(call, 0)});
}

void keepHost(StationDraft& draft, const ObservedCall& call) {
    const auto* answer = pointerIn<winsock::HostEntry>(call.result);
    auto& hosts = draft.station.network.hosts;
    const std::string asked = textAt(call, 0);
    if (answer == nullptr || std::ranges::find(hosts, asked, &simwin::Host::hostName) != hosts.end())
        return;
    simwin::Host host{.hostName = asked, .name = answer->h_name != nullptr ? answer->h_name : "", .addresses = {}};
    host.addressType = answer->h_addrtype;
    host.addresses = simwin::addressesOf(*answer);
    hosts.push_back(std::move(host));
}

// The four bytes of an IPv4 address that was asked for; empty for another one.
std::string_view plainAddress(const ObservedCall& call) {
    const std::string_view address = textOf(call.parameters[0]);
    return address.size() == 4 ? address : std::string_view();
}
std::string_view socketAddress(const ObservedCall& call) {
    constexpr std::size_t kAddress = 4;  // behind family and port
    const std::string_view whole = textOf(call.parameters[0]);
    return whole.size() >= kAddress + 4 ? whole.substr(kAddress, 4) : std::string_view();
}

template <std::string_view (*Address)(const ObservedCall&)>
Place placeOfAddress(const ObservedCall& call) {
    const std::string_view address = Address(call);
    return address.empty() ? Place{} : memberPlace({"network", "addresses", simwin::dotted(address)});
}

// An address that is told in place of a name is none.
void keepNameOf(StationDraft& draft, std::string_view address, const std::string& name) {
    auto& entries = draft.station.network.addresses;
    const std::string dotted = simwin::dotted(address);
    if (name != dotted && std::ranges::find(entries, dotted, &simwin::ReverseEntry::address) == entries.end())
        entries.push_back({dotted, name});
}

void keepHostOfAddress(StationDraft& draft, const ObservedCall& call) {
    const auto* answer = pointerIn<winsock::HostEntry>(call.result);
    if (answer != nullptr && answer->h_name != nullptr && !plainAddress(call).empty())
        keepNameOf(draft, plainAddress(call), answer->h_name);
}

void keepNameOfAddress(StationDraft& draft, const ObservedCall& call) {
    if (call.succeeded && !socketAddress(call).empty())
        keepNameOf(draft, socketAddress(call), textAt(call, 2));
}

// The workgroup is told in wide characters, which the caller makes narrow by its next call.

void noteGroup(StationDraft& draft, const ObservedCall& call) {
    draft.expectsGroup = call.succeeded;
}

void keepGroup(StationDraft& draft, const ObservedCall& call) {
    if (draft.expectsGroup && call.succeeded)
        draft.station.network.lanGroup = textAt(call, 4);
    draft.expectsGroup = false;
}

}  // namespace

KV_CALL(SendARP,
        asks("the MAC address that answers ARP for the address", placeOfPhysicalAddress, R"(["02-07-01-AB-CD-EF"])"),
        tellPhysicalAddress, keepPhysicalAddress);
KV_CALL(WSAStartup, kReadiness, kTellsNothing, kKeepsNothing);
KV_CALL(gethostname, asks("the host's name", member<"network", "hostName">, R"(["another7"])"), tellText<0>,
        keepText<0, &simwin::Station::network, &simwin::StationNetwork::hostName>);
KV_CALL(
    gethostbyname,
    asks(
        "the addresses of the host's name", placeOfHost,
        R"([{"addresses": ["198.51.100.23"]}, {"name": "another7.example", "addresses": ["198.51.100.23", "203.0.113.7"]}])"),
    tellLogged, keepHost);
KV_CALL(gethostbyaddr, asks("the name of the address", placeOfAddress<plainAddress>, kAddressSamples), tellLogged,
        keepHostOfAddress);
KV_CALL(getnameinfo, asks("the name of the address", placeOfAddress<socketAddress>, kAddressSamples), tellText<2>,
        Kept(keepNameOfAddress, 0));
KV_CALL(inet_addr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(NetWkstaGetInfo, asks("the computer's workgroup or domain", member<"network", "lanGroup">, kNameSamples),
        tellLoggedBehindResult, noteGroup);
KV_CALL(NetApiBufferFree, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(WideCharToMultiByte, kOwnWork, kTellsNothing, keepGroup);

}  // namespace kvstation
