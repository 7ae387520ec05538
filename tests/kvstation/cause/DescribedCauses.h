// Why the fields of the described stations hold what they hold.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {

// Of every field, in the order of fields(). Found once in a process, which is why the tests that ask for it are one
// suite.
inline const std::vector<kvstation::FieldCauses>& causesOfDescribed(const std::string& station) {
    static std::map<std::string, std::vector<kvstation::FieldCauses>> found;
    const auto known = found.find(station);
    return known != found.end() ? known->second
                                : found.emplace(station, kvstation::allCauses(stationNamed(station))).first->second;
}

}  // namespace kvtest
