// What each platform call asks of the station: words for people, and the place of the answer in the station's files.
//
// A call without a row asks nothing of the station: it is the module's own work, such as memory and texts. The table
// knows nothing of the module, only of Windows and of the files.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "kvstation/questions/Place.h"
#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct CallRow {
    std::string_view call;
    std::string_view words;  // what it asks for, such as "the computer's name"
    Place (*place)(const simwin::ObservedCall& call);
    // Other answers that such a place can hold, as a JSON list; empty: those that its present content suggests.
    std::string_view samples = {};
};

std::span<const CallRow> callRows();

// Null for the module's own work.
const CallRow* findCallRow(std::string_view call);

// Whether there is a row, quickly: each call has its name in one place.
bool isQuestion(const char* call);

}  // namespace kvstation
