// A structure that a call filled in, out of the bytes that were observed of it.
#pragma once

#include <cstddef>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

// Zeros where the call wrote less, or nothing.
template <class Type>
Type structureIn(const simwin::ObservedCall& call, std::size_t parameter) {
    Type whole{};
    simwin::textOf(call.parameters[parameter]).copy(reinterpret_cast<char*>(&whole), sizeof whole);
    return whole;
}

}  // namespace kvstation
