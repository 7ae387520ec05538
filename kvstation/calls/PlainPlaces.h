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

// Of a call for whose failure the file has nothing but the list of calls that fail.
inline Place failurePlace(const simwin::ObservedCall& call) {
    return memberPlace({"fails", call.name});
}

// Other answers that a name or a text can be.
inline constexpr std::string_view kNameSamples = R"(["ANOTHER7"])";
inline constexpr std::string_view kTextSamples = R"(["Another7"])";
// The same of a companion, which tells its result too.
inline constexpr std::string_view kCompanionSamples = R"(["ANOTHER7", {"text": "ANOTHER7", "result": 0}])";

}  // namespace kvstation
