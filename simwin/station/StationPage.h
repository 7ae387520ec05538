// What docs/stations.md tells of the members of station.json.
#pragma once

#include <string>

namespace simwin {

// Tables in Markdown, made of those that read and write the members.
std::string stationMembersPage();

}  // namespace simwin
