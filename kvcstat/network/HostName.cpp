// The ways between the station's name and its address, through whichever socket library Windows has: ws2_32.dll, or
// wsock32.dll on the first Windows 95.
#include <algorithm>
#include <cstring>

#include "framework/WindowsSockets.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

using HostName = char[128];

// A socket library that is loaded while the object lives. A function that it lacks counts as one that failed.
class SocketLibrary {
  public:
    explicit SocketLibrary(const char* file) : m_library(LoadLibraryA(file)) {}

    bool IsLoaded() const { return m_library != nullptr; }
    bool LoadInstead(const char* file) {
        m_library.reset(LoadLibraryA(file));
        return IsLoaded();
    }
    void Free() { m_library.reset(); }

    // The station's own name.
    bool GetHostName(HostName& name) const {
        const auto getHostName = FindFunction<winsock::GetHostNameFunction>(m_library.get(), "gethostname");
        const bool found = getHostName != nullptr && getHostName(name, sizeof name) == 0;
        name[sizeof name - 1] = '\0';
        return found;
    }

    const winsock::HostEntry* GetHostByName(const HostName& name) const {
        const auto getHostByName = FindFunction<winsock::GetHostByNameFunction>(m_library.get(), "gethostbyname");
        return getHostByName != nullptr ? getHostByName(name) : nullptr;
    }

    const winsock::HostEntry* GetHostByAddress(const char* address) const {
        const auto inetAddr = FindFunction<winsock::InetAddrFunction>(m_library.get(), "inet_addr");
        const auto getHostByAddr = FindFunction<winsock::GetHostByAddrFunction>(m_library.get(), "gethostbyaddr");
        if (inetAddr == nullptr || getHostByAddr == nullptr)
            return nullptr;
        const DWORD number = inetAddr(address);
        if (number == winsock::kNoAddress)
            return nullptr;
        return getHostByAddr(reinterpret_cast<const char*>(&number), sizeof number, winsock::kIPv4);
    }

  private:
    UniqueLibrary m_library;
};

// An answer's length, within what an address can have: an answer may say anything.
int AddressLength(const winsock::HostEntry& answer) {
    constexpr int kLongest = 16;
    return std::clamp<int>(answer.h_length, 0, kLongest);
}

CString DottedAddress(const winsock::HostEntry& answer, const char* address) {
    CString text;
    for (int index = 0; index < AddressLength(answer); ++index) {
        CString number;
        number.Format(index == 0 ? "%u" : ".%u", unsigned{static_cast<unsigned char>(address[index])});
        text += number;
    }
    return text;
}

// The node part of an address of the other family: its bytes from the fifth on, in hexadecimal.
CString NodeAddress(const winsock::HostEntry& answer, const char* address) {
    CString text;
    for (int index = 4; index < AddressLength(answer); ++index) {
        CString number;
        number.Format("%02x", unsigned{static_cast<unsigned char>(address[index])});
        text += number;
    }
    return text;
}

// The official name, cut to the buffer; an answer without one leaves the name that was asked for.
void CopyName(const winsock::HostEntry& answer, HostName& name) {
    if (answer.h_name != nullptr)
        std::strncpy(name, answer.h_name, sizeof name - 1);
}

// Takes name and address out of a resolver's answer: the first address that has a text; a station has one address,
// however many its host name resolves to. 0 when there was an address, else -1.
int TakeAnswer(const winsock::HostEntry& answer, HostName& name, CString& ipAddress) {
    const CStatGlobal global;
    CString text;
    int status = -1;
    for (char** address = answer.h_addr_list; address != nullptr && *address != nullptr && text.IsEmpty(); ++address) {
        status = 0;
        text = DottedAddress(answer, *address);
    }
    CopyName(answer, name);
    if (!text.IsEmpty() && !global.IsRemoteSession())
        ipAddress = text;
    return status;
}

// Resolves between name and address through ws2_32.dll: the address from the station's name, or the name from an
// address that is known already.
int Resolve(const SocketLibrary& library, HostName& name, CString& ipAddress) {
    if (ipAddress.IsEmpty()) {
        const winsock::HostEntry* answer = library.GetHostName(name) ? library.GetHostByName(name) : nullptr;
        return answer != nullptr ? TakeAnswer(*answer, name, ipAddress) : -1;
    }
    if (const winsock::HostEntry* answer = library.GetHostByAddress(ipAddress))
        CopyName(*answer, name);
    return -1;
}

}  // namespace

int CNetworkInformation::ResolveHostName() {
    HostName name = {};
    SocketLibrary library("ws2_32.dll");
    if (!library.IsLoaded()) {
        ResolveHostNameWsock32();
        return -1;
    }
    const int status = Resolve(library, name, m_cIPAddress);
    library.Free();
    TakeDnsName(name);
    return status;
}

// Unlike ws2_32.dll's way this one neither looks at the address that is known already, so that it replaces "KVIP", nor
// takes an answer of another family than IPv4.
int CNetworkInformation::ResolveHostNameWsock32() {
    HostName name = {};
    SocketLibrary library("wsock32.dll");
    if (!library.IsLoaded() || !library.GetHostName(name))
        return -1;
    const winsock::HostEntry* answer = library.GetHostByName(name);
    const int status =
        answer != nullptr && answer->h_addrtype == winsock::kIPv4 ? TakeAnswer(*answer, name, m_cIPAddress) : -1;
    library.Free();
    TakeDnsName(name);
    return status;
}

void CNetworkInformation::TakeDnsName(const char* name) {
    const CStatGlobal global;
    if (*name != '\0' && !global.IsRemoteSession())
        m_cDnsName = name;
}

CString CNetworkInformation::GetHostAddress(int family) {
    SocketLibrary library("ws2_32.dll");
    if (!library.IsLoaded() && !library.LoadInstead("wsock32.dll"))
        return {};
    HostName name = {};
    const winsock::HostEntry* answer = library.GetHostName(name) ? library.GetHostByName(name) : nullptr;
    if (answer == nullptr || answer->h_addr_list == nullptr || answer->h_addr_list[0] == nullptr ||
        answer->h_addrtype != family)
        return {};
    const char* address = answer->h_addr_list[0];
    switch (family) {
        case winsock::kIPv4:
            return DottedAddress(*answer, address);
        case winsock::kIPv6:
            return NodeAddress(*answer, address);
        default:
            return {};
    }
}

// An address without a name of its own yields its text, because no name is required.
CString CNetworkInformation::GetDnsName(const char* ip, int) {
    constexpr USHORT kAnyPort = 0x8769;  // 27015 in network order: a port must be given, and is only formatted
    if (ip == nullptr)
        return {};
    winsock::SocketAddressIPv4 address = {};
    address.sin_family = winsock::kIPv4;
    address.sin_port = kAnyPort;
    address.sin_addr.S_un.S_addr = winsock::InetAddr(ip);
    char host[256] = {};
    char service[256] = {};
    if (winsock::NameInfo(address, host, sizeof host, service, sizeof service, winsock::kNumericService) != 0)
        return {};
    host[sizeof host - 1] = '\0';
    return host;
}
