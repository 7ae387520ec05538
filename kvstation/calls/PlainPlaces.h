// Places that calls of several parts of Windows have, and what a captured station keeps there.
#pragma once

#include <algorithm>
#include <string_view>
#include <type_traits>

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/Place.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {

template <std::size_t Size>
struct MemberName {
    constexpr MemberName(const char (&name)[Size]) { std::copy_n(name, Size, text); }
    char text[Size];
};

// A member of station.json that no parameter decides, by its names from the outermost one on.
template <MemberName... Names>
Place member(const simwin::ObservedCall&) {
    return memberPlace({Names.text...});
}

// The same member where the structures of a station have it, such as &Station::user, &User::name.
template <auto Field, auto... Below>
auto& fieldOf(auto& object) {
    if constexpr (sizeof...(Below) == 0)
        return object.*Field;
    else
        return fieldOf<Below...>(object.*Field);
}

// Keeps a text that the call filled in.
template <std::size_t Parameter, auto... Fields>
void keepText(StationDraft& draft, const simwin::ObservedCall& call) {
    if (call.succeeded)
        fieldOf<Fields...>(draft.station) = textAt(call, Parameter);
}

// Keeps the number that the call gave back, an int of Windows.
template <auto... Fields>
void keepResult(StationDraft& draft, const simwin::ObservedCall& call) {
    auto& field = fieldOf<Fields...>(draft.station);
    field = static_cast<std::remove_reference_t<decltype(field)>>(static_cast<int>(simwin::numberOf(call.result)));
}

// Other answers that a name can be.
inline constexpr std::string_view kNameSamples = R"(["ANOTHER7"])";

}  // namespace kvstation
