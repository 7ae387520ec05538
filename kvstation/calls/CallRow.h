// What the tool knows of one platform call, a row for each: what it asks the station for and where the station's files
// hold the answer, what it told, and what a captured station keeps of it.
//
// The rows stand in the files of this folder, by parts of Windows. Each name of simwin/calls/Calls.inc must have its
// row, or nothing links; a row without one of its parts does not compile. They know nothing of the module, only of
// Windows and of the files.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "kvstation/calls/Answer.h"
#include "kvstation/calls/CallError.h"
#include "kvstation/calls/Place.h"
#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct StationDraft;

// What a call is made for.
enum class Purpose {
    Question,   // the station is asked for something
    OwnWork,    // on what the caller has already: texts, memory, parts of what it was told
    Clearance,  // what was opened or taken goes again
    Readiness,  // a library gets ready
    Telling,    // others are told something
};

struct Asks {
    Purpose purpose;
    // The rest is a question's alone.
    std::string_view words{};  // what it asks for, such as "the computer's name"
    Place (*place)(const simwin::ObservedCall& call) = nullptr;
    // Other answers that such a place can hold, as a JSON list; empty: those that its present content suggests.
    std::string_view samples{};
};

constexpr Asks asks(std::string_view words, Place (*place)(const simwin::ObservedCall&),
                    std::string_view samples = {}) {
    return {Purpose::Question, words, place, samples};
}
inline constexpr Asks kOwnWork{Purpose::OwnWork};
inline constexpr Asks kClearance{Purpose::Clearance};
inline constexpr Asks kReadiness{Purpose::Readiness};
inline constexpr Asks kTelling{Purpose::Telling};

// What a call that succeeded told, for people.
using Tells = Answer (*)(const simwin::ObservedCall& call);
inline constexpr Tells kTellsNothing = [](const simwin::ObservedCall&) { return Answer{}; };

// What a captured station keeps of a call.
struct Kept {
    using Take = void (*)(StationDraft& draft, const simwin::ObservedCall& call);

    constexpr Kept(Take by) : take(by) {}
    constexpr Kept(Take by, std::uint32_t error) : take(by), describedError(error) {}

    Take take;  // of every call of that name, also of one that failed
    // Set for a call whose failure no part of a station describes, so that it is kept by the call's name, unless the
    // failure has this error: with it the described station fails by itself. 0: it does with none.
    std::optional<std::uint32_t> describedError{};
};
inline constexpr Kept kKeepsNothing{[](StationDraft&, const simwin::ObservedCall&) {}};

struct CallRow {
    std::string_view call;
    Asks asks;
    Tells tells;
    Kept kept;
    ErrorName errorName = windowsErrorName;
};

namespace calls {
#define SIMWIN_CALL(library, name) extern const CallRow name;
#define SIMWIN_LOOKUP(library, name) extern const CallRow name;
#include "simwin/calls/Calls.inc"
}  // namespace calls

#define KV_CALL(name, ...)                \
    constinit const CallRow calls::name { \
#name, __VA_ARGS__                \
    }

}  // namespace kvstation
