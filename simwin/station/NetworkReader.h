#pragma once

#include "simwin/station/JsonView.h"
#include "simwin/station/Station.h"

namespace simwin {

void readNetwork(const JsonView& view, StationNetwork& network);

}  // namespace simwin
