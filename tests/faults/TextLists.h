// Lists of texts joined with ";", of which a failure leaves some items out.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kvtest {

using Texts = std::set<std::string>;

// What a list holds at each of its places: one of these texts.
using Items = std::vector<Texts>;

// Whether `list` is made of items in their order, each at most once and any of them left out. A text may hold a ";"
// itself. The last text may be cut where `isCut`.
bool isSelection(const Items& items, std::string_view list, bool isCut);

// The same in any order.
bool isArrangement(const Items& items, std::string_view list, bool isCut);

}  // namespace kvtest
