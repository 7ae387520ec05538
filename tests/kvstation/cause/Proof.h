// Holds what the experiments say of a station against changes that they did not make.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kvstation/collect/Stage.h"
#include "simwin/station/Station.h"

namespace kvtest {

struct ProofEffort {
    std::size_t mostEdits;     // of the station's files, chosen at random
    std::size_t mostFailures;  // of single calls
    bool provesNamed = false;  // each cause that is named changes its field
};

struct ProofResult {
    std::vector<std::string> complaints;  // one line for each field that changed, or did not, against what is said
    std::size_t runs = 0;
};

// A change of an answer that no field's causes name leaves the fields; and with provesNamed: each named one changes
// its.
ProofResult prove(const kvstation::Collector& collector, const simwin::Station& station, std::uint64_t seed,
                  const ProofEffort& effort);

}  // namespace kvtest
