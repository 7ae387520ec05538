// Reads a described station's folder; the format is told in docs/stations.md.
#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "simwin/station/Station.h"
#include "simwin/text/ReadError.h"

namespace simwin {

// The station of a folder with station.json and registry.reg. Throws ReadError.
Station readStation(const std::filesystem::path& folder);

// The station that a station.json's content describes, with an empty registry. `fileName` stands in errors only
// ("station.json: /network/hostName: is no text"). Throws ReadError.
Station parseStation(std::string_view content, const std::string& fileName);

// Adds what members of a station.json describe to a station that describes none of them. Throws ReadError.
void describe(Station& station, const nlohmann::ordered_json& members, const std::string& fileName);

}  // namespace simwin
