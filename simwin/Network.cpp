#include <algorithm>
#include <cstring>

#include "simwin/Address.h"
#include "simwin/Call.h"
#include "simwin/Calls.h"
#include "simwin/CodePage.h"
#include "simwin/MachineState.h"

using namespace simwin;

namespace {

// The widest physical address that IP Helper knows; callers hold a buffer of so many bytes.
constexpr std::size_t kPhysicalAddressRoom = 8;

std::size_t blockLength(const NCB& block) {
    return block.ncb_buffer != nullptr ? block.ncb_length : 0;
}

UCHAR enumerateLanas(const Station& station, NCB& block) {
    if (blockLength(block) == 0)
        return NRC_BUFLEN;
    std::string answer(1, '\0');
    for (const Lana& lana : station.network.netbios)
        answer.push_back(static_cast<char>(lana.number));
    answer[0] = static_cast<char>(std::min(answer.size(), blockLength(block)) - 1);
    std::memcpy(block.ncb_buffer, answer.data(), std::min(answer.size(), blockLength(block)));
    return NRC_GOODRET;
}

const Lana* findLana(const Station& station, UCHAR number) {
    for (const Lana& lana : station.network.netbios)
        if (lana.number == number)
            return &lana;
    return nullptr;
}

UCHAR adapterStatus(Machine& machine, NCB& block) {
    const Lana* lana = findLana(machine.station(), block.ncb_lana_num);
    const std::vector<std::uint8_t>& reset = machine.state().resetLanas;
    if (std::find(reset.begin(), reset.end(), block.ncb_lana_num) == reset.end())
        return NRC_ENVNOTDEF;
    if (blockLength(block) == 0)
        return NRC_BUFLEN;
    if (!lana->address || block.ncb_callname[0] != '*')
        return NRC_SYSTEM;
    ADAPTER_STATUS status{};
    std::copy_n(lana->address->begin(), std::min<std::size_t>(lana->address->size(), 6), status.adapter_address);
    std::memcpy(block.ncb_buffer, &status, std::min(sizeof status, blockLength(block)));
    return blockLength(block) < sizeof status ? NRC_INCOMP : NRC_GOODRET;
}

UCHAR netbios(Machine& machine, NCB* block) {
    if (block == nullptr)
        return NRC_INVADDRESS;
    if (block->ncb_command == NCBENUM)
        return enumerateLanas(machine.station(), *block);
    if (findLana(machine.station(), block->ncb_lana_num) == nullptr)
        return NRC_BRIDGE;
    switch (block->ncb_command) {
        case NCBRESET:
            machine.state().resetLanas.push_back(block->ncb_lana_num);
            return NRC_GOODRET;
        case NCBASTAT:
            return adapterStatus(machine, *block);
        default:
            return NRC_ILLCMD;
    }
}

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
    std::u16string units;
    for (const char byte : text)
        units.push_back(toUnicode(byte));
    units.push_back(0);
    return units;
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
    std::memcpy(first, texts.data(), texts.size() * sizeof(char16_t));
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
    if (buffer == nullptr || machine.state().netBuffers.close(buffer))
        return NERR_Success;
    machine.reportMisuse("NetApiBufferFree", asNumber(buffer), "is no open buffer");
    return ERROR_INVALID_PARAMETER;
}

// A NetBIOS control block and the buffer that it names.
struct ControlBlock {
    NCB* place;

    struct Kept : KeptNothingOfIt {
        explicit Kept(const NCB* block) : isNull(block == nullptr) {
            if (block != nullptr) {
                before = *block;
                buffer.resize(block->ncb_length);
            }
        }
        bool isNull;
        NCB before{};
        NCB scratch{};
        std::vector<UCHAR> buffer;
        NCB* argument(ReplayState&) {
            scratch = before;
            scratch.ncb_buffer = before.ncb_buffer != nullptr ? buffer.data() : nullptr;
            return isNull ? nullptr : &scratch;
        }
    };
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string& text, Machine&) const {
        if (place == nullptr)
            return;
        text += "command ";
        appendNumber(text, static_cast<std::uint64_t>(place->ncb_command));
        text += ", lana ";
        appendNumber(text, static_cast<std::uint64_t>(place->ncb_lana_num));
    }
    void output(std::string& text, Machine&) const {
        const std::size_t size = blockLength(*place);
        if (place->ncb_command == NCBENUM)
            appendBytes(text, {reinterpret_cast<const char*>(place->ncb_buffer),
                               std::min<std::size_t>(size, place->ncb_buffer[0] + 1u)});
        if (place->ncb_command == NCBASTAT)
            appendBytes(text, {reinterpret_cast<const char*>(place->ncb_buffer), std::min<std::size_t>(size, 6)});
    }
};

}  // namespace

UCHAR WINAPI sim_Netbios(PNCB block) {
    return makeCall<sim_Netbios>(
        "Netbios", failsWithCode(NRC_SYSTEM),
        [&](Machine& machine) {
            const UCHAR code = netbios(machine, block);
            if (block != nullptr)
                block->ncb_retcode = code;
            return code;
        },
        ControlBlock{block});
}

DWORD WINAPI sim_SendARP(IPAddr destination, IPAddr source, PhysicalAddressPlace buffer, PULONG length) {
    return makeCall<sim_SendARP>(
        "SendARP", failsWithCode(ERROR_GEN_FAILURE),
        [&](Machine& machine) { return sendArp(machine, destination, buffer, length); }, Value{destination},
        Value{source},
        ByteBuffer<PhysicalAddressPlace>{
            buffer, std::max<std::size_t>(length != nullptr ? *length : 0, kPhysicalAddressRoom), length},
        Number{length});
}

NET_API_STATUS WINAPI sim_NetWkstaGetInfo(LPWSTR server, DWORD level, LPBYTE* buffer) {
    return makeCall<sim_NetWkstaGetInfo>(
        "NetWkstaGetInfo", failsWithCode(NERR_WkstaNotStarted),
        [&](Machine& machine) { return workstationInfo(machine, level, buffer); }, Handle{server}, Value{level},
        NewHandle{buffer});
}

NET_API_STATUS WINAPI sim_NetApiBufferFree(LPVOID buffer) {
    return makeCall<sim_NetApiBufferFree>(
        "NetApiBufferFree", kNeverFails, [&](Machine& machine) { return freeBuffer(machine, buffer); }, Handle{buffer});
}
