// Adapters, workstation, and name resolution.
#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/text/Address.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Station networkDescribed() {
    Station station;
    station.network.hostName = "pc-lab3";
    station.network.hosts = {{"pc-lab3", "pc-lab3.lab.example", 2, {"\x0A\0\0\5"s, "\x0A\0\0\6"s}},
                             {"odd", "odd.example", 6, {"12345678"}}};
    station.network.addresses = {{"10.0.0.5", "pc-lab3.lab.example"}};
    station.network.arp = {{"10.0.0.5", "\1\2\3\4\5\6"},
                           {"10.0.0.6", "\1\2\3\4\5\6\7\x08"},
                           {"10.0.0.7", ""},
                           {"10.0.0.8", "0123456789ABCDEF"}};
    station.network.netbios = {{3, {}}, {5, "\0\x0C\x29\xAB\xCD\xEF"s}};
    station.network.lanGroup = "W\xF6rk";
    station.computerName = "PC";
    return station;
}

class NetworkCalls : public testing::Test {
  protected:
    Running running{networkDescribed()};
};

using NetbiosTest = NetworkCalls;
using SendARPTest = NetworkCalls;
using WorkstationTest = NetworkCalls;
using ResolverTest = NetworkCalls;

UCHAR ask(UCHAR command, UCHAR lana, void* buffer, WORD size) {
    NCB block{};
    block.ncb_command = command;
    block.ncb_lana_num = lana;
    block.ncb_buffer = static_cast<UCHAR*>(buffer);
    block.ncb_length = size;
    std::memcpy(block.ncb_callname, "*               ", 16);
    const UCHAR code = Netbios(&block);
    EXPECT_EQ(block.ncb_retcode, code);
    return code;
}

TEST_F(NetbiosTest, EnumeratesTheAdapters) {
    std::array<UCHAR, 256> lanas{};
    EXPECT_EQ(ask(NCBENUM, 0, lanas.data(), 256), NRC_GOODRET);
    EXPECT_THAT(std::vector<UCHAR>(lanas.begin(), lanas.begin() + 4), ElementsAre(2, 3, 5, 0));
    EXPECT_EQ(ask(NCBENUM, 0, lanas.data(), 2), NRC_GOODRET);
    EXPECT_EQ(lanas[0], 1);
    EXPECT_EQ(ask(NCBENUM, 0, nullptr, 256), NRC_BUFLEN);
    const Running none;
    EXPECT_EQ(ask(NCBENUM, 0, lanas.data(), 256), NRC_GOODRET);
    EXPECT_EQ(lanas[0], 0);
}

TEST_F(NetbiosTest, TellsAnAddressAfterTheReset) {
    std::array<UCHAR, 600> status{};
    EXPECT_EQ(ask(NCBASTAT, 5, status.data(), 600), NRC_ENVNOTDEF);
    EXPECT_EQ(ask(NCBRESET, 5, nullptr, 0), NRC_GOODRET);
    EXPECT_EQ(ask(NCBASTAT, 5, status.data(), 600), NRC_GOODRET);
    EXPECT_THAT(std::vector<UCHAR>(status.begin(), status.begin() + 6), ElementsAre(0, 0x0C, 0x29, 0xAB, 0xCD, 0xEF));
    EXPECT_EQ(ask(NCBASTAT, 5, status.data(), 6), NRC_INCOMP);
    EXPECT_EQ(ask(NCBASTAT, 5, nullptr, 600), NRC_BUFLEN);
}

TEST_F(NetbiosTest, FailsWithoutAnAddressAndForAnUnknownAdapterOrCommand) {
    std::array<UCHAR, 600> status{};
    EXPECT_EQ(ask(NCBRESET, 3, nullptr, 0), NRC_GOODRET);
    EXPECT_EQ(ask(NCBASTAT, 3, status.data(), 600), NRC_SYSTEM);
    EXPECT_EQ(ask(NCBRESET, 4, nullptr, 0), NRC_BRIDGE);
    EXPECT_EQ(ask(NCBASTAT, 4, status.data(), 600), NRC_BRIDGE);
    EXPECT_EQ(ask(0x10, 5, status.data(), 600), NRC_ILLCMD);
    EXPECT_EQ(Netbios(nullptr), NRC_INVADDRESS);
}

DWORD resolve(const char* address, std::array<UCHAR, 8>& buffer, ULONG& length) {
    buffer.fill(0xFF);
    return SendARP(internetAddress(address), 0, reinterpret_cast<PhysicalAddressPlace>(buffer.data()), &length);
}

TEST_F(SendARPTest, TellsAPhysicalAddressAndItsLength) {
    struct {
        const char* address;
        ULONG length;
        std::vector<UCHAR> bytes;
    } const cases[] = {{"10.0.0.5", 6, {1, 2, 3, 4, 5, 6, 0xFF, 0xFF}},
                       {"10.0.0.6", 8, {1, 2, 3, 4, 5, 6, 7, 8}},
                       {"10.0.0.7", 0, std::vector<UCHAR>(8, 0xFF)},
                       {"10.0.0.8", 16, {'0', '1', '2', '3', '4', '5', '6', '7'}}};
    for (const auto& one : cases) {
        alignas(ULONG) std::array<UCHAR, 8> buffer;
        ULONG length = 6;
        EXPECT_EQ(resolve(one.address, buffer, length), DWORD{NO_ERROR});
        EXPECT_EQ(length, one.length);
        EXPECT_THAT(buffer, testing::ElementsAreArray(one.bytes));
    }
}

TEST_F(SendARPTest, DoesNotReachOtherAddresses) {
    alignas(ULONG) std::array<UCHAR, 8> buffer;
    ULONG length = 6;
    EXPECT_EQ(resolve("10.0.0.9", buffer, length), DWORD{ERROR_BAD_NET_NAME});
    EXPECT_EQ(resolve("nonsense", buffer, length), DWORD{ERROR_BAD_NET_NAME});
    EXPECT_EQ(length, 6u);
    EXPECT_EQ(SendARP(0, 0, nullptr, &length), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SendARP(0, 0, reinterpret_cast<PhysicalAddressPlace>(buffer.data()), nullptr),
              DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(WorkstationTest, TellsTheGroupInABufferThatIsFreedOnce) {
    BYTE* buffer = nullptr;
    ASSERT_EQ(sim_NetWkstaGetInfo(nullptr, 101, &buffer), DWORD{NERR_Success});
    WKSTA_INFO_101 info;
    std::memcpy(&info, buffer, sizeof info);
    std::array<char, 260> group{};
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<LPCWSTR>(info.wki101_langroup), -1, group.data(), 260,
                                  nullptr, nullptr),
              5);
    EXPECT_STREQ(group.data(), "W\xF6rk");
    EXPECT_THAT(running.machine.openHandles(HandleKind::NetBuffer), SizeIs(1));
    EXPECT_EQ(sim_NetApiBufferFree(buffer), DWORD{NERR_Success});
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
    EXPECT_NE(sim_NetApiBufferFree(buffer), DWORD{NERR_Success});
    EXPECT_THAT(running.machine.misuses(), SizeIs(1));
    EXPECT_EQ(sim_NetApiBufferFree(nullptr), DWORD{NERR_Success});
}

TEST_F(WorkstationTest, FailsForAnotherLevelAndWithoutAGroup) {
    BYTE* buffer = nullptr;
    EXPECT_EQ(sim_NetWkstaGetInfo(nullptr, 100, &buffer), DWORD{ERROR_INVALID_LEVEL});
    EXPECT_EQ(sim_NetWkstaGetInfo(nullptr, 101, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    const Running none;
    EXPECT_EQ(sim_NetWkstaGetInfo(nullptr, 101, &buffer), DWORD{NERR_WkstaNotStarted});
    EXPECT_EQ(buffer, nullptr);
}

TEST_F(ResolverTest, TellsTheHostsOwnName) {
    std::array<char, 128> name{};
    EXPECT_EQ(sim_gethostname(name.data(), 128), 0);
    EXPECT_STREQ(name.data(), "pc-lab3");
    EXPECT_EQ(sim_gethostname(name.data(), 7), -1);
    EXPECT_EQ(GetLastError(), DWORD{WSAEFAULT});
    EXPECT_EQ(sim_gethostname(nullptr, 128), -1);
    EXPECT_EQ(sim_gethostname(name.data(), -1), -1);
    const Running none;
    EXPECT_EQ(sim_gethostname(name.data(), 128), -1);
    EXPECT_EQ(GetLastError(), DWORD{WSAENETDOWN});
}

TEST(GetHostName, WritesWhatFitsAndNoEndWhereTheStationSaysSo) {
    Station station;
    station.network.hostName = "pc-lab3";
    station.network.hostNameEnds = false;
    const Running running(station);
    std::array<char, 9> name{};
    name.fill('x');
    EXPECT_EQ(sim_gethostname(name.data(), 7), 0);
    EXPECT_EQ(std::string(name.data(), name.size()), "pc-lab3xx");
    EXPECT_EQ(sim_gethostname(name.data(), 8), 0);
    EXPECT_STREQ(name.data(), "pc-lab3");
    EXPECT_EQ(sim_gethostname(nullptr, 8), -1);
    EXPECT_EQ(sim_gethostname(name.data(), -1), -1);
}

TEST_F(ResolverTest, FindsAHostByNameWithAllItsAddresses) {
    for (const char* name : {"PC-LAB3", "", static_cast<const char*>(nullptr)}) {
        const winsock::HostEntry* host = sim_gethostbyname(name);
        ASSERT_NE(host, nullptr);
        EXPECT_STREQ(host->h_name, "pc-lab3.lab.example");
        EXPECT_EQ(host->h_addrtype, 2);
        EXPECT_EQ(host->h_length, 4);
        EXPECT_EQ(std::string(host->h_addr_list[0], 4), "\x0A\0\0\5"s);
        EXPECT_EQ(std::string(host->h_addr_list[1], 4), "\x0A\0\0\6"s);
        EXPECT_EQ(host->h_addr_list[2], nullptr);
        EXPECT_EQ(host->h_aliases[0], nullptr);
    }
    const winsock::HostEntry* odd = sim_gethostbyname("odd");
    ASSERT_NE(odd, nullptr);
    EXPECT_EQ(odd->h_addrtype, 6);
    EXPECT_EQ(odd->h_length, 8);
    EXPECT_EQ(sim_gethostbyname("none"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{WSAHOST_NOT_FOUND});
}

TEST_F(ResolverTest, FindsAHostByItsAddress) {
    const winsock::HostEntry* host = sim_gethostbyaddr("\x0A\0\0\5", 4, 2);
    ASSERT_NE(host, nullptr);
    EXPECT_STREQ(host->h_name, "pc-lab3.lab.example");
    EXPECT_EQ(std::string(host->h_addr_list[0], 4), "\x0A\0\0\5"s);
    EXPECT_EQ(sim_gethostbyaddr("\x0A\0\0\6", 4, 2), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{WSAHOST_NOT_FOUND});
    EXPECT_EQ(sim_gethostbyaddr("\x0A\0\0\5", 5, 2), nullptr);
    EXPECT_EQ(sim_gethostbyaddr(nullptr, 4, 2), nullptr);
}

int nameOf(const char* address, char* host, DWORD hostSize, int flags, int length = 16) {
    winsock::SocketAddressIPv4 ip{};
    ip.sin_family = 2;
    ip.sin_port = 0x876D;  // 28039 on a machine whose bytes go from low to high, as 27015 is in network order
    const std::uint32_t number = internetAddress(address);
    std::memcpy(&ip.sin_addr, &number, sizeof number);
    std::array<char, 16> service{};
    const int error = sim_getnameinfo(reinterpret_cast<winsock::SocketAddress*>(&ip), length, host, hostSize,
                                      service.data(), 16, flags);
    EXPECT_STREQ(service.data(), error == 0 ? "28039" : "");
    return error;
}

TEST_F(ResolverTest, NamesAnAddressOrWritesItOut) {
    std::array<char, 256> host{};
    EXPECT_EQ(nameOf("10.0.0.5", host.data(), 256, 8), 0);
    EXPECT_STREQ(host.data(), "pc-lab3.lab.example");
    EXPECT_EQ(nameOf("10.0.0.6", host.data(), 256, 8), 0);
    EXPECT_STREQ(host.data(), "10.0.0.6");
    EXPECT_EQ(nameOf("10.0.0.5", host.data(), 256, 8 | 2), 0);
    EXPECT_STREQ(host.data(), "10.0.0.5");
    EXPECT_EQ(nameOf("10.0.0.6", host.data(), 256, 8 | 4), int{WSAHOST_NOT_FOUND});
    EXPECT_EQ(nameOf("10.0.0.5", host.data(), 19, 8), int{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(nameOf("10.0.0.5", host.data(), 256, 8, 15), int{WSAEFAULT});
    EXPECT_EQ(sim_getnameinfo(nullptr, 16, host.data(), 256, nullptr, 0, 8), int{WSAEFAULT});
}

TEST_F(ResolverTest, StartsAndNeedsAPlaceForWhatItTells) {
    WSADATA data;
    EXPECT_EQ(WSAStartup(MAKEWORD(1, 1), &data), 0);
    EXPECT_EQ(data.wVersion, MAKEWORD(1, 1));
    EXPECT_EQ(WSAStartup(MAKEWORD(1, 1), nullptr), int{WSAEFAULT});
}

std::uint32_t bytesInOrder(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
    const unsigned char bytes[4] = {a, b, c, d};
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

TEST(InetAddr, ReadsWhatWindowsTakesForAnAddress) {
    const Running running;
    struct {
        const char* text;
        std::uint32_t expected;
    } const cases[] = {{"10.0.0.5", bytesInOrder(10, 0, 0, 5)},
                       {"255.255.255.254", bytesInOrder(255, 255, 255, 254)},
                       {"10.0.0.5 and more", bytesInOrder(10, 0, 0, 5)},
                       {"0x0A.012.5", bytesInOrder(10, 10, 0, 5)},
                       {"10.65537", bytesInOrder(10, 1, 0, 1)},
                       {"1", bytesInOrder(0, 0, 0, 1)},
                       {"4294967295", 0xFFFFFFFF},
                       {"4294967296", 0xFFFFFFFF},
                       {"", 0xFFFFFFFF},
                       {" ", 0xFFFFFFFF},
                       {"10.0.0.256", 0xFFFFFFFF},
                       {"10.0.0", bytesInOrder(10, 0, 0, 0)},
                       {"10.0.0.", 0xFFFFFFFF},
                       {"10.0.0.5.6", 0xFFFFFFFF},
                       {"10.0.0.5;10.0.0.6", 0xFFFFFFFF},
                       {"-1", 0xFFFFFFFF},
                       {"pc", 0xFFFFFFFF},
                       {"08", 0xFFFFFFFF},
                       {nullptr, 0xFFFFFFFF}};
    for (const auto& one : cases)
        EXPECT_EQ(sim_inet_addr(one.text), one.expected) << one.text;
}

}  // namespace
