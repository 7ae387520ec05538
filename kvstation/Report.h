// What a verb found out about a station, ready to be shown.
#pragma once

#include <optional>
#include <string>

#include "kvstation/Record.h"

namespace kvstation {

struct Report {
    Record record;
    std::optional<RecordBytes> bytes;  // absent when the record came as JSON
    std::string product;               // the Windows version as people know it; empty when unknown
    std::string origin;                // where the record comes from, for a page's foot
};

}  // namespace kvstation
