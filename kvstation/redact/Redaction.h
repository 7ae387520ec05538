// A station without what tells whose it is.
#pragma once

#include "simwin/station/Station.h"

namespace kvstation {

enum class Redacting {
    Names,       // what is known or seen by its form to tell whose the station is: docs/stations.md lists it
    Everything,  // and each text that is no word of Windows
};

// The station with stand-ins, in whatever text that stands. A collection on it takes the same ways.
simwin::Station redacted(const simwin::Station& station, Redacting extent = Redacting::Names);

}  // namespace kvstation
