// Adapters, MAC addresses and the workstation's group.
#include <cstring>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

UCHAR ask(NCB& block, UCHAR command, UCHAR lana, void* buffer, std::size_t size) {
    block = {};
    block.ncb_command = command;
    block.ncb_lana_num = lana;
    block.ncb_buffer = static_cast<UCHAR*>(buffer);
    block.ncb_length = static_cast<WORD>(size);
    std::memset(block.ncb_callname, ' ', sizeof block.ncb_callname);
    block.ncb_callname[0] = '*';
    return Netbios(&block);
}

void testNetbios(Suite& suite) {
    const Check check = suite.of("Netbios");
    NCB block;
    LANA_ENUM lanas{};
    check.equal("adapters: result", ask(block, NCBENUM, 0, &lanas, sizeof lanas), NRC_GOODRET);
    check.equal("adapters: the block's code", block.ncb_retcode, NRC_GOODRET);
    check.holds("adapters: their number", lanas.length <= MAX_LANA);
    check.equal("adapters, no buffer: result", ask(block, NCBENUM, 0, nullptr, 0), NRC_BUFLEN);
    check.equal("adapters, no room: result", ask(block, NCBENUM, 0, &lanas, 0), NRC_BUFLEN);
    check.equal("adapters, no room: the block's code", block.ncb_retcode, NRC_BUFLEN);
    ADAPTER_STATUS status{};
    check.equal("status of a missing adapter: result", ask(block, NCBASTAT, 250, &status, sizeof status), NRC_BRIDGE);
    check.equal("reset of a missing adapter: result", ask(block, NCBRESET, 250, nullptr, 0), NRC_BRIDGE);
    check.equal("no block: result", Netbios(nullptr), NRC_INVADDRESS);
    if (lanas.length == 0) {
        check.skip("this computer has no NetBIOS adapter");
        return;
    }
    const UCHAR lana = lanas.lana[0];
    const Check withReset = check.exceptUnderWine("Wine needs no reset before a status");
    const Check inPart = check.exceptUnderWine("Wine fills no part of a status");
    withReset.equal("status before a reset: result", ask(block, NCBASTAT, lana, &status, sizeof status), NRC_ENVNOTDEF);
    check.equal("reset: result", ask(block, NCBRESET, lana, nullptr, 0), NRC_GOODRET);
    check.equal("reset again: result", ask(block, NCBRESET, lana, nullptr, 0), NRC_GOODRET);
    Room whole(1024);
    check.equal("status: result", ask(block, NCBASTAT, lana, whole.data(), whole.size()), NRC_GOODRET);
    check.holds("status: nothing is written behind it", whole.isUntouchedBehind());
    Room part(6);
    inPart.equal("status, room for the address alone: result", ask(block, NCBASTAT, lana, part.data(), 6), NRC_INCOMP);
    inPart.text("status, room for the address alone: the address", part.first(6), whole.first(6));
    check.holds("status, room for the address alone: nothing is written behind it", part.isUntouchedBehind());
    check.equal("status, no room: result", ask(block, NCBASTAT, lana, part.data(), 0), NRC_BUFLEN);
    check.equal("an unknown command: result", ask(block, 0x7E, lana, nullptr, 0), NRC_ILLCMD);
}

void testArp(Suite& suite) {
    const Check check = suite.of("SendARP");
    ULONG words[2] = {};
    ULONG length = sizeof words;
    IPAddr address = 0;
    std::memcpy(&address, "\x0A\0\0\1", sizeof address);
    const Check asked = check.exceptUnderWine("Wine asks no ARP");
    asked.equal("no buffer: result", SendARP(address, 0, nullptr, &length), ERROR_INVALID_PARAMETER);
    asked.equal("no length: result", SendARP(address, 0, words, nullptr), ERROR_INVALID_PARAMETER);
    // An address of the network 192.0.2.0, which is there for documents alone.
    std::memcpy(&address, "\xC0\0\2\xFE", sizeof address);
    length = sizeof words;
    check.holds("an address that nobody has: fails", SendARP(address, 0, words, &length) != NO_ERROR);
}

void testWorkstation(Suite& suite) {
    const Check check = suite.of("NetWkstaGetInfo");
    const Check release = suite.of("NetApiBufferFree");
    const Library library("netapi32.dll");
    const auto ask = library.find<decltype(&NetWkstaGetInfo)>("NetWkstaGetInfo");
    const auto free = library.find<decltype(&NetApiBufferFree)>("NetApiBufferFree");
    check.holds("it is there", ask != nullptr && free != nullptr);
    if (ask == nullptr || free == nullptr)
        return;
    BYTE* buffer = nullptr;
    const NET_API_STATUS status = ask(nullptr, 101, &buffer);
    check.equal("level 101: result", status, NERR_Success);
    check.holds("level 101: a block", buffer != nullptr);
    if (buffer != nullptr) {
        const auto* info = reinterpret_cast<const WKSTA_INFO_101*>(buffer);
        check.equal("level 101: platform of the NT family", info->wki101_platform_id, 500);
        check.holds("level 101: a name", info->wki101_computername != nullptr && *info->wki101_computername != 0);
        check.holds("level 101: a group", info->wki101_langroup != nullptr);
        check.holds("level 101: a version", info->wki101_ver_major >= 4);
        release.equal("a block: result", free(buffer), NERR_Success);
    }
    release.equal("null: result", free(nullptr), NERR_Success);
    buffer = nullptr;
    check.equal("an unknown level: result", ask(nullptr, 9999, &buffer), ERROR_INVALID_LEVEL);
    check.holds("an unknown level: no block", buffer == nullptr);
}

}  // namespace

void testNetwork(Suite& suite) {
    testNetbios(suite);
    testArp(suite);
    testWorkstation(suite);
}

}  // namespace conformance
