// NetBIOS: the adapters and their addresses.
#include "framework/Windows.h"

#include <nb30.h>

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr NamedError kNetbiosErrors[] = {KV_ERROR(NRC_BUFLEN),     KV_ERROR(NRC_ILLCMD), KV_ERROR(NRC_INCOMP),
                                         KV_ERROR(NRC_INVADDRESS), KV_ERROR(NRC_BRIDGE), KV_ERROR(NRC_ENVNOTDEF),
                                         KV_ERROR(NRC_SYSTEM)};

std::string_view netbiosErrorName(std::uint32_t code) {
    return nameIn(kNetbiosErrors, code);
}

void keepAdapters(StationDraft& draft, const ObservedCall& call) {
    const auto* block = pointerIn<NCB>(call.parameters[0]);
    auto& lanas = draft.station.network.netbios;
    if (block == nullptr || !call.succeeded || block->ncb_buffer == nullptr)
        return;
    if (block->ncb_command == NCBENUM && lanas.empty())
        for (std::size_t i = 1; i < block->ncb_length && i <= block->ncb_buffer[0]; ++i)
            lanas.push_back({block->ncb_buffer[i], {}});
    if (block->ncb_command == NCBASTAT && block->ncb_length >= 6)
        for (simwin::Lana& lana : lanas)
            if (lana.number == block->ncb_lana_num)
                lana.address = std::string(reinterpret_cast<const char*>(block->ncb_buffer), 6);
}

}  // namespace

KV_CALL(Netbios,
        asks("the NetBIOS adapters and their addresses", member<"network", "netbios">,
             R"([[{"lana": 0, "address": "02-07-01-AB-CD-EF"}], [{"lana": 0}], []])"),
        tellLoggedBehindResult, keepAdapters, netbiosErrorName);

}  // namespace kvstation
