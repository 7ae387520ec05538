// The few Winsock declarations that the module uses, under one set of names for both builds.
#pragma once

#include "framework/Windows.h"

#ifdef _WIN32
#include <ws2tcpip.h>
#define KV_WINSOCK(name) ::name
#else
#include <winsock2.h>
#include <ws2tcpip.h>
#define KV_WINSOCK(name) ::WS_##name
#endif

namespace winsock {

using HostEntry = KV_WINSOCK(hostent);
using SocketAddress = KV_WINSOCK(sockaddr);
using SocketAddressIPv4 = KV_WINSOCK(sockaddr_in);

inline constexpr int kIPv4 = 2;
inline constexpr int kIPv6 = 6;  // the number that the resolver's answers are tested for, not Windows' AF_INET6 (23)
inline constexpr DWORD kNoAddress = 0xFFFFFFFF;
inline constexpr int kNumericService = 8;  // NI_NUMERICSERV

// Imported from ws2_32.dll.
using StartupData = ::WSADATA;
inline int Startup(WORD version, StartupData& data) {
    return ::WSAStartup(version, &data);
}
inline DWORD InetAddr(const char* address) {
    return KV_WINSOCK(inet_addr)(address);
}
inline int NameInfo(const SocketAddressIPv4& address, char* host, DWORD hostSize, char* service, DWORD serviceSize,
                    int flags) {
    return KV_WINSOCK(getnameinfo)(reinterpret_cast<const SocketAddress*>(&address), sizeof address, host, hostSize,
                                   service, serviceSize, flags);
}

// Functions that are looked up in ws2_32.dll or wsock32.dll at run time.
using GetHostNameFunction = int(WINAPI*)(char* name, int size);
using GetHostByNameFunction = decltype(&KV_WINSOCK(gethostbyname));
using GetHostByAddrFunction = decltype(&KV_WINSOCK(gethostbyaddr));
using InetAddrFunction = decltype(&KV_WINSOCK(inet_addr));

}  // namespace winsock

#undef KV_WINSOCK
