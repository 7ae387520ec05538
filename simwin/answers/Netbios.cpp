#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"

using namespace simwin;

namespace {

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
    NCB* raw() const { return place; }
    Fact fact(bool) const { return std::uint64_t{asNumber(place)}; }
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string& text, Machine&) const {
        if (place == nullptr)
            return;
        text += "command ";
        appendNumber(text, static_cast<std::uint64_t>(place->ncb_command));
        text += ", lana ";
        appendNumber(text, static_cast<std::uint64_t>(place->ncb_lana_num));
        text += ", length ";
        appendNumber(text, static_cast<std::uint64_t>(blockLength(*place)));
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
