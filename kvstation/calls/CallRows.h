// The rows of all platform calls.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "kvstation/calls/CallRow.h"

namespace kvstation {

// Null for what is no platform call.
const CallRow* findCallRow(std::string_view call);

// Null, too, where the call asks the station for nothing.
const CallRow* findQuestion(std::string_view call);

// All of them, by their names.
std::span<const CallRow* const> questions();

// Whether it is a question, quickly: each call has its name in one place.
bool isQuestion(const char* call);

// What a call that succeeded answered. Nothing for one that only says that something is there.
Answer answerOf(const simwin::ObservedCall& call);

// Of a call that failed and told how.
std::optional<CallError> errorOf(const simwin::ObservedCall& call);

}  // namespace kvstation
