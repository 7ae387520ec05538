// The JSON Schema of what RowJson.h writes: docs/station-row.schema.json.
#pragma once

#include <string>

namespace kvstation {

std::string rowSchema();

}  // namespace kvstation
