// JSON in the form in which people write a station: on one line what fits there, else broken at its members.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace simwin {

// At most 120 columns wide where no single member is wider. Throws nothing for texts that are UTF-8.
std::string layOut(const nlohmann::ordered_json& json);

}  // namespace simwin
