// What differs between two records.
#pragma once

#include <string>
#include <vector>

#include "kvstation/record/Record.h"

namespace kvstation {

// Indexes into fields(), in the order of their offsets.
std::vector<std::size_t> differingFields(const Record& left, const Record& right);

// Each such field with both of its values; empty when there is none.
std::string differencesView(const Record& left, const Record& right, const std::vector<std::size_t>& differing,
                            bool colours);

}  // namespace kvstation
