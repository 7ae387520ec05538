// What of this station's record is the same in each call.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "tests/stations/ExpectedStation.h"

namespace kvtest {

// NAME=VALUE of all fields but two, which go their own way on a machine that is in use.
inline std::vector<std::string> StableFields(const std::string& record) {
    std::vector<std::string> fields;
    for (const auto& [name, value] : fieldsOf(record)) {
        if (name == "szFixedDrives" || name == "dwCurrentMhz")
            continue;
        const auto* text = std::get_if<std::string>(&value);
        fields.push_back(name + "=" + (text != nullptr ? *text : std::to_string(std::get<std::int64_t>(value))));
    }
    return fields;
}

}  // namespace kvtest
