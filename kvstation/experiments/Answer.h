// What a call answered, for people.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct Answer {
    // The text, the items of a list, or an address, a number, a structure's members in words; in UTF-8. Empty: nothing.
    std::vector<std::string> items;
    bool isText = false;  // shown in quotes
};

// Of a call that succeeded. Nothing for one that only says that something is there.
Answer answerOf(const simwin::ObservedCall& call);

// "net", "TCP/IP"; "there" for an answer of nothing.
std::string shown(const Answer& answer);

struct CallError {
    std::uint32_t code;
    std::string name;  // ERROR_BAD_NET_NAME; empty where it has none that is known here
};

// Of a call that failed and told how.
std::optional<CallError> errorOf(const simwin::ObservedCall& call);
std::string shown(const CallError& error);  // "67 ERROR_BAD_NET_NAME"

}  // namespace kvstation
