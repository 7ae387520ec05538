// The station's hardware address.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "framework/WindowsSockets.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/network/NetworkInformation.h"

// The sockets first: these headers need their types.
#include <iphlpapi.h>
#include <nb30.h>

namespace {

CString HexDigits(const UCHAR* bytes, std::size_t count) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    CString digits;
    for (std::size_t index = 0; index < count; ++index) {
        digits += kDigits[bytes[index] >> 4];
        digits += kDigits[bytes[index] & 0xF];
    }
    return digits;
}

NCB MakeCommand(UCHAR command, UCHAR lana) {
    NCB block = {};
    block.ncb_command = command;
    block.ncb_lana_num = lana;
    return block;
}

struct Lanas {
    UCHAR count = 0;  // never beyond the numbers: it is a byte
    UCHAR numbers[255] = {};
};

// Whether the enumeration succeeds is not asked: the buffer is cleared, so that a failed one leaves no adapter.
Lanas EnumerateLanas() {
    Lanas lanas;
    NCB block = MakeCommand(NCBENUM, 0);
    block.ncb_buffer = reinterpret_cast<UCHAR*>(&lanas);
    block.ncb_length = sizeof lanas;
    Netbios(&block);
    return lanas;
}

void ResetLana(UCHAR lana) {
    NCB block = MakeCommand(NCBRESET, lana);
    Netbios(&block);
}

// Room for the adapter's status, which begins with its address, and for the names that follow it.
struct AdapterStatus {
    UCHAR address[6];
    UCHAR rest[594];
};

bool AskStatus(UCHAR lana, AdapterStatus& status) {
    constexpr char kLocalAdapter[] = "*               ";
    static_assert(sizeof kLocalAdapter - 1 == NCBNAMSZ);
    NCB block = MakeCommand(NCBASTAT, lana);
    std::memcpy(block.ncb_callname, kLocalAdapter, NCBNAMSZ);
    block.ncb_buffer = reinterpret_cast<UCHAR*>(&status);
    block.ncb_length = sizeof status;
    return Netbios(&block) == NRC_GOODRET;
}

}  // namespace

CString CNetworkInformation::GetNetbiosMACAddress() {
    const Lanas lanas = EnumerateLanas();
    for (int index = 0; index < lanas.count; ++index) {
        ResetLana(lanas.numbers[index]);
        AdapterStatus status = {};
        if (AskStatus(lanas.numbers[index], status))
            return HexDigits(status.address, sizeof status.address);
    }
    CString unknown;
    unknown.LoadString(IDS_UNKNOWN_VALUE);
    return unknown;
}

CString CNetworkInformation::GetARPMACAddress(CString ip) {
    CString result;
    result.LoadString(IDS_UNKNOWN_VALUE);
    // Two more bytes than are asked for: an answer says how long it is, and a longer one is cut to them.
    alignas(ULONG) UCHAR address[8];
    std::memset(address, 0xFF, sizeof address);
    ULONG length = 6;
    // A text that is no address goes on as 255.255.255.255, for which nobody answers.
    if (SendARP(winsock::InetAddr(ip), 0, reinterpret_cast<ULONG*>(address), &length) == NO_ERROR && length != 0) {
        result = HexDigits(address, std::min<std::size_t>(length, sizeof address));
        std::printf("MAC address %s\n", static_cast<const char*>(result));  // not a trace line
    }
    return result;
}
