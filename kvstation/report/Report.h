// What a verb found out about a station, ready to be shown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kvstation/cause/Causes.h"
#include "kvstation/record/Record.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct Report {
    Record record;
    std::optional<RecordBytes> bytes;              // absent when the record came as JSON
    std::string product;                           // the Windows version as people know it; empty when unknown
    std::string origin;                            // where the record comes from: a path, or words for people
    std::string description{};                     // what a described station says that it is
    std::vector<FieldCauses> causes{};             // of every field; empty when nobody looked for them
    std::vector<std::string> unknown{};            // what a described station says that nobody knows of its machine
    std::optional<simwin::Collected> collected{};  // when and by what, where that is known
};

}  // namespace kvstation
