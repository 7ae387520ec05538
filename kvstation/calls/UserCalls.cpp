// Names of the computer, the user and the user's domain, by Windows and by the product's library.
#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using simwin::Station;
using simwin::User;

void keepComputerName(StationDraft& draft, const ObservedCall& call) {
    if (call.succeeded)
        draft.station.computerName = textAt(call, 0);
    else if (call.error == ERROR_BUFFER_OVERFLOW)
        draft.station.computerName = standInFor(numberAt(call, 1));
}

// A format of the user's name that a station describes.
struct NameFormat {
    std::uint64_t number;
    const char* member;
    simwin::OptionalText simwin::User::*name;
    bool describesFailure;  // a station with it fails in the other formats by itself
};
constexpr NameFormat kNameFormats[] = {{2, "samCompatible", &simwin::User::samCompatible, true},
                                       {3, "displayName", &simwin::User::displayName, false},
                                       {8, "principal", &simwin::User::principal, true}};

const NameFormat* nameFormatOf(const ObservedCall& call) {
    for (const NameFormat& format : kNameFormats)
        if (format.number == numberAt(call, 0))
            return &format;
    return nullptr;
}

Place placeOfNameFormat(const ObservedCall& call) {
    const NameFormat* format = nameFormatOf(call);
    return format != nullptr ? memberPlace({"user", format->member}) : Place{};
}

// Asked for its size alone a name is told too: by its length.
void keepNameFormat(StationDraft& draft, const ObservedCall& call) {
    const NameFormat* format = nameFormatOf(call);
    if (format == nullptr)
        return;
    simwin::OptionalText& name = draft.station.user.*format->name;
    const bool isTooLong = call.error == ERROR_MORE_DATA || call.error == ERROR_INSUFFICIENT_BUFFER;
    if (call.succeeded && call.parameters[1].index() != 0)
        name = textAt(call, 1);
    else if (!call.succeeded && numberAt(call, 2) > 0 && !name && isTooLong)
        name = standInFor(numberAt(call, 2));
    if (name && format->describesFailure)
        draft.outcomes[call.name].isDescribed = true;
}

void keepDomain(StationDraft& draft, const ObservedCall& call) {
    if (!textAt(call, 0).empty())
        draft.station.network.domain = textAt(call, 0);
}

}  // namespace

KV_CALL(GetComputerNameA, asks("the computer's name", member<"computerName">, kNameSamples), tellText<0>,
        keepComputerName);
KV_CALL(GetUserNameA, asks("the Windows account", member<"user", "name">, kNameSamples), tellText<0>,
        keepText<0, &Station::user, &User::name>);
KV_CALL(GetUserNameExA,
        asks("the user's name in a format of the directory", placeOfNameFormat, R"(["ANOTHER7\\another7"])"),
        tellText<1>, Kept(keepNameFormat, ERROR_NONE_MAPPED));
KV_CALL(KVGetUserName, asks("the network account", member<"user", "network">, kNameSamples), tellText<0>,
        keepText<0, &Station::user, &User::network>);
KV_CALL(KVNDSWhoAmI, asks("the directory's name of the user", member<"user", "directory">, kNameSamples), tellText<1>,
        keepText<1, &Station::user, &User::directory>);
KV_CALL(KVGetDomainName, asks("the user's domain", member<"network", "domain">, kNameSamples), tellText<0>, keepDomain);

}  // namespace kvstation
