#pragma once

#include "simwin/JsonView.h"
#include "simwin/Station.h"

namespace simwin {

void readNetwork(const JsonView& view, StationNetwork& network);

}  // namespace simwin
