// How a call failed, for people.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct CallError {
    std::uint32_t code;
    std::string name;  // ERROR_BAD_NET_NAME; empty where it has none that is known here
};

// Of a call that failed and told how.
std::optional<CallError> errorOf(const simwin::ObservedCall& call);
std::string shown(const CallError& error);  // "67 ERROR_BAD_NET_NAME"

}  // namespace kvstation
