// Causes as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "kvstation/cause/Causes.h"

namespace kvstation {

// {"field", "value", "cut", "causes", "unknown", "open", "next"}, a number as a number.
nlohmann::ordered_json causesJson(const FieldCauses& causes);

// Where the answer stands: {"file": "registry.reg", "key", "value"}, the value null for a key; {"file": "station.json",
// "path"}; null where neither file can hold it.
nlohmann::ordered_json placeJson(const Place& place);

}  // namespace kvstation
