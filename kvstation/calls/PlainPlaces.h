// Places that calls of several parts of Windows have.
#pragma once

#include <algorithm>
#include <string_view>

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/Place.h"

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

// Other answers that a name can be.
inline constexpr std::string_view kNameSamples = R"(["ANOTHER7"])";

}  // namespace kvstation
