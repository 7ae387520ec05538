// Parameters of an observed call, as the rows of the calls read them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "simwin/machine/CallObserver.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

// In the ANSI code page.
inline std::string textAt(const simwin::ObservedCall& call, std::size_t parameter) {
    return std::string(simwin::textOf(call.parameters[parameter]));
}

inline std::string utf8At(const simwin::ObservedCall& call, std::size_t parameter) {
    return simwin::toUtf8(simwin::textOf(call.parameters[parameter]));
}

inline std::uint64_t numberAt(const simwin::ObservedCall& call, std::size_t parameter) {
    return simwin::numberOf(call.parameters[parameter]);
}

// What a pointer that was passed or returned points to; it still stands while an observer is told.
template <class Type>
const Type* pointerIn(const simwin::Fact& fact) {
    return reinterpret_cast<const Type*>(static_cast<std::uintptr_t>(simwin::numberOf(fact)));
}

// A structure that the call filled in. Zeros where it wrote less, or nothing.
template <class Type>
Type structureAt(const simwin::ObservedCall& call, std::size_t parameter) {
    Type whole{};
    simwin::textOf(call.parameters[parameter]).copy(reinterpret_cast<char*>(&whole), sizeof whole);
    return whole;
}

}  // namespace kvstation
