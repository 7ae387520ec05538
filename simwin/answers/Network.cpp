#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

// The widest physical address that IP Helper knows; callers hold a buffer of so many bytes.
constexpr std::size_t kPhysicalAddressRoom = 8;

DWORD sendArp(Machine& machine, IPAddr destination, void* buffer, ULONG* length) {
    if (buffer == nullptr || length == nullptr)
        return ERROR_INVALID_PARAMETER;
    const std::string address = dotted({reinterpret_cast<const char*>(&destination), sizeof destination});
    for (const ArpEntry& entry : machine.station().network.arp) {
        if (entry.address != address)
            continue;
        // An address longer than the stated length is still told whole in the length word, and written as far as
        // every caller's buffer goes.
        const std::size_t room = std::max<std::size_t>(*length, kPhysicalAddressRoom);
        std::copy_n(entry.physical.begin(), std::min(entry.physical.size(), room), static_cast<char*>(buffer));
        *length = static_cast<ULONG>(entry.physical.size());
        return NO_ERROR;
    }
    return ERROR_BAD_NET_NAME;
}

std::u16string wide(std::string_view text) {
    return toUtf16(text) + u'\0';
}

NET_API_STATUS workstationInfo(Machine& machine, DWORD level, BYTE** place) {
    const StationNetwork& network = machine.station().network;
    if (place == nullptr)
        return ERROR_INVALID_PARAMETER;
    *place = nullptr;
    if (level != 101)
        return ERROR_INVALID_LEVEL;
    if (!network.lanGroup)
        return NERR_WkstaNotStarted;
    // One block: the structure, the computer's name, the group's name, and an empty root.
    const std::u16string texts = wide(machine.station().computerName.value_or("")) + wide(*network.lanGroup) + wide("");
    auto* block =
        static_cast<char*>(machine.state().netBuffers.open(sizeof(WKSTA_INFO_101) + texts.size() * sizeof(char16_t)));
    auto* first = reinterpret_cast<WCHAR*>(block + sizeof(WKSTA_INFO_101));
    std::copy(texts.begin(), texts.end(), first);
    WKSTA_INFO_101 info{};
    info.wki101_platform_id = 500;
    info.wki101_computername = first;
    info.wki101_langroup = first + texts.find(u'\0') + 1;
    info.wki101_lanroot = first + texts.size() - 1;
    if (machine.station().version) {
        info.wki101_ver_major = machine.station().version->major;
        info.wki101_ver_minor = machine.station().version->minor;
    }
    std::memcpy(block, &info, sizeof info);
    *place = reinterpret_cast<BYTE*>(block);
    return NERR_Success;
}

NET_API_STATUS freeBuffer(Machine& machine, void* buffer) {
    if (buffer == nullptr || machine.state().netBuffers.close(asNumber(buffer)))
        return NERR_Success;
    machine.reportMisuse("NetApiBufferFree", asNumber(buffer), "is no open buffer");
    return ERROR_INVALID_PARAMETER;
}

// An address in network order; the log tells it dotted.
struct Address : Value<IPAddr> {
    void input(std::string& text, Machine&) const {
        text += dotted({reinterpret_cast<const char*>(&value), sizeof value});
    }
};

// Where a call puts the address of a block about the workstation; the log tells its group.
struct NewWorkstationInfo : NewHandle<LPBYTE> {
    void output(std::string& text, Machine&) const {
        const WCHAR* group = reinterpret_cast<const WKSTA_INFO_101*>(*place)->wki101_langroup;
        appendQuoted(text, group != nullptr ? fromUtf16(std::u16string(group, group + utf16Length(group))) : "");
    }
};

}  // namespace

DWORD WINAPI sim_SendARP(IPAddr destination, IPAddr source, PhysicalAddressPlace buffer, PULONG length) {
    return makeCall<sim_SendARP>(
        "SendARP", failsWithCode(ERROR_GEN_FAILURE),
        [&](Machine& machine) { return sendArp(machine, destination, buffer, length); }, Address{{destination}},
        Value{source},
        ByteBuffer<PhysicalAddressPlace>{
            buffer, std::max<std::size_t>(length != nullptr ? *length : 0, kPhysicalAddressRoom), length},
        Number{length});
}

NET_API_STATUS WINAPI sim_NetWkstaGetInfo(LPWSTR server, DWORD level, LPBYTE* buffer) {
    return makeCall<sim_NetWkstaGetInfo>(
        "NetWkstaGetInfo", failsWithCode(NERR_WkstaNotStarted),
        [&](Machine& machine) { return workstationInfo(machine, level, buffer); }, Handle{server}, Value{level},
        NewWorkstationInfo{{buffer}});
}

NET_API_STATUS WINAPI sim_NetApiBufferFree(LPVOID buffer) {
    return makeCall<sim_NetApiBufferFree>(
        "NetApiBufferFree", kNeverFails, [&](Machine& machine) { return freeBuffer(machine, buffer); }, Handle{buffer});
}
