// A captured station made whole: what the other branches of a collection would ask is written down too.
#pragma once

#include "kvstation/capture/LocalState.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/experiments/Branches.h"
#include "simwin/station/Station.h"

namespace kvstation {

// How far the module's questions are followed: those of the station as it is, or of everything that could differ.
enum class Reach { StationItself, AllBranches };

// Adds, round by round, every key, value, variable and file that a change of the station could make the module ask for.
// What else it could ask for, and nobody has asked yet, goes into the station's list of what is unknown; what was asked
// and is not there, into that of what is absent. `asked` is what a real run asked. Gives all that was asked.
AskedPlaces complete(simwin::Station& station, const AskedPlaces& asked, LocalState& state, const Collector& collector,
                     Reach reach = Reach::AllBranches);

}  // namespace kvstation
