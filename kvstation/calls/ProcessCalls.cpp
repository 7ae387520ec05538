// The own process, its token and the session that it runs in.
#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

// Windows 9x has no tokens. Of another failure the file has nothing but the list of calls that fail.
Place placeOfToken(const ObservedCall& call) {
    const bool is9x = !call.succeeded && call.error == ERROR_CALL_NOT_IMPLEMENTED;
    return is9x ? memberPlace({"version"}) : memberPlace({"fails", call.name});
}

simwin::Process& processOf(StationDraft& draft) {
    std::optional<simwin::Process>& process = draft.station.process;
    return process ? *process : process.emplace();
}

void keepProcessId(StationDraft& draft, const ObservedCall& call) {
    processOf(draft).id = static_cast<std::uint32_t>(simwin::numberOf(call.result));
}

std::uint32_t sessionIn(const ObservedCall& call) {
    return structureAt<std::uint32_t>(call, 2);
}

Answer tellSession(const ObservedCall& call) {
    return wordsAnswer(std::to_string(sessionIn(call)));
}

void keepSession(StationDraft& draft, const ObservedCall& call) {
    if (call.succeeded)
        processOf(draft).sessionId = sessionIn(call);
}

}  // namespace

KV_CALL(GetCurrentProcessId, asks("the process's number", member<"process", "id">), tellNumber, keepProcessId);
KV_CALL(OpenProcess, asks("the own process", member<"process">, R"([{"id": 77, "sessionId": 7}])"), kTellsNothing,
        Kept(kKeepsNothing.take, 0));
KV_CALL(OpenProcessToken, asks("the process's token", placeOfToken, "[5]"), kTellsNothing,
        Kept(kKeepsNothing.take, ERROR_CALL_NOT_IMPLEMENTED));
KV_CALL(GetTokenInformation, asks("the number of the process's session", member<"process", "sessionId">, "[0, 1, 7]"),
        tellSession, keepSession);

}  // namespace kvstation
