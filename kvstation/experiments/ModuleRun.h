// One run of the module on a described station: what it gave, and what it asked.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kvstation/collect/Stage.h"
#include "kvstation/record/Record.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/machine/Machine.h"

namespace kvstation {

struct Outcome {
    RecordBytes record{};
    std::vector<simwin::Variable> published;
    std::vector<simwin::TraceLine> trace;
    std::uint64_t calls = 0;
};

struct AskedCall {
    simwin::ObservedCall call;
    std::uint64_t number = 0;    // among all of the run, from 1, as Machine::changeCall takes it
    std::uint64_t failable = 0;  // among those that can fail, as Machine::failCall takes it; 0: it cannot fail
};

Outcome runOn(const Collector& collector, simwin::Machine& machine);

enum class Told {
    Everything,
    FactsAlone,  // neither arguments nor answers as texts, in a third of the time
};

// The same with the calls told.
Outcome runOn(const Collector& collector, simwin::Machine& machine, std::vector<AskedCall>& calls,
              Told told = Told::Everything);

}  // namespace kvstation
