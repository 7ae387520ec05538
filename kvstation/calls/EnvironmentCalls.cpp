// Variables of the environment, and the product's ini file.
#include <algorithm>

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kTextSamples = R"(["Another7"])";

Place placeOfVariable(const ObservedCall& call) {
    const std::string name = utf8At(call, 0);
    return name.empty() ? Place{} : memberPlace({"environment", name});
}

// Not those that the caller itself has set before.
void keepVariable(StationDraft& draft, const ObservedCall& call) {
    const std::string name = textAt(call, 0);
    auto& variables = draft.station.environment;
    const auto isSame = [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); };
    if (call.succeeded && !draft.published.contains(name) && std::ranges::none_of(variables, isSame))
        variables.push_back({name, textAt(call, 1)});
}

void notePublished(StationDraft& draft, const ObservedCall& call) {
    draft.published.insert(textAt(call, 0));
}

Place placeOfEntry(const ObservedCall& call) {
    return memberPlace({"profile", utf8At(call, 0), utf8At(call, 1)});
}

void keepEntry(StationDraft& draft, const ObservedCall& call) {
    if (!textAt(call, 3).empty())
        draft.station.profile.push_back({textAt(call, 0), textAt(call, 1), textAt(call, 3)});
}

}  // namespace

KV_CALL(GetEnvironmentVariableA, asks("the environment variable", placeOfVariable, kTextSamples), tellText<1>,
        keepVariable);
KV_CALL(KVGetEnv, asks("the environment variable", placeOfVariable, kTextSamples), tellText<1>, keepVariable);
KV_CALL(KVSetEnv, kTelling, kTellsNothing, notePublished);
KV_CALL(GetPrivateProfileStringA, asks("the entry of the product's ini file", placeOfEntry, kTextSamples), tellText<3>,
        keepEntry);

}  // namespace kvstation
