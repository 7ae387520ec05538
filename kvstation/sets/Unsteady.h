// What is another one at every look at a station, and tells nothing of it: the free space of its drives, and the clock
// of its processor.
#pragma once

#include <cstddef>

#include "kvstation/record/Record.h"

namespace kvstation {

// The two records' field differs in nothing but that.
bool differsByTheMoment(const Record& left, const Record& right, std::size_t field);

}  // namespace kvstation
