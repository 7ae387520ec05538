// A captured station while its calls are still made: what it is so far, and what its next calls need to be understood.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "kvstation/calls/CapturedRegistry.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"

namespace kvstation {

// How a call went, all times together.
struct CallOutcome {
    bool isDescribed = false;  // it succeeded once, or the station says what it would have told
    std::uint32_t error = 0;   // of the last failure
};

struct StationDraft {
    simwin::Station station;
    CapturedRegistry registry;
    std::map<std::string, CallOutcome, std::less<>> outcomes;   // by the call's name
    std::set<std::string, std::less<>> published;               // variables that the caller itself has set
    std::map<std::string, std::string, std::less<>> realPaths;  // by the path that was asked for
    std::map<std::uint64_t, std::string> libraries;             // by handle
    std::string versionedFile;                                  // whose version resource was read last
    bool expectsGroup = false;                                  // the group's name is converted next
};

// In place of a text of which nothing but the room that it needs was told.
std::string standInFor(std::uint64_t room);

}  // namespace kvstation
