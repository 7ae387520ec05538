// What a station says that nobody knows of its machine.
#pragma once

#include <string>

#include "simwin/station/Station.h"

namespace kvstation {

// For people, behind a result; empty when nothing is listed.
std::string unknownText(const simwin::Station& station);

}  // namespace kvstation
