// Host names and addresses.
#include <cstring>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

using InetAddr = winsock::InetAddrFunction;

constexpr int kNumericHost = 2;
constexpr int kNumericService = 8;

void testStartup(Suite& suite) {
    const Check check = suite.of("WSAStartup");
    for (const WORD version : {WORD{0x0101}, WORD{0x0002}, WORD{0x0202}}) {
        const std::string at = "version " + std::to_string(version & 0xFF) + "." + std::to_string(version >> 8) + ": ";
        WSADATA data;
        std::memset(&data, 0x5A, sizeof data);
        check.equal(at + "result", WSAStartup(version, &data), 0);
        check.equal(at + "the version to be used", data.wVersion, version);
        check.equal(at + "the highest version", data.wHighVersion, 0x0202);
    }
    WSADATA data{};
    check.equal("a later version: result", WSAStartup(0x0909, &data), 0);
    check.equal("a later version: the version to be used", data.wVersion, 0x0202);
    check.equal("no version: result", WSAStartup(0, &data), WSAVERNOTSUPPORTED);
    check.equal("no place: result", WSAStartup(0x0101, nullptr), WSAEFAULT);
}

// In network order, as the bytes of a number of this machine.
std::int64_t addressOf(const char* fourBytes) {
    std::uint32_t address = 0;
    std::memcpy(&address, fourBytes, sizeof address);
    return address;
}

void testInetAddr(Suite& suite, const char* function, InetAddr convert) {
    const Check check = suite.of(function);
    constexpr std::int64_t kNone = 0xFFFFFFFF;
    const struct {
        const char* text;
        std::int64_t address;
    } cases[] = {{"10.0.0.5", addressOf("\x0A\0\0\5")},
                 {"192.168.7.20", addressOf("\xC0\xA8\7\x14")},
                 {"0.0.0.0", 0},
                 {"255.255.255.255", kNone},
                 {"10.1.2", addressOf("\x0A\1\0\2")},
                 {"10.258", addressOf("\x0A\0\1\2")},
                 {"258", addressOf("\0\0\1\2")},
                 {"0x0A.0.0.010", addressOf("\x0A\0\0\x08")},
                 {"10.0.0.5 and more", addressOf("\x0A\0\0\5")},
                 {"256.0.0.1", kNone},
                 {"10.0.0.256", kNone},
                 {"10.0.0.5x", kNone},
                 {"10.0.0.", kNone},
                 {"10..0.5", kNone},
                 {"1.2.3.4.5", kNone},
                 {"-1.2.3.4", kNone},
                 {"pc-lab3", kNone}};
    for (const auto& one : cases)
        check.equal("\""s + one.text + "\"", static_cast<std::uint32_t>(convert(one.text)), one.address);
}

winsock::SocketAddressIPv4 loopback(unsigned short port) {
    winsock::SocketAddressIPv4 address{};
    address.sin_family = winsock::kIPv4;
    std::memcpy(&address.sin_addr, "\x7F\0\0\1", 4);
    const unsigned char bytes[] = {static_cast<unsigned char>(port >> 8), static_cast<unsigned char>(port)};
    std::memcpy(&address.sin_port, bytes, sizeof bytes);
    return address;
}

void testNameInfo(Suite& suite) {
    const Check check = suite.of("getnameinfo");
    const winsock::SocketAddressIPv4 address = loopback(139);
    const auto ask = [&](const winsock::SocketAddressIPv4* place, int length, Room& host, Room& service, int flags) {
        return KV_SOCKET_FUNCTION(getnameinfo)(reinterpret_cast<const winsock::SocketAddress*>(place), length,
                                               host.data(), static_cast<DWORD>(host.size()), service.data(),
                                               static_cast<DWORD>(service.size()), flags);
    };
    constexpr int kNumbers = kNumericHost | kNumericService;
    constexpr int kSize = sizeof address;
    {
        Room host(64);
        Room service(32);
        check.equal("as numbers: result", ask(&address, kSize, host, service, kNumbers), 0);
        check.text("as numbers: address", host.text(), "127.0.0.1");
        check.text("as numbers: port", service.text(), "139");
        check.holds("as numbers: nothing is written behind", host.isUntouchedFrom(10) && service.isUntouchedFrom(4));
    }
    {
        Room host(10);
        Room service(4);
        check.equal("exactly full: result", ask(&address, kSize, host, service, kNumbers), 0);
        check.text("exactly full: address", host.text(), "127.0.0.1");
        check.holds("exactly full: nothing is written behind", host.isUntouchedBehind() && service.isUntouchedBehind());
    }
    {
        Room host(9);
        Room service(4);
        check.exceptUnderWine("Wine gives the number of the system below it")
            .equal("an address one byte short: result", ask(&address, kSize, host, service, kNumbers),
                   ERROR_INSUFFICIENT_BUFFER);
        check.holds("an address one byte short: nothing is written behind", host.isUntouchedBehind());
    }
    {
        Room host(64);
        Room service(32);
        check.exceptUnderWine("Wine looks at the family alone")
            .equal("a short address: result", ask(&address, kSize - 1, host, service, kNumbers), WSAEFAULT);
        check.exceptUnderWine("Wine reads it all the same")
            .equal("no address: result", ask(nullptr, kSize, host, service, kNumbers), WSAEFAULT);
        winsock::SocketAddressIPv4 other = address;
        other.sin_family = 77;
        check.equal("another family: result", ask(&other, kSize, host, service, kNumbers), WSAEAFNOSUPPORT);
    }
}

void testHosts(Suite& suite, const std::string& library) {
    const Library sockets(library.c_str());
    const auto hostName = sockets.find<winsock::GetHostNameFunction>("gethostname");
    const auto byName = sockets.find<winsock::GetHostByNameFunction>("gethostbyname");
    const auto byAddress = sockets.find<winsock::GetHostByAddrFunction>("gethostbyaddr");
    const Check name = suite.of("gethostname");
    name.holds(library + ": the functions are there", hostName != nullptr && byName != nullptr && byAddress != nullptr);
    if (hostName == nullptr || byName == nullptr || byAddress == nullptr)
        return;
    Room whole(256);
    name.equal(library + ": result", hostName(whole.data(), 256), 0);
    const auto length = static_cast<int>(whole.text().size());
    name.holds(library + ": a name", length > 0);
    Room exact(static_cast<std::size_t>(length) + 1);
    name.equal(library + ", exactly full: result", hostName(exact.data(), length + 1), 0);
    name.holds(library + ", exactly full: nothing is written behind it", exact.isUntouchedBehind());
    Room tight(static_cast<std::size_t>(length));
    const auto made = suite.make([&] { return hostName(tight.data(), length); });
    name.equal(library + ", one byte short: result", made.result, -1);
    name.equal(library + ", one byte short: error", made.error, WSAEFAULT);
    name.holds(library + ", one byte short: nothing is written behind it", tight.isUntouchedBehind());
    const auto null = suite.make([&] { return hostName(nullptr, 16); });
    name.equal(library + ", no buffer: result", null.result, -1);
    name.equal(library + ", no buffer: error", null.error, WSAEFAULT);

    const Check forward = suite.of("gethostbyname");
    const winsock::HostEntry* own = byName(exact.data());
    forward.holds(library + ", the own name: an answer", own != nullptr);
    if (own != nullptr) {
        forward.equal(library + ", the own name: family", own->h_addrtype, 2);
        forward.equal(library + ", the own name: length", own->h_length, 4);
        forward.holds(library + ", the own name: an address",
                      own->h_addr_list != nullptr && own->h_addr_list[0] != nullptr);
        forward.holds(library + ", the own name: a name", own->h_name != nullptr && *own->h_name != '\0');
    }
    const winsock::HostEntry* numbers = byName("127.0.0.1");
    forward.holds(library + ", an address: an answer", numbers != nullptr);
    if (numbers != nullptr)
        forward.text(library + ", an address: itself", std::string_view(numbers->h_addr_list[0], 4), "\x7F\0\0\1"s);
    const auto missing = suite.make([&] { return byName("kvconform-missing.invalid") == nullptr; });
    forward.holds(library + ", a name that nobody has: none", missing.result);

    const Check backward = suite.of("gethostbyaddr");
    const auto noAddress = suite.make([&] { return byAddress(nullptr, 4, 2) == nullptr; });
    backward.holds(library + ", no address: none", noAddress.result);
    backward.exceptUnderWine("Wine reads it all the same")
        .equal(library + ", no address: error", noAddress.error, WSAEFAULT);
    const winsock::HostEntry* loop = byAddress("\x7F\0\0\1", 4, 2);
    backward.holds(library + ", the loopback address: a name", loop != nullptr && loop->h_name != nullptr);
}

}  // namespace

void testSockets(Suite& suite) {
    testStartup(suite);
    testInetAddr(suite, "inet_addr", KV_SOCKET_FUNCTION(inet_addr));
    const Library old("wsock32.dll");
    if (const auto convert = old.find<InetAddr>("inet_addr"))
        testInetAddr(suite, "inet_addr", convert);
    testNameInfo(suite);
    testHosts(suite, "WS2_32.dll");
    testHosts(suite, "wsock32.dll");
}

}  // namespace conformance
