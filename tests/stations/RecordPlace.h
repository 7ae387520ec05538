// A member of the record by its name in the header: where it stands and how wide it is.
#pragma once

#include <array>
#include <cstddef>

#include "include/kvcstat.h"

namespace kvtest {

struct RecordPlace {
    template <class Member>
    RecordPlace(Member STATIONDATA::*member)
        : offset(static_cast<std::size_t>(reinterpret_cast<const char*>(&(empty().*member)) -
                                          reinterpret_cast<const char*>(&empty()))),
          width(sizeof(Member)) {}

    std::size_t behind() const { return offset + width; }

    std::size_t offset;
    std::size_t width;

    // The areas that no call writes.
    static const auto& reserved() {
        static const auto areas = std::to_array<RecordPlace>({&STATIONDATA::reserved358, &STATIONDATA::reserved1983,
                                                              &STATIONDATA::reserved3681, &STATIONDATA::reserved4608});
        return areas;
    }

  private:
    static const STATIONDATA& empty() {
        static const STATIONDATA record{};
        return record;
    }
};

}  // namespace kvtest
