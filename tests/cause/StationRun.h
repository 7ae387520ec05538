// One run of the module on a station: its record, and every call with its answer.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "kvstation/Record.h"
#include "kvstation/Stage.h"
#include "simwin/CallObserver.h"
#include "simwin/Station.h"

namespace kvtest {

struct StationRun {
    kvstation::RecordBytes record{};
    std::vector<simwin::ObservedCall> calls;
    std::vector<std::uint64_t> failable;  // of each call: its number among those that can fail; 0: it cannot
};

// `callToFail` as Machine::failCall takes it; 0: none.
StationRun runStation(const kvstation::Collector& collector, const simwin::Station& station,
                      std::uint64_t callToFail = 0);

// The numbers of the fields that hold something else.
std::set<std::size_t> differingFields(const StationRun& left, const StationRun& right);

// The calls of `before`, by their index, that `after` makes too, for the same time, and that it answers otherwise.
std::set<std::size_t> differingAnswers(const StationRun& before, const StationRun& after);

}  // namespace kvtest
