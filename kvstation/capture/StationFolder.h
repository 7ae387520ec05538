// A described station as a folder.
#pragma once

#include <string>

#include "simwin/station/Station.h"

namespace kvstation {

// Writes registry.reg and station.json into the folder, which is made when it is not there. Throws Failure where it
// cannot be, and, writing nothing, when one of the two files is there already; WrongUse for a name that no folder has.
void writeStationFolder(const simwin::Station& station, const std::string& folder);

}  // namespace kvstation
