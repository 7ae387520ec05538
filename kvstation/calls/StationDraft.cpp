#include "kvstation/calls/StationDraft.h"

#include <algorithm>

namespace kvstation {

std::string standInFor(std::uint64_t room) {
    constexpr std::uint64_t kLongest = 4096;
    return std::string(static_cast<std::size_t>(std::min(room > 0 ? room - 1 : 0, kLongest)), 'x');
}

}  // namespace kvstation
