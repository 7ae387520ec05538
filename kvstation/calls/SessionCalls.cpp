// Terminal sessions: the product's session library, Citrix's interface, the product's virtual channel.
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using simwin::Session;
using simwin::Station;

// A companion tells its result too.
constexpr std::string_view kCompanionSamples = R"(["ANOTHER7", {"text": "ANOTHER7", "result": 0}])";

int resultOf(const ObservedCall& call) {
    return static_cast<int>(simwin::numberOf(call.result));
}

// The library can tell a text and fail all the same.
template <std::optional<simwin::CompanionText> Session::*Member>
void keepCompanionText(StationDraft& draft, const ObservedCall& call) {
    const std::string told = textAt(call, 0);
    if (!told.empty() || call.succeeded)
        draft.station.session.*Member = simwin::CompanionText{told, resultOf(call), told.size() < numberAt(call, 1)};
}

void keepCitrixClient(StationDraft& draft, const ObservedCall& call) {
    if (draft.station.citrix && call.succeeded)
        draft.station.citrix->clientName = simwin::CompanionText{textAt(call, 3), resultOf(call)};
}

}  // namespace

KV_CALL(ZRTSWRPInit, kReadiness, kTellsNothing, kKeepsNothing);
KV_CALL(ZRTSWRPFree, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(ZRTSQueryClientName, asks("the session's client", member<"session", "clientName">, kCompanionSamples),
        tellText<0>, keepCompanionText<&Session::clientName>);
KV_CALL(ZRTSQueryIPAddress,
        asks("the address of the session's client", member<"session", "clientAddress">,
             R"(["198.51.100.23", {"text": "198.51.100.23", "result": 0}])"),
        tellText<0>, keepCompanionText<&Session::clientAddress>);
KV_CALL(ZRTSDomainName, asks("the session's domain", member<"session", "domain">, kCompanionSamples), tellText<0>,
        keepCompanionText<&Session::domain>);
KV_CALL(ZRTSQuerySessionID, asks("the session's number", member<"session", "id">, "[0, 1, 2, 7]"), tellNumber,
        keepResult<&Station::session, &Session::id>);
KV_CALL(WFQuerySessionInformationA,
        asks("the Citrix session's client", member<"citrix", "clientName">, kCompanionSamples), tellText<3>,
        keepCitrixClient);
KV_CALL(KVGetVCDVersion, asks("the version of the VCD module", member<"vcdVersion">, "[7, 70]"), tellNumber,
        keepResult<&Station::vcdVersion>);

}  // namespace kvstation
