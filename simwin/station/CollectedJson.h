// When and by what a station was collected, as JSON: in station.json and beside a record's fields.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "simwin/station/JsonView.h"
#include "simwin/station/Station.h"

namespace simwin {

// What is unknown is left out.
nlohmann::ordered_json collectedJson(const Collected& collected);

// Throws ReadError for a time and for versions of another form, and for a member that is not known.
Collected readCollected(const JsonView& view);

}  // namespace simwin
