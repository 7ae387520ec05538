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
    static const std::array<RecordPlace, 4>& reserved() {
        static const std::array<RecordPlace, 4> areas = {&STATIONDATA::reserved358, &STATIONDATA::reserved1983,
                                                         &STATIONDATA::reserved3681, &STATIONDATA::reserved4608};
        return areas;
    }

  private:
    static const STATIONDATA& empty() {
        static const STATIONDATA record{};
        return record;
    }
};

}  // namespace kvtest
