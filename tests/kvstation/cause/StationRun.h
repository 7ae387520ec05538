// One run of the module on a station: its record, and every call with its answer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "kvstation/collect/Stage.h"
#include "kvstation/record/Record.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"

namespace kvtest {

struct StationRun {
    kvstation::RecordBytes record{};
    std::vector<simwin::ObservedCall> calls;
    std::vector<std::uint64_t> failable;  // of each call: its number among those that can fail; 0: it cannot
};

// A call that is made to fail, as Machine::failCall takes it, or answered by a changed station, as changeCall does.
struct OtherCall {
    std::uint64_t toFail = 0;  // 0: none
    std::uint64_t toChange = 0;
    std::function<void()> toggle{};
};

StationRun runStation(const kvstation::Collector& collector, const std::shared_ptr<const simwin::Station>& station,
                      const OtherCall& other = {});

// The numbers of the fields that hold something else.
std::set<std::size_t> differingFields(const StationRun& left, const StationRun& right);

// The calls of `before`, by their index, that `after` makes too, for the same time, and that it answers otherwise.
std::set<std::size_t> differingAnswers(const StationRun& before, const StationRun& after);

}  // namespace kvtest
