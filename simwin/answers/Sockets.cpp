#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/HostAnswer.h"
#include "simwin/machine/MachineState.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

using winsock::HostEntry;
using winsock::SocketAddress;
using winsock::SocketAddressIPv4;
using SocketLength = int;

constexpr int kNumericHost = 2;
constexpr int kNameRequired = 4;

int socketError(Machine& machine, DWORD error) {
    machine.setLastError(error);
    return -1;
}

HostEntry* noHost(Machine& machine) {
    machine.setLastError(WSAHOST_NOT_FOUND);
    return nullptr;
}

int hostName(Machine& machine, char* buffer, int size) {
    const OptionalText& name = machine.station().network.hostName;
    if (!name)
        return socketError(machine, WSAENETDOWN);
    const bool fits = size >= 0 && static_cast<std::size_t>(size) > name->size();
    if (buffer == nullptr || size < 0 || (!fits && machine.station().network.hostNameEnds))
        return socketError(machine, WSAEFAULT);
    if (!fits) {
        name->copy(buffer, static_cast<std::size_t>(size));
        return 0;
    }
    std::memcpy(buffer, name->c_str(), name->size() + 1);
    return 0;
}

HostEntry* answerHost(Machine& machine, const std::string& name, int addressType,
                      const std::vector<std::string>& addresses) {
    auto answer = std::make_unique<HostAnswer>();
    answer->name = name;
    answer->addresses = addresses;
    for (std::string& address : answer->addresses)
        answer->addressList.push_back(address.data());
    answer->addressList.push_back(nullptr);
    answer->entry.h_name = answer->name.data();
    answer->entry.h_aliases = &answer->noAliases;
    answer->entry.h_addrtype = static_cast<short>(addressType);
    answer->entry.h_length = static_cast<short>(addresses.empty() ? 4 : addresses.front().size());
    answer->entry.h_addr_list = answer->addressList.data();
    machine.state().hostAnswer = std::move(answer);
    return &machine.state().hostAnswer->entry;
}

HostEntry* answerHost(Machine& machine, const Host& host) {
    HostEntry* answer = answerHost(machine, host.name, host.addressType, host.addresses);
    if (host.nullName)
        answer->h_name = nullptr;
    if (host.nullAddresses)
        answer->h_addr_list = nullptr;
    if (host.lengthSaid)
        answer->h_length = static_cast<short>(*host.lengthSaid);
    return answer;
}

// No name, or an empty one, means the machine itself.
HostEntry* hostByName(Machine& machine, const char* name) {
    const StationNetwork& network = machine.station().network;
    const std::string wanted = name != nullptr && *name != '\0' ? name : network.hostName.value_or("");
    for (const Host& host : network.hosts)
        if (equalNoCase(host.hostName, wanted))
            return answerHost(machine, host);
    return noHost(machine);
}

const ReverseEntry* findName(const Machine& machine, std::string_view fourBytes) {
    const std::string address = dotted(fourBytes);
    for (const ReverseEntry& entry : machine.station().network.addresses)
        if (entry.address == address)
            return &entry;
    return nullptr;
}

HostEntry* hostByAddress(Machine& machine, const char* address, int length, int type) {
    if (address == nullptr || length != 4 || type != winsock::kIPv4) {
        machine.setLastError(WSAEFAULT);
        return nullptr;
    }
    const std::string_view bytes(address, 4);
    const ReverseEntry* entry = findName(machine, bytes);
    return entry != nullptr ? answerHost(machine, entry->name, type, {std::string(bytes)}) : noHost(machine);
}

int copyName(const std::string& name, char* buffer, DWORD size) {
    if (buffer == nullptr || size == 0)
        return 0;
    if (size <= name.size())
        return ERROR_INSUFFICIENT_BUFFER;
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    return 0;
}

// Network order: the high byte first.
int portOf(const SocketAddressIPv4& ip) {
    const auto* port = reinterpret_cast<const unsigned char*>(&ip.sin_port);
    return port[0] << 8 | port[1];
}

// A socket address, told as an address where it is one of IPv4.
struct AddressBytes : Bytes<const SocketAddress*> {
    void input(std::string& text, Machine& machine) const {
        SocketAddressIPv4 ip{};
        if (data != nullptr && size >= sizeof ip)
            std::memcpy(&ip, data, sizeof ip);
        if (ip.sin_family == winsock::kIPv4)
            text += dotted({reinterpret_cast<const char*>(&ip.sin_addr), 4}) + ':' + std::to_string(portOf(ip));
        else
            Bytes::input(text, machine);
    }
};

// The highest version of Winsock that is not above the one asked for; 0: none.
WORD winsockVersion(WORD asked) {
    const int major = asked & 0xFF;
    const int minor = asked >> 8;
    if (major == 0)
        return 0;
    const int highest = std::min(major, 2);
    return MAKEWORD(highest, major > highest ? 2 : std::min(minor, highest));
}

int startUp(WORD version, WSADATA* data) {
    if (data == nullptr)
        return WSAEFAULT;
    *data = {};
    data->wVersion = winsockVersion(version);
    data->wHighVersion = MAKEWORD(2, 2);
    return data->wVersion != 0 ? 0 : WSAVERNOTSUPPORTED;
}

struct NamePlaces {
    char* host;
    DWORD hostSize;
    char* service;
    DWORD serviceSize;
};

int nameInfo(Machine& machine, const SocketAddress* address, SocketLength length, const NamePlaces& places, int flags) {
    if (address == nullptr || length < static_cast<SocketLength>(sizeof(SocketAddressIPv4)))
        return WSAEFAULT;
    SocketAddressIPv4 ip;
    std::memcpy(&ip, address, sizeof ip);
    if (ip.sin_family != winsock::kIPv4)
        return WSAEAFNOSUPPORT;
    const std::string_view bytes(reinterpret_cast<const char*>(&ip.sin_addr), 4);
    const ReverseEntry* entry = (flags & kNumericHost) == 0 ? findName(machine, bytes) : nullptr;
    if (entry == nullptr && (flags & kNameRequired) != 0)
        return WSAHOST_NOT_FOUND;
    const int error = copyName(entry != nullptr ? entry->name : dotted(bytes), places.host, places.hostSize);
    if (error != 0)
        return error;
    return copyName(std::to_string(portOf(ip)), places.service, places.serviceSize);
}

}  // namespace

int WINAPI sim_WSAStartup(WORD version, LPWSADATA data) {
    return makeCall<sim_WSAStartup>(
        "WSAStartup", failsWithCode(WSASYSNOTREADY), [&](Machine&) { return startUp(version, data); }, Value{version},
        Structure{data});
}

int WINAPI sim_gethostname(char* name, int size) {
    return makeCall<sim_gethostname>(
        "gethostname", failsWithMinusOne(WSAENETDOWN), [&](Machine& machine) { return hostName(machine, name, size); },
        TextBuffer{name, static_cast<std::size_t>(std::max(size, 0))}, Value{size});
}

HostEntry* WINAPI sim_gethostbyname(const char* name) {
    return makeCall<sim_gethostbyname>(
        "gethostbyname", failsWithZero(WSAHOST_NOT_FOUND), [&](Machine& machine) { return hostByName(machine, name); },
        Text{name});
}

HostEntry* WINAPI sim_gethostbyaddr(const char* address, int length, int type) {
    return makeCall<sim_gethostbyaddr>(
        "gethostbyaddr", failsWithZero(WSAHOST_NOT_FOUND),
        [&](Machine& machine) { return hostByAddress(machine, address, length, type); },
        Bytes{address, static_cast<std::size_t>(std::max(length, 0))}, Value{length}, Value{type});
}

int WINAPI sim_getnameinfo(const SocketAddress* address, SocketLength length, PCHAR host, DWORD hostSize, PCHAR service,
                           DWORD serviceSize, INT flags) {
    return makeCall<sim_getnameinfo>(
        "getnameinfo", failsWithCode(WSAHOST_NOT_FOUND),
        [&](Machine& machine) {
            return nameInfo(machine, address, length, {host, hostSize, service, serviceSize}, flags);
        },
        AddressBytes{{address, static_cast<std::size_t>(std::max(length, 0))}}, Value{length},
        TextBuffer{host, hostSize}, Value{hostSize}, TextBuffer{service, serviceSize}, Value{serviceSize},
        Value{flags});
}

ULONG WINAPI sim_inet_addr(const char* address) {
    return makeCall<sim_inet_addr>(
        "inet_addr", kNeverFails, [&](Machine&) -> ULONG { return internetAddress(address != nullptr ? address : ""); },
        Text{address});
}
